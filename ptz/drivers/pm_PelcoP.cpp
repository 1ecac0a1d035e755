// Pelco-P camera protocol: one 8-byte frame per command.
//
//   byte | 0    | 1       | 2      | 3      | 4      | 5      | 6    | 7
//        | 0xA0 | address | data 1 | data 2 | data 3 | data 4 | 0xAF | check
//
//   address  configured address minus 1 (address 0 is sent as 0), low 8 bits
//   data 3   pan speed, or 0
//   data 4   tilt speed, or a preset / pattern number, or 0
//   check    XOR of bytes 0 to 6
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_pelco_family.h"

const PTZCntlOpt CntlOpt_PelcoP = {10, 0xFC08E503};

namespace {

using enum PTZOp;

constexpr uint8_t kNumberMax = 127;       // presets and patterns 1..127

// Codes not listed are unsupported: nothing is sent and the code becomes nLastCmd. Unlike Pelco-D,
// automatic pan is go-to-preset 99 / 96, focus near and far swap bits, and AutoPan keeps its code
// while MenuOn does not; these differences are deliberate. The tour count is taken unchecked.
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_AutoPan,        Held,      {0x00, kPelcoPresetGo, 0, 99}},
    {PTZCmd_FocusNear,      Held,      {0x02, 0x00}},
    {PTZCmd_FocusFar,       Held,      {0x01, 0x00}},
    {PTZCmd_CameraOn,       Once,      {0x40, 0x00}},
    {PTZCmd_PresetSet,      Number,    {0x00, kPelcoPresetSet}, kNumberMax},
    {PTZCmd_PresetTour,     TourStart},
    {PTZCmd_IrisOpen,       Once,      {0x04, 0x00}},
    {PTZCmd_IrisClose,      Once,      {0x08, 0x00}},
    {PTZCmd_AutoPanOff,     Once,      {0x00, kPelcoPresetGo, 0, 96}},
    {PTZCmd_CameraOff,      Once,      {0x10, 0x00}},
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_MenuOn,         Once,      {0x00, kPelcoPresetSet, 0, 95}},
    {PTZCmd_RunPattern,     Number,    {0x00, kPelcoPatternRun}, kNumberMax},
    {PTZCmd_PresetGo,       Number,    {0x00, kPelcoPresetGo}, kNumberMax},
    {PTZCmd_Joystick,       Joystick},
};
// clang-format on
static_assert(PTZCovers(kCodes, kPTZMoveMask, kPelcoMoves));

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    const PelcoBytes b = PelcoPayload(c, x);
    out.Start().Put(0xA0).Put(nAddress == 0 ? 0 : nAddress - 1);
    out.Put(b.yCmd1).Put(b.yCmd2).Put(b.yData1).Put(b.yData2).Put(0xAF).Check(PTZCheck::Xor, 0);
}

// A tour of 0 presets sends nothing but leaves the poller armed.
constexpr PTZDriver kPelcoP = {.atCodes = kCodes, .write = Write, .tPan = kPTZPelcoSpeeds,
                               .tTilt = kPTZPelcoSpeeds, .eEmptyTour = PTZEmptyTour::StayArmed,
                               .atShared = kPelcoMoves};

}  // namespace

int32_t BuildCmd_PelcoP(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState, uint32_t) {
    return PTZBuild(kPelcoP, nAddress, atPacket, ptState);
}

int32_t CheckStatus_PelcoP(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kPelcoP, nAddress, atPacket, ptState);
}
