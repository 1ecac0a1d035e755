// Fuzz target: APER Chomguard packet reassembly.
#include "tests/fuzz/fuzz_pos_feed.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pyData, size_t nSize) {
    FuzzFeed(ProcCmd_APER_Chomguard, pyData, nSize);
    return 0;
}
