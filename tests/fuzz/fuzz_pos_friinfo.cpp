// Fuzz target: Friendly Info ATM journal transactions.
#include "tests/fuzz/fuzz_pos_feed.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pyData, size_t nSize) {
    FuzzFeed(ProcCmd_ATM_FriInfo, pyData, nSize);
    return 0;
}
