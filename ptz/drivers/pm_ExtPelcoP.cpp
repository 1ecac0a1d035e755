// Extended Pelco-P camera protocol: the Pelco-P frame with the address unchanged and a check over
// the address and data bytes only; one 8-byte frame per command.
//
//   byte | 0    | 1       | 2      | 3      | 4      | 5      | 6    | 7
//        | 0xA0 | address | data 1 | data 2 | data 3 | data 4 | 0xAF | check
//
//   address  low 8 bits of the configured address, unchanged
//   data 3   pan speed, 1 on focus and iris, or 0
//   data 4   tilt speed, 1 on focus and iris, or a preset number, or 0
//   check    XOR of bytes 1 to 5
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_pelco_family.h"

const PTZCntlOpt CntlOpt_ExtPelcoP = {10, 0xFE802002};

namespace {

using enum PTZOp;

constexpr uint8_t kNumberMax = 32;        // presets and tour length 1..32

// Codes not listed (among them automatic pan and the joystick) are unsupported: nothing is sent and
// the code becomes nLastCmd. The model keys 4, 6, 8 and 10 are refused anew each time. With this
// camera family AuxOn1 / AuxOff1 start and end recording a pattern and AuxOn2 runs it; AuxOff2 is a
// plain stop. Camera off is data 1 = 0x01, unlike Pelco-P, and focus and iris carry 1 in both speed
// bytes; all deliberate.
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_FocusNear,      Held,        {0x02, 0x00, 1, 1}},
    {PTZCmd_Ext4,           Silent},
    {PTZCmd_FocusFar,       Held,        {0x01, 0x00, 1, 1}},
    {PTZCmd_Ext6,           Silent},
    {PTZCmd_Ext8,           Silent},
    {PTZCmd_Ext10,          Silent},
    {PTZCmd_CameraOn,       Once,        {0x40, 0x00}},
    {PTZCmd_PresetSet,      Number,      {0x00, kPelcoPresetSet}, kNumberMax},
    {PTZCmd_PresetTour,     TourStart,   {}, kNumberMax},
    {PTZCmd_IrisOpen,       Once,        {0x04, 0x00, 1, 1}},
    {PTZCmd_IrisClose,      Once,        {0x08, 0x00, 1, 1}},
    {PTZCmd_CameraOff,      Once,        {0x01, 0x00}},
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_AuxOn1,         Once,        {0x00, 0x1F}},
    {PTZCmd_AuxOn2,         Once,        {0x00, kPelcoPatternRun}},
    {PTZCmd_PresetGo,       Number,      {0x00, kPelcoPresetGo}, kNumberMax},
    {PTZCmd_AuxOff1,        Once,        {0x00, 0x21}},
    {PTZCmd_AuxOff2,        Once,        {0x00, 0x00}},
    {PTZCmd_JoystickStop,   Unsupported},
};
// clang-format on
static_assert(PTZCovers(kCodes, kPTZMoveMask, kPelcoMoves));

// The start byte and the end byte are left out of the check.
void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    const PelcoBytes b = PelcoPayload(c, x);
    out.Start().Put(0xA0).Put(nAddress).Put(b.yCmd1).Put(b.yCmd2).Put(b.yData1).Put(b.yData2);
    out.Put(0xAF).Check(PTZCheck::Xor, 1, 1);
}

// The builder stores only tours of 1..32 presets, but a refused tour start still becomes the
// previous command, and the poller may be armed by an earlier ramp: with no tour ever stored the
// count is 0, an empty tour: nothing to visit, disarm.
constexpr PTZDriver kExtPelcoP = {.atCodes = kCodes, .write = Write, .tPan = kPTZPelcoSpeeds,
                                  .tTilt = kPTZPelcoSpeeds, .atShared = kPelcoMoves};

}  // namespace

int32_t BuildCmd_ExtPelcoP(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                           uint32_t) {
    return PTZBuild(kExtPelcoP, nAddress, atPacket, ptState);
}

int32_t CheckStatus_ExtPelcoP(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kExtPelcoP, nAddress, atPacket, ptState);
}
