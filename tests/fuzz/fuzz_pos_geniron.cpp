// Fuzz target: ATM Geniron lines and alarms, with the status datagrams going to the loopback
// receiver address (run inside the sandbox).
#include <arpa/inet.h>

#include "tests/fuzz/fuzz_pos_feed.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pyData, size_t nSize) {
    FuzzShare()->dwAtmAlarmAddr = htonl(INADDR_LOOPBACK);
    FuzzFeed(ProcCmd_ATM_Geniron, pyData, nSize);
    return 0;
}
