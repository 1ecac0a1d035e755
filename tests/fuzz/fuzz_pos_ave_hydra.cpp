// Fuzz target: AVE Hydra register byte and receipt lines.
#include "tests/fuzz/fuzz_pos_feed.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pyData, size_t nSize) {
    FuzzFeed(ProcCmd_AVE_Hydra, pyData, nSize);
    return 0;
}
