// Hunt HTZ-2300 speed-dome protocol: one 7-byte frame per command. The frame and its codes are
// those of a documented speed-dome protocol of another maker with exactly this frame.
//
//   byte | 0    | 1       | 2         | 3         | 4    | 5        | 6
//        | 0xFA | command | address   | address   | data | keyboard | check
//        |      |         | bits 5-12 | bits 0-4  |      | 0x00     |
//
//   data   a speed 01-EF for moves, lens and auto pan, 00 stopping that same command; a preset
//          (1-192) or a camera tour group (1-16)
//   check  8-bit sum of bytes 0 to 5, low 7 bits
#include <algorithm>

#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_engine.h"

const PTZCntlOpt CntlOpt_Hunt = {10, 0xFD4A0002};

namespace {

using enum PTZOp;

constexpr uint8_t kPresetMax = 192;       // presets and tour length
constexpr uint8_t kTourGroupMax = 16;
constexpr int32_t kSpeedMax = 0xEF;

// Each move and lens action stops with its own code and data 00, written for the stop row from the
// row of what it stops; a stop of something the dome cannot do sends nothing. Auto pan, like a
// move, is switched off by speed 00. ExtRun starts one of the dome's own tours. Codes not listed
// (menu, camera power, clearing presets, patterns, auxiliaries, automatic focus and iris, the
// joystick) send nothing and are remembered.
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_AutoPan,        Once,      {0x10}},
    {PTZCmd_FocusNear,      Held,      {0x0E}},
    {PTZCmd_FocusFar,       Held,      {0x0D}},
    {PTZCmd_ZoomWide,       Held,      {0x0C}},
    {PTZCmd_ZoomTele,       Held,      {0x0B}},
    {PTZCmd_UpLeft,         Move,      {0x05}},
    {PTZCmd_Up,             Move,      {0x01}},
    {PTZCmd_UpRight,        Move,      {0x07}},
    {PTZCmd_Left,           Move,      {0x03}},
    {PTZCmd_Right,          Move,      {0x04}},
    {PTZCmd_DownLeft,       Move,      {0x06}},
    {PTZCmd_Down,           Move,      {0x02}},
    {PTZCmd_DownRight,      Move,      {0x08}},
    {PTZCmd_PresetSet,      Number,    {0x75}, kPresetMax},
    {PTZCmd_PresetTour,     TourStart, {}, kPresetMax},
    {PTZCmd_IrisOpen,       Held,      {0x09}},
    {PTZCmd_IrisClose,      Held,      {0x0A}},
    {PTZCmd_AutoPanOff,     Once,      {0x10}},
    {kPTZAnyStop,           Once},
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_PresetGo,       Number,    {0x76}, kPresetMax},
    {PTZCmd_ExtRun,         Number,    {0x71}, kTourGroupMax},
};
// clang-format on
static_assert(PTZCovers(kCodes, kPTZMoveMask));

// A running speed is never 00, which would stop; a diagonal has one speed for both axes.
uint32_t Speed(int32_t nSpeed) { return static_cast<uint32_t>(std::clamp(nSpeed, 1, kSpeedMax)); }

uint32_t Data(const PTZCode& c, const PTZArgs& x) {
    const PTZMeaning& t = x.tMeaning;
    switch (c.eOp) {
    case Number: return x.nNumber;
    case Move: return Speed(t.nPan != 0 ? x.nPanSpeed : x.nTiltSpeed);
    case Held: return Speed(x.nZoomSpeed);
    default: return t.eAction == PTZAction::AutoPan && t.bOn ? Speed(x.nPanSpeed) : 0;
    }
}

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    const bool bStop = c.nCode == kPTZAnyStop;
    if (bStop && x.ptStopped == nullptr) return;
    const uint8_t yCmd = bStop ? x.ptStopped->ay[0] : c.ay[0];
    out.Start().Put(0xFA).Put(yCmd).Put(nAddress >> 5).Put(nAddress & 0x1F).Put(Data(c, x));
    out.Put(0x00).Check(PTZCheck::Sum7, 0);
}

// Moves and auto pan 1-239: level 0 starts at 16 and ramps to 91 and 212 (38 % and 89 %); zoom,
// focus and iris given no speed run at the middle of the range.
constexpr PTZSpeedScale kMoveSpeeds = {16, 1, kSpeedMax, 91, 212};
constexpr PTZSpeedScale kLensSpeeds = {120, 1, kSpeedMax, 0, 0};
constexpr PTZDriver kHunt = {kCodes, Write, kMoveSpeeds, kMoveSpeeds, kLensSpeeds};

}  // namespace

int32_t BuildCmd_Hunt(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                      uint32_t /*nParam2*/) {
    return PTZBuild(kHunt, nAddress, atPacket, ptState);
}

int32_t CheckStatus_Hunt(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kHunt, nAddress, atPacket, ptState);
}
