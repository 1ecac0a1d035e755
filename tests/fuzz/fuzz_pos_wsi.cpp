// Fuzz target: WSI Inspector tab-separated lines.
#include "tests/fuzz/fuzz_pos_feed.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pyData, size_t nSize) {
    FuzzFeed(ProcCmd_WSI_Inspector, pyData, nSize);
    return 0;
}
