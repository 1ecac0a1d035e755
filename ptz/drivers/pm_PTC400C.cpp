// Elmo PTC-200C/400C protocol: 6-byte frames. The frame and its codes are those of a documented
// protocol of another camera with exactly this frame.
//
//   byte | 0       | 1    | 2       | 3   | 4    | 5
//        | address | 0xFF | command | sub | data | check
//
//   address  low 8 bits of the configured address
//   moves    18 with sub 00 right, 01 left, 02 up, 03 down and data = speed 07-3F
//   lens     24 zoom (sub 00 tele, 01 wide), 25 focus (sub 00 near, 01 far), data 00
//   presets  11 go, 1D set, sub 00, data = n
//   check    XOR of bytes 0 to 4
//
// There are no diagonal moves and no iris.
#include <algorithm>

#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_engine.h"

const PTZCntlOpt CntlOpt_PTC400C = {10, 0xFC002002};

namespace {

using enum PTZOp;

constexpr uint8_t kPresetMax = 255;       // presets and tour length: data is one byte

// The four straight moves, the only ones the camera has, ramp.
constexpr uint32_t kRampMask = (1u << PTZCmd_Up) | (1u << PTZCmd_Left) | (1u << PTZCmd_Right) |
                               (1u << PTZCmd_Down);

// A stop of a move, zoom or focus is four frames: the two move stops, then zoom and focus stops.
// Stops of what the camera cannot do send nothing; codes not listed send nothing and are
// remembered.
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_FocusNear,      Held,      {0x25, 0x00}},
    {PTZCmd_FocusFar,       Held,      {0x25, 0x01}},
    {PTZCmd_ZoomWide,       Held,      {0x24, 0x01}},
    {PTZCmd_ZoomTele,       Held,      {0x24, 0x00}},
    {PTZCmd_Up,             Move,      {0x18, 0x02}},
    {PTZCmd_Left,           Move,      {0x18, 0x01}},
    {PTZCmd_Right,          Move,      {0x18, 0x00}},
    {PTZCmd_Down,           Move,      {0x18, 0x03}},
    {PTZCmd_PresetSet,      Number,    {0x1D, 0x00}, kPresetMax},
    {PTZCmd_PresetTour,     TourStart, {}, kPresetMax},
    {kPTZAnyStop,           Once},
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_PresetGo,       Number,    {0x11, 0x00}, kPresetMax},
};
// clang-format on
static_assert(PTZCovers(kCodes, kRampMask));

constexpr uint8_t kStops[][2] = {{0x14, 0x00}, {0x13, 0x00}, {0x24, 0x04}, {0x25, 0x04}};

void Frame(PTZFrames& out, uint32_t nAddress, uint8_t yCmd, uint8_t ySub, uint32_t nData) {
    out.Start().Put(nAddress).Put(0xFF).Put(yCmd).Put(ySub).Put(nData).Check(PTZCheck::Xor, 0);
}

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    if (c.nCode == kPTZAnyStop) {
        if (x.ptStopped == nullptr) return;
        for (const auto& ay : kStops) Frame(out, nAddress, ay[0], ay[1], 0x00);
        return;
    }
    uint32_t nData = 0x00;
    if (c.eOp == Number) nData = x.nNumber;
    if (c.eOp == Move) {
        const int32_t nSpeed = x.tMeaning.nPan != 0 ? x.nPanSpeed : x.nTiltSpeed;
        nData = static_cast<uint32_t>(std::clamp(nSpeed, 0x07, 0x3F));
    }
    Frame(out, nAddress, c.ay[0], c.ay[1], nData);
}

// Speeds 7-63: level 0 starts at the slowest and ramps to 24 and 56, as Pelco-D.
constexpr PTZSpeedScale kSpeeds = {7, 7, 63, 24, 56};
constexpr PTZDriver kPTC400C = {kCodes, Write, kSpeeds, kSpeeds, {}, kRampMask};

}  // namespace

int32_t BuildCmd_PTC400C(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                         uint32_t /*nParam2*/) {
    return PTZBuild(kPTC400C, nAddress, atPacket, ptState);
}

int32_t CheckStatus_PTC400C(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kPTC400C, nAddress, atPacket, ptState);
}
