// Fuzz target: the simulator's wire decoders, which read whatever the PTZ line carries. The input
// picks the camera models of a few channels (any of the 43 table indexes; models the simulator
// cannot decode are passed over, so decoders added later are covered without a change here) and
// bytes to decode; each protocol decodes them at every offset, and the line splitter cuts them
// into frames. A decoder may claim only bytes it was given.
#include "tools/sim/ptz_line.h"
#include "tests/fuzz/fuzz_input.h"

namespace {
constexpr uint32_t kModels = 43;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pyData, size_t nSize) {
    FuzzInput in(pyData, nSize);
    static ShareBlock tShare{};
    tShare.nChannels = in.Byte() % 5;
    for (uint32_t ch = 0; ch < 4; ++ch) tShare.atPtz[ch].nPtzModel = in.Byte() % (kModels + 2);
    const PtzProtocol* ptProtocol = ProtocolOfModel(in.Byte() % kModels);

    SerialChunk chunk{0, {}, "9600 8N1"};
    while (!in.Empty()) chunk.abData.push_back(in.Byte());
    const std::vector<uint8_t>& b = chunk.abData;
    if (ptProtocol != nullptr) {
        for (size_t pos = 0; pos < b.size(); ++pos) {
            PtzFrameText t;
            if (ptProtocol->Decode(b.data() + pos, b.size() - pos, &t)) FUZZ_CHECK(t.nLength <= b.size() - pos);
        }
    }
    size_t nTotal = 0;
    for (const PtzFrame& f : SplitPtzFrames(chunk, tShare)) {
        nTotal += f.abData.size();
        (void)f.Describe();
    }
    FUZZ_CHECK(nTotal == b.size());
    return 0;
}
