// Fuzz target: the general TCP 6001 and UDP 6002 text lines.
#include "tests/fuzz/fuzz_pos_feed.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pyData, size_t nSize) {
    FuzzFeed(ProcCmd_MLV_TCP6001, pyData, nSize);
    FuzzFeed(ProcCmd_MLV_UDP6002, pyData, nSize);
    return 0;
}
