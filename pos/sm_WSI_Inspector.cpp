// AJIN (WSI) Inspector: tab-separated inspection lines (STX and ETX are taken by the line driver).
//
//   field  content                    record column
//   0      device                     DEV
//   1      identifier, decimal        ID
//   2      count, decimal             COUNT
//   3      comment, ended by newline  COMMENT
//   separators: TAB (0x09); record WSI|sec.hh|f1|f0|f2|f3|#
#include "pos/pos_model.h"
#include "pos/sm_common.h"

constexpr struct termios TermSet_WSI_Inspector =
    PosTermSet(IGNCR | IXON | IXOFF, ICANON, 0x0A, 0x02, 0x03);
constexpr char POSName_WSI_Inspector[] = "AJIN, INSPECTOR V1";
constexpr DPRCSet DPRCSet_WSI_Inspector = {5, {
    {"TIME", 128, 3, 2, 0, 85, 1},
    {"ID", 32, 1, 2, 87, 37, 2},
    {"DEV", 60, 2, 2, 126, 65, 32},
    {"COUNT", 128, 5, 3, 193, 110, 8},
    {"COMMENT", 134, 4, 1, 305, 219, 4},
}};

namespace {
constexpr int kFields = 4;
}

uint32_t ProcCmd_WSI_Inspector(char* psRecord, const char* psText, int nLength) {
    char sLine[kPosLineMax + 1];
    PosCopyLine(sLine, psText, nLength, kPosLineMax);
    // Cut at the first newline first: a line short of tabs is recorded with empty fields and never
    // carries a line break into the record.
    PosCutAtNewline(sLine);
    char* apField[kFields];
    PosSplit(sLine, '\t', apField, kFields);
    const WallTime t = GetWallTime();
    return PosRecordPrintf(psRecord, t.dwTime, "WSI|%d.%02d|%d|%s|%d|%s|#\n", PosSeconds(t),
                           PosHundredths(t), PosDecimal(apField[1]), apField[0],
                           PosDecimal(apField[2]), apField[3]);
}
