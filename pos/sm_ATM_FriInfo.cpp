// Friendly Info ATM journal, on TCP port 5001 through the FIFO: one record per withdrawal
// transaction, collected over several journal lines.
//
//   journal line (first newline ends it)   effect
//   ... Transaction start ...              open the transaction, take its time
//   ... REQ|CWD ... (open)                 account = text between the 4th and 5th "|"
//   ... Money presented ... (open)         type DRAW, amount = sum of NTD<denomination>x<count>
//   ... Transaction end ... (open)         record ATM-FI|start sec.hh|type|account|amount|#
//   anything else                          nothing
#include <cstdio>
#include <cstring>

#include "lib/ipc/MsgLine.h"
#include "lib/proc/processpipe.h"
#include "pos/pos_model.h"
#include "pos/sm_common.h"

constexpr char POSName_ATM_FriInfo[] = "Friendly Info., ATM";
constexpr DPRCSet DPRCSet_ATM_FriInfo = {4, {
    {"TIME", 128, 3, 2, 0, 85, 1},
    {"TYPE", 80, 2, 2, 87, 75, 32},
    {"ACCOUNT", 134, 4, 1, 164, 245, 4},
    {"NTD", 160, 5, 3, 411, 113, 16},
}};

namespace {
constexpr int kValueSize = 128;

// The collected values are kept across transactions on purpose: a transaction without a
// "Money presented" or "REQ|CWD" line repeats the previous withdrawal's type, amount or account.
int nStatus = 0;
WallTime tTimeb{};
char sType[kValueSize] = "";
char sAccount[kValueSize] = "";
char sNTD[kValueSize] = "";

void TakeAccount(const char* psLine) {
    sAccount[0] = '\0';
    const char* p = psLine;
    for (int i = 0; i < 4 && p != nullptr; ++i) {
        p = std::strchr(p, '|');
        if (p != nullptr) ++p;
    }
    if (p == nullptr) {
        ErrLine(MsgSource{kTagPtzCntl, "sm_ATM_FriInfo"}, 110, "fail to get account");
        return;
    }
    const char* pEnd = std::strchr(p, '|');
    if (pEnd != nullptr) {
        std::snprintf(sAccount, sizeof sAccount, "%.*s", static_cast<int>(pEnd - p), p);
    }
}

// Sum of every "NTD<denomination>x<count>" from the line's second character on, kept within the
// 32-bit range.
int32_t SumNotes(const char* psLine) {
    int64_t nSum = 0;
    for (const char* p = std::strstr(psLine + 1, "NTD"); p != nullptr; p = std::strstr(p + 3, "NTD")) {
        const char* pEnd = nullptr;
        const int32_t nDenomination = PosDecimal(p + 3, &pEnd);
        if (pEnd == nullptr || *pEnd != 'x') continue;
        const int32_t nCount = PosDecimal(pEnd + 1, &pEnd);
        if (pEnd == nullptr) continue;
        nSum += static_cast<int64_t>(nDenomination) * nCount;
        if (nSum > INT32_MAX) nSum = INT32_MAX;
        if (nSum < INT32_MIN) nSum = INT32_MIN;
    }
    return static_cast<int32_t>(nSum);
}
}  // namespace

uint32_t ProcCmd_ATM_FriInfo(char* psRecord, const char* psText, int nLength) {
    char sLine[kPosLineMax + 1];
    PosCopyLine(sLine, psText, nLength, kPosLineMax);
    if (!PosCutAtNewline(sLine)) return 0;

    if (std::strstr(sLine, "Transaction start") != nullptr) {
        tTimeb = GetWallTime();
        nStatus = 1;
        return 0;
    }
    if (nStatus != 0 && std::strstr(sLine, "REQ|CWD") != nullptr) {
        TakeAccount(sLine);
        return 0;
    }
    if (nStatus != 0 && std::strstr(sLine, "Money presented") != nullptr) {
        std::snprintf(sType, sizeof sType, "%s", "DRAW");
        std::snprintf(sNTD, sizeof sNTD, "%d", SumNotes(sLine));
        return 0;
    }
    if (nStatus == 0 || std::strstr(sLine, "Transaction end") == nullptr) return 0;
    nStatus = 0;
    return PosRecordPrintf(psRecord, tTimeb.dwTime, "ATM-FI|%d.%02d|%s|%s|%s|#\n", PosSeconds(tTimeb),
                           PosHundredths(tTimeb), sType, sAccount, sNTD);
}

uint32_t POSInit_ATM_FriInfo() {
    system_printf("%s/add_inetd %d tcp /usr/bin/tee \"tee /tmp/pos_fifo\"", "/opt/app", 5001);
    return 0;
}
