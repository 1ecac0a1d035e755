// Fuzz target: TVC 2066D tab-separated lines.
#include "tests/fuzz/fuzz_pos_feed.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pyData, size_t nSize) {
    FuzzFeed(ProcCmd_TVC_2066D, pyData, nSize);
    return 0;
}
