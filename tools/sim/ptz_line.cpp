#include "tools/sim/ptz_line.h"

namespace {
constexpr PtzProtocol kPelcoD = {"Pelco-D", DecodePelcoD};
constexpr PtzProtocol kPelcoP = {"Pelco-P", DecodePelcoP};
constexpr PtzProtocol kExtPelcoP = {"Pelco-EP", DecodeExtPelcoP};
constexpr PtzProtocol kSCC641 = {"Samsung SCC-641", DecodeSCC641};
constexpr PtzProtocol kAutoDome = {"Bosch AutoDome", DecodeAutoDome};
constexpr PtzProtocol kCanonVCC4 = {"Canon VC-C4", DecodeCanonVCC4};
}  // namespace

const PtzProtocol* ProtocolOfModel(uint32_t model) {
    switch (model) {
    case 4: return &kSCC641;
    case 12: case 13: case 14: return &kPelcoD;
    case 16: return &kCanonVCC4;
    case 17: case 18: case 19: return &kPelcoP;
    case 20: case 21: case 22: return &kExtPelcoP;
    case 27: return &kAutoDome;
    default: return nullptr;
    }
}

std::string PtzFrame::Describe() const {
    if (!ptProtocol) return "(not a frame of a configured protocol)";
    std::string s = std::string(ptProtocol->sName) + " addr " + std::to_string(tText.nAddress) + ": " +
                    tText.sWords;
    if (tText.bBadCheck) s += " [BAD CHECK]";
    return s;
}

std::vector<PtzFrame> SplitPtzFrames(const SerialChunk& chunk, const ShareBlock& share) {
    std::vector<const PtzProtocol*> candidates;
    const uint32_t nChannels = share.nChannels < kMaxChannels ? share.nChannels : kMaxChannels;
    for (uint32_t ch = 0; ch < nChannels; ++ch) {
        const PtzProtocol* p = ProtocolOfModel(share.atPtz[ch].nPtzModel);
        bool bKnown = false;
        for (auto* c : candidates) bKnown |= c == p;
        if (p && !bKnown) candidates.push_back(p);
    }
    std::vector<PtzFrame> out;
    const std::vector<uint8_t>& b = chunk.abData;
    size_t pos = 0;
    while (pos < b.size()) {
        PtzFrame f{chunk.tSeconds, {}, chunk.sSetting, nullptr, {}};
        // A protocol whose check byte matches wins over one that only recognises the shape.
        for (auto* p : candidates) {
            PtzFrameText t;
            if (p->Decode(b.data() + pos, b.size() - pos, &t) && t.nLength > 0 &&
                (!f.ptProtocol || (f.tText.bBadCheck && !t.bBadCheck))) {
                f.ptProtocol = p;
                f.tText = t;
            }
        }
        const size_t n = f.ptProtocol ? f.tText.nLength : b.size() - pos;
        f.abData.assign(b.begin() + static_cast<long>(pos), b.begin() + static_cast<long>(pos + n));
        out.push_back(f);
        pos += n;
    }
    return out;
}
