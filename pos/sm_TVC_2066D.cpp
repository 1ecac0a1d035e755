// TVC 2066D: tab-separated receipt lines (STX and ETX are taken by the line driver as flow control).
//
//   field  content                         record column
//   0      terminal number in chars 0, 1   ID
//   1      item text                       ITEM
//   2      price                           PRICE (stored, not shown)
//   3      bill amount                     BILL
//   4      code, ended by a newline        CD
//   separators: TAB (0x09); record TVC|sec.hh|terminal (2 digits at least)|f1|f2|f3|f4|#
#include "pos/pos_model.h"
#include "pos/sm_common.h"

constexpr struct termios TermSet_TVC_2066D = PosTermSet(IGNCR | IXON | IXOFF, ICANON, 0x0A, 0x02, 0x03);
constexpr char POSName_TVC_2066D[] = "TVC, TVC2066D";
constexpr DPRCSet DPRCSet_TVC_2066D = {6, {
    {"TIME", 128, 3, 2, 0, 85, 1},
    {"ID", 32, 1, 2, 87, 40, 2},
    {"ITEM", 134, 4, 1, 129, 240, 4},
    {"PRICE", 0, 5, 3, 0, 0, 8},
    {"BILL", 160, 5, 3, 371, 100, 16},
    {"CD", 32, 2, 2, 473, 51, 32},
}};

namespace {
constexpr int kFields = 5;

// A non-digit counts as 0, so that a stray character cannot give a wild terminal number.
int DigitValue(char c) { return c >= '0' && c <= '9' ? c - '0' : 0; }
}  // namespace

uint32_t ProcCmd_TVC_2066D(char* psRecord, const char* psText, int nLength) {
    char sLine[kPosLineMax + 1];
    PosCopyLine(sLine, psText, nLength, kPosLineMax);
    // The line ends at its first newline, so a line short of tabs never puts a line break into the
    // record; missing fields are recorded empty.
    PosCutAtNewline(sLine);
    char* apField[kFields];
    PosSplit(sLine, '\t', apField, kFields);
    const char c0 = apField[0][0];
    const char c1 = c0 != '\0' ? apField[0][1] : '\0';
    const int nTerminal = (c0 >= '1' && c0 <= '9') ? 10 * (c0 - '0') + DigitValue(c1) : DigitValue(c1);
    const WallTime t = GetWallTime();
    return PosRecordPrintf(psRecord, t.dwTime, "TVC|%d.%02d|%02d|%s|%s|%s|%s|#\n", PosSeconds(t),
                           PosHundredths(t), nTerminal, apField[1], apField[2], apField[3], apField[4]);
}
