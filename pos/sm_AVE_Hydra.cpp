// AVE Hydra cash-register interface: a register number byte, then a VSI-Pro receipt line.
//
//   offset  content
//   0       register number, binary 0-255
//   1..     receipt line (at most 127 characters), ended by a newline; classified as VSI-Pro
//   record  AVEHYD|sec.hh|register (2 digits at least)|type|text|value|#
#include "pos/pos_model.h"
#include "pos/sm_common.h"

constexpr struct termios TermSet_AVE_Hydra = PosTermSet(ICRNL, ICANON | IEXTEN, 0x0A, 0, 0, 0x1B);
constexpr char POSName_AVE_Hydra[] = "AVE, Hydra";
constexpr DPRCSet DPRCSet_AVE_Hydra = {5, {
    {"TIME", 128, 3, 2, 0, 85, 1},
    {"ID", 32, 1, 2, 87, 37, 2},
    {"TYPE", 80, 2, 2, 126, 55, 32},
    {"ITEM", 134, 4, 1, 183, 230, 4},
    {"BILL", 160, 5, 3, 415, 109, 16},
}};

uint32_t ProcCmd_AVE_Hydra(char* psRecord, const char* psText, int nLength) {
    if (nLength < 1) return 0;
    const int nRegister = static_cast<uint8_t>(psText[0]);
    char sLine[kPosLineMax];
    PosCopyLine(sLine, psText + 1, nLength - 1, kPosLineMax - 1);
    AveLine tLine;
    if (!AveClassifyLine(sLine, &tLine)) return 0;
    const WallTime t = GetWallTime();
    return PosRecordPrintf(psRecord, t.dwTime, "AVEHYD|%d.%02d|%02d|%s|%s|%s|#\n", PosSeconds(t),
                           PosHundredths(t), nRegister, tLine.sType, tLine.sText, tLine.sValue);
}
