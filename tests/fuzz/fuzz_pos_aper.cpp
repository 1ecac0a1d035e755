// Fuzz target: APER Chomguard packet reassembly. The builder reports every read on standard
// error; buffering it keeps the target fast.
#include "tests/fuzz/fuzz_input.h"
#include "tests/fuzz/fuzz_pos_feed.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    FuzzBufferStderr();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pyData, size_t nSize) {
    FuzzFeed(ProcCmd_APER_Chomguard, pyData, nSize);
    return 0;
}
