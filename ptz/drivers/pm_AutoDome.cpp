// Bosch AutoDome protocol driver. Only the start byte has bit 7 set; it also tells how many bytes
// follow it. The address is the configured address minus 1, split into two 7-bit bytes.
//
//  lens and move frame (8 bytes)                 preset frame (7 bytes)
//  0  87                                         0  86
//  1  address bits 7-13                          1  address bits 7-13
//  2  address bits 0-6                           2  address bits 0-6
//  3  05                                         3  07
//  4  b0-3 tilt speed, b4-6 zoom speed           4  preset bits 7-9 in b4-6; b0-2: 4 store, 5 go
//  5  b0 focus far, b1 iris close,               5  preset bits 0-6
//     b2 iris open, b3-6 pan speed               6  check
//  6  b0 right, b1 left, b2 down, b3 up,
//     b4 zoom wide, b5 zoom tele, b6 focus near
//  7  check = sum of bytes 0-6, low 7 bits
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_engine.h"

const PTZCntlOpt CntlOpt_AutoDome = {10, 0xFC000002};

namespace {

using enum PTZOp;

constexpr uint8_t kPresetStore = 4;
constexpr uint8_t kPresetGo = 5;
constexpr uint8_t kPresetMax = 63;    // presets and tour length

// Direction bits of byte 6: they also tell which speed fields a frame carries.
constexpr uint8_t kPanBits = 0x03;
constexpr uint8_t kTiltBits = 0x0C;
constexpr uint8_t kZoomBits = 0x30;

// Lens rows: fixed bits of byte 5 (focus far, iris), bits of byte 6. Preset rows: the action.
// Iris open and close keep their code. Focus and iris stops leave the poller armed; zoom and move
// stops disarm it at once.
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_FocusNear,      Held,        {0x00, 0x40}},
    {PTZCmd_FocusFar,       Held,        {0x01, 0x00}},
    {PTZCmd_ZoomWide,       Held,        {0x00, 0x10}},
    {PTZCmd_ZoomTele,       Held,        {0x00, 0x20}},
    {PTZCmd_UpLeft,         Move,        {0x00, 0x0A}},
    {PTZCmd_Up,             Move,        {0x00, 0x08}},
    {PTZCmd_UpRight,        Move,        {0x00, 0x09}},
    {PTZCmd_Left,           Move,        {0x00, 0x02}},
    {PTZCmd_Right,          Move,        {0x00, 0x01}},
    {PTZCmd_DownLeft,       Move,        {0x00, 0x06}},
    {PTZCmd_Down,           Move,        {0x00, 0x04}},
    {PTZCmd_DownRight,      Move,        {0x00, 0x05}},
    {PTZCmd_PresetSet,      Number,      {kPresetStore}, kPresetMax},
    {PTZCmd_PresetTour,     TourStart,   {}, kPresetMax},
    {PTZCmd_IrisOpen,       Held,        {0x04, 0x00}},
    {PTZCmd_IrisClose,      Held,        {0x02, 0x00}},
    {PTZCmd_FocusNearStop,  Once},
    {PTZCmd_FocusFarStop,   Once},
    {PTZCmd_IrisOpenStop,   Once},
    {PTZCmd_IrisCloseStop,  Once},
    {kPTZAnyStop,           Halt},
    {PTZCmd_JoystickStop,   Unsupported},
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_PresetGo,       Number,      {kPresetGo}, kPresetMax},
};
// clang-format on
static_assert(PTZCovers(kCodes, kPTZMoveZoomMask));

// Speeds are masked to their fields so that an out-of-range level can never set bit 7 of a data
// byte. Address 0 has no wire form; minus 1 wraps it to the all-ones address 7F 7F.
void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    const uint32_t nWire = nAddress - 1;
    const bool bPreset = c.eOp == Number;
    out.Start().Put(bPreset ? 0x86 : 0x87).Put((nWire >> 7) & 0x7F).Put(nWire & 0x7F);
    if (bPreset) {
        out.Put(0x07).Put(((x.nNumber & 0x380) >> 3) | c.ay[0]).Put(x.nNumber & 0x7F);
    } else {
        const uint8_t yDirs = c.ay[1];
        uint32_t nByte4 = 0, nByte5 = c.ay[0];
        if (yDirs & kTiltBits) nByte4 |= static_cast<uint32_t>(x.nTiltSpeed) & 0x0F;
        if (yDirs & kZoomBits) nByte4 |= (static_cast<uint32_t>(x.nZoomSpeed) & 0x07) << 4;
        if (yDirs & kPanBits) nByte5 |= (static_cast<uint32_t>(x.nPanSpeed) & 0x0F) << 3;
        out.Put(0x05).Put(nByte4).Put(nByte5).Put(yDirs);
    }
    out.Check(PTZCheck::Sum7, 0);
}

// Level-0 moves ramp to 7 and 15; zoom ramps too and keeps 3 bits of the same values (7, 7).
constexpr PTZSpeedScale kPanTilt = {0, 0, 15, 7, 15};
constexpr PTZSpeedScale kZoom = {0, 0, 7, 7, 15};
// A tour without presets (left behind by another model's driver) disarms instead of stepping.
constexpr PTZDriver kAutoDome = {kCodes, Write, kPanTilt, kPanTilt, kZoom, kPTZMoveZoomMask};

}  // namespace

int32_t BuildCmd_AutoDome(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                          uint32_t /*nParam2*/) {
    return PTZBuild(kAutoDome, nAddress, atPacket, ptState);
}

int32_t CheckStatus_AutoDome(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kAutoDome, nAddress, atPacket, ptState);
}
