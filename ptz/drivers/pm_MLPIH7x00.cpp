// Merit Lilin PIH-7000/7600 protocol driver. Frames and codes are the maker's protocol manual's.
//
//  key frame (3 bytes)      A       function  data
//  preset frame (3 bytes)   40 + A  n         00       go to preset n
//                           80 + A  n         00       store preset n
//
//  A         the configured address, 1-63 (a larger one would turn into a preset frame's first
//            byte, so the driver sends nothing to it)
//  function  the keys held: right 01, left 02, up 04, down 08, zoom tele 10, wide 20,
//            focus far 40, near 80; 00 for the commands that travel in the data byte
//  data      with keys: 80 | tilt speed << 3 | pan speed, speeds 0-7 (FF for the lens keys);
//            without: FF no key (stop), 00 iris open, 01 iris close, 0A automatic pan on / off
//  no check byte
//
// The camera drops a move 500 ms after the last frame: held moves, zoom and focus are sent again
// every 200 ms until their stop. Automatic pan has one key that toggles it; both switches send it,
// and a repeat of either is suppressed so that it cannot toggle twice.
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_engine.h"

const PTZCntlOpt CntlOpt_MLPIH7x00 = {10, 0x7D580503};

namespace {

using enum PTZOp;

constexpr uint32_t kAddressMax = 0x3F;
constexpr uint8_t kPresetGo = 0x40, kPresetStore = 0x80;
constexpr uint8_t kPresetMax = 255;      // presets and tour length: the whole byte
constexpr int32_t kSpeedMax = 7;
constexpr uint8_t kTele = 0x10, kWide = 0x20;
constexpr uint8_t kWithSpeeds = 0x80;    // data bit 7: the byte carries speeds

// Rows: function, data; moves: their direction keys; presets: the first byte's offset.
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_AutoPan,        Held,      {0x00, 0x0A}},
    {PTZCmd_FocusNear,      Held,      {0x80, 0xFF}},
    {PTZCmd_FocusFar,       Held,      {0x40, 0xFF}},
    {PTZCmd_ZoomWide,       Held,      {kWide, 0xFF}},
    {PTZCmd_ZoomTele,       Held,      {kTele, 0xFF}},
    {PTZCmd_UpLeft,         Move,      {0x06}},
    {PTZCmd_Up,             Move,      {0x04}},
    {PTZCmd_UpRight,        Move,      {0x05}},
    {PTZCmd_Left,           Move,      {0x02}},
    {PTZCmd_Right,          Move,      {0x01}},
    {PTZCmd_DownLeft,       Move,      {0x0A}},
    {PTZCmd_Down,           Move,      {0x08}},
    {PTZCmd_DownRight,      Move,      {0x09}},
    {PTZCmd_PresetSet,      Number,    {kPresetStore}, kPresetMax},
    {PTZCmd_PresetTour,     TourStart, {}, kPresetMax},
    {PTZCmd_IrisOpen,       Once,      {0x00, 0x00}},
    {PTZCmd_IrisClose,      Once,      {0x00, 0x01}},
    {PTZCmd_AutoPanOff,     Held,      {0x00, 0x0A}},
    {kPTZAnyStop,           Once,      {0x00, 0xFF}},
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_PresetGo,       Number,    {kPresetGo}, kPresetMax},
    {PTZCmd_Joystick,       Joystick},
};
// clang-format on
static_assert(PTZCovers(kCodes, kPTZMoveMask));

uint32_t Bounded(int32_t nSpeed) {
    return static_cast<uint32_t>(nSpeed < 0 ? 0 : nSpeed > kSpeedMax ? kSpeedMax : nSpeed);
}

uint32_t Speeds(int32_t nPan, int32_t nTilt) {
    return kWithSpeeds | (Bounded(nTilt) << 3) | Bounded(nPan);
}

// A proportional move: the keys of each axis that moves, magnitudes 0-63 scaled to 0-7. Zoom alone
// is the zoom key's frame; nothing moving is the stop.
void Proportional(PTZFrames& out, uint32_t nAddress, const PTZArgs& x) {
    const PTZMeaning& t = x.tMeaning;
    uint32_t nKeys = 0;
    if (t.nPan != 0) nKeys |= t.nPan > 0 ? 0x01 : 0x02;
    if (t.nTilt != 0) nKeys |= t.nTilt > 0 ? 0x04 : 0x08;
    if (t.nLens != 0) nKeys |= t.nLens > 0 ? kTele : kWide;
    const bool bPanTilt = t.nPan != 0 || t.nTilt != 0;
    const uint32_t nData = bPanTilt ? Speeds(x.nPanSpeed / 9, x.nTiltSpeed / 9) : 0xFF;
    out.Start().Put(nAddress).Put(nKeys).Put(nData);
}

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    if (nAddress < 1 || nAddress > kAddressMax) return;
    const PTZMeaning& t = x.tMeaning;
    switch (c.eOp) {
    case Move:
        out.Start().Put(nAddress).Put(c.ay[0]);
        out.Put(Speeds(t.nPan != 0 ? x.nPanSpeed : 0, t.nTilt != 0 ? x.nTiltSpeed : 0));
        return;
    case Number:
        out.Start().Put(c.ay[0] + nAddress).Put(x.nNumber).Put(0x00);
        return;
    case Joystick:
        return Proportional(out, nAddress, x);
    default:
        out.Start().Put(nAddress).Put(c.ay[0]).Put(c.ay[1]);
        return;
    }
}

// Speeds 0-7; a level-0 move starts at 0 and ramps to 3 and 6.
constexpr PTZSpeedScale kSpeeds = {0, 0, kSpeedMax, 3, 6};
constexpr PTZDriver kLilin = {kCodes, Write, kSpeeds, kSpeeds, {}, kPTZMoveMask, 200};

}  // namespace

int32_t BuildCmd_MLPIH7x00(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                           uint32_t /*nParam2*/) {
    return PTZBuild(kLilin, nAddress, atPacket, ptState);
}

int32_t CheckStatus_MLPIH7x00(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kLilin, nAddress, atPacket, ptState);
}
