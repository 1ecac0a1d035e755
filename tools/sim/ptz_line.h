// Splits the bytes seen on the PTZ line into frames and names them by the protocols of the
// camera models configured on the recorder's channels.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "core/share_block.h"
#include "tools/sim/ptz_decode.h"
#include "tools/sim/serial_line.h"

struct PtzFrame {
    double tSeconds;
    std::vector<uint8_t> abData;
    std::string sSetting;          // line setting when it was read
    const PtzProtocol* ptProtocol; // null: not recognised
    PtzFrameText tText;
    std::string Describe() const;  // "Pelco-D addr 1: pan left 63" (+ " [BAD CHECK]")
};

// Frames in one chunk, trying the protocols of the channels' configured models.
std::vector<PtzFrame> SplitPtzFrames(const SerialChunk& chunk, const ShareBlock& share);
