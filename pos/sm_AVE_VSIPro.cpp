// AVE VSI-Pro cash-register interface: one printed receipt line per read.
//
//   input   one text line, ended by a newline (CR ignored by the line setting)
//   record  AVEVSI|sec.hh|type|text|value|#
//
//   line                                type   text                       value
//   has "." and "@"                     ADD    whole line                 -
//   has ".", no space                   ERR1   whole line                 -
//   has ".", no leading space           ITEM   up to the last space       after the last space
//   has ".", leading spaces             BILL   after the leading spaces,  after the last space
//                                              up to the last space
//   no ".", has ":" and "-"             TIME   whole line                 -
//   no ".", number > 0 after last space CLERK  whole line                 -
//   anything else                       ERR2   whole line                 -
//   (text columns lose the blanks before the value)
#include <cstring>

#include "pos/pos_model.h"
#include "pos/sm_common.h"

constexpr struct termios TermSet_AVE_VSIPro = PosTermSet(IGNCR, ICANON, 0x0A);
constexpr char POSName_AVE_VSIPro[] = "AVE, VSI-Pro";
constexpr DPRCSet DPRCSet_AVE_VSIPro = {4, {
    {"TIME", 128, 3, 2, 0, 85, 1},
    {"TYPE", 80, 2, 2, 87, 65, 32},
    {"ITEM", 134, 4, 1, 154, 255, 4},
    {"BILL", 160, 5, 3, 411, 113, 16},
}};

bool AveClassifyLine(char* psLine, AveLine* ptLine) {
    if (!PosCutAtNewline(psLine)) return false;
    ptLine->sText = psLine;
    ptLine->sValue = "";
    char* pLastSpace = std::strrchr(psLine, ' ');
    if (std::strchr(psLine, '.') != nullptr) {
        if (std::strchr(psLine, '@') != nullptr) {
            ptLine->sType = "ADD";
        } else if (pLastSpace == nullptr) {
            ptLine->sType = "ERR1";
        } else {
            const bool bBill = psLine[0] == ' ';
            ptLine->sType = bBill ? "BILL" : "ITEM";
            ptLine->sValue = pLastSpace + 1;
            char* pEnd = pLastSpace;
            while (pEnd > psLine && pEnd[-1] == ' ') --pEnd;
            *pEnd = '\0';
            ptLine->sText = psLine + std::strspn(psLine, " ");
        }
    } else if (std::strchr(psLine, ':') != nullptr && std::strchr(psLine, '-') != nullptr) {
        ptLine->sType = "TIME";
    } else if (pLastSpace != nullptr && PosDecimal(pLastSpace + 1) > 0) {
        ptLine->sType = "CLERK";
    } else {
        ptLine->sType = "ERR2";
    }
    return true;
}

uint32_t ProcCmd_AVE_VSIPro(char* psRecord, const char* psText, int nLength) {
    char sLine[kPosLineMax + 1];
    PosCopyLine(sLine, psText, nLength, kPosLineMax);
    AveLine tLine;
    if (!AveClassifyLine(sLine, &tLine)) return 0;
    const WallTime t = GetWallTime();
    return PosRecordPrintf(psRecord, t.dwTime, "AVEVSI|%d.%02d|%s|%s|%s|#\n", PosSeconds(t),
                           PosHundredths(t), tLine.sType, tLine.sText, tLine.sValue);
}
