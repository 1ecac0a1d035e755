// Fuzz target: Atop colon-separated events.
#include "tests/fuzz/fuzz_pos_feed.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pyData, size_t nSize) {
    FuzzFeed(ProcCmd_AC_Atop, pyData, nSize);
    return 0;
}
