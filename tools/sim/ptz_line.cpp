#include "tools/sim/ptz_line.h"

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
    PtzFrame noise{chunk.tSeconds, {}, chunk.sSetting, nullptr, {}};
    auto flushNoise = [&] {
        if (!noise.abData.empty()) out.push_back(noise);
        noise.abData.clear();
    };
    for (size_t pos = 0; pos < b.size();) {
        PtzFrame f{chunk.tSeconds, {}, chunk.sSetting, nullptr, {}};
        // A protocol whose check byte matches wins over one that only recognises the shape.
        for (auto* p : candidates) {
            PtzFrameText t;
            if (PtzDecode(*p, b.data() + pos, b.size() - pos, &t) &&
                (!f.ptProtocol || (f.tText.bBadCheck && !t.bBadCheck))) {
                f.ptProtocol = p;
                f.tText = t;
            }
        }
        if (f.ptProtocol == nullptr) {
            // Line noise: kept together, and reading goes on at the next byte.
            noise.abData.push_back(b[pos++]);
            continue;
        }
        flushNoise();
        f.abData.assign(b.begin() + static_cast<long>(pos),
                        b.begin() + static_cast<long>(pos + f.tText.nLength));
        out.push_back(f);
        pos += f.tText.nLength;
    }
    flushNoise();
    return out;
}
