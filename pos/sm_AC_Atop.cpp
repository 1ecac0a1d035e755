// Atop access-control panel: colon-separated event text on a raw serial line.
//
//   field  content         record column
//   0      alarm           ALM
//   1      event           EVENT
//   2      card or user    ID
//   3      address         IP
//   ...    after the fourth ":" (line end included): dropped
//   record AC_ATOP|sec.hh|f0|f1|f2|f3|#
#include <cstring>

#include "pos/pos_model.h"
#include "pos/sm_common.h"

// All zero on purpose: the model is a serial one, and applying the setting leaves the line bare.
constexpr struct termios TermSet_AC_Atop{};
constexpr char POSName_AC_Atop[] = "Access Ctrl, Atop";
constexpr DPRCSet DPRCSet_AC_Atop = {5, {
    {"TIME", 128, 3, 2, 0, 85, 1},
    {"ALM", 18, 1, 2, 87, 25, 8},
    {"EVENT", 135, 4, 1, 114, 145, 32},
    {"ID", 300, 4, 1, 261, 155, 4},
    {"IP", 300, 4, 2, 418, 100, 16},
}};

namespace {
constexpr int kFields = 4;
}

uint32_t ProcCmd_AC_Atop(char* psRecord, const char* psText, int nLength) {
    char sLine[kPosLineMax + 1];
    PosCopyLine(sLine, psText, nLength, kPosLineMax);
    char* apField[kFields + 1];   // the last one is the dropped rest
    const int nColons = PosSplit(sLine, ':', apField, kFields + 1);
    // With fewer than four colons the last field present would run into the line end: it is cut
    // there, as the fourth colon would have cut it, and the missing fields are recorded empty.
    if (nColons < kFields) {
        char* pLast = apField[nColons];
        pLast[std::strcspn(pLast, "\r\n")] = '\0';
    }
    const WallTime t = GetWallTime();
    return PosRecordPrintf(psRecord, t.dwTime, "AC_ATOP|%d.%02d|%s|%s|%s|%s|#\n", PosSeconds(t),
                           PosHundredths(t), apField[0], apField[1], apField[2], apField[3]);
}
