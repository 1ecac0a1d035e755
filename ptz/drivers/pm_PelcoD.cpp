// Pelco-D camera protocol: one 7-byte frame per command.
//
//   byte | 0    | 1       | 2         | 3         | 4      | 5      | 6
//        | 0xFF | address | command 1 | command 2 | data 1 | data 2 | check
//
//   address  low 8 bits of the configured address, unchanged
//   data 1   pan speed, or 0
//   data 2   tilt speed, or a preset / pattern / option number, or 0
//   check    (byte 1 + ... + byte 5) mod 256
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_pelco_family.h"

const PTZCntlOpt CntlOpt_PelcoD = {10, 0xFC08E503};

namespace {

using enum PTZOp;

// Codes not listed are unsupported: nothing is sent and the code becomes nLastCmd. Numbered rows
// carry their highest number; the tour count is taken unchecked. Both asymmetries below are
// deliberate: FocusAuto and MenuOn keep their code while IrisAuto does not, and the menu is opened
// with set-preset 95 but has no frame to close it.
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_AutoPan,        Once,      {0x90, 0x00}},
    {PTZCmd_FocusNear,      Held,      {0x01, 0x00}},
    {PTZCmd_FocusFar,       Held,      {0x00, 0x80}},
    {PTZCmd_CameraOn,       Once,      {0x88, 0x00}},
    {PTZCmd_PresetSet,      Number,    {0x00, kPelcoPresetSet}, 255},
    {PTZCmd_PresetTour,     TourStart},
    {PTZCmd_IrisOpen,       Once,      {0x02, 0x00}},
    {PTZCmd_IrisClose,      Once,      {0x04, 0x00}},
    {PTZCmd_IrisAuto,       Once,      {0x00, 0x2D, 0, 1}},
    {PTZCmd_AutoPanOff,     Once,      {0x10, 0x00}},
    {PTZCmd_CameraOff,      Once,      {0x08, 0x00}},
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_IrisAutoOff,    Once,      {0x00, 0x2D, 0, 2}},
    {PTZCmd_FocusAuto,      Held,      {0x00, 0x2B, 0, 1}},
    {PTZCmd_MenuOn,         Held,      {0x00, kPelcoPresetSet, 0, 95}},
    {PTZCmd_RunPattern,     Number,    {0x00, kPelcoPatternRun}, 32},
    {PTZCmd_PresetGo,       Number,    {0x00, kPelcoPresetGo}, 255},
    {PTZCmd_Joystick,       Joystick},
    {PTZCmd_FocusAutoOff,   Once,      {0x00, 0x2B, 0, 2}},
};
// clang-format on
static_assert(PTZCovers(kCodes, kPTZMoveMask, kPelcoMoves));

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    const PelcoBytes b = PelcoPayload(c, x);
    out.Start().Put(0xFF).Put(nAddress).Put(b.yCmd1).Put(b.yCmd2).Put(b.yData1).Put(b.yData2);
    out.Check(PTZCheck::Sum8, 1);
}

}  // namespace

const std::span<const PTZCode> kPelcoDCodes = kCodes;
// A tour of 0 presets is accepted by the builder; it is an empty tour: nothing to visit, so the
// poller disarms instead of stepping.
const PTZDriver kPelcoDDriver = {.atCodes = kCodes, .write = Write, .tPan = kPTZPelcoSpeeds,
                                 .tTilt = kPTZPelcoSpeeds, .atShared = kPelcoMoves};

int32_t BuildCmd_PelcoD(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState, uint32_t) {
    return PTZBuild(kPelcoDDriver, nAddress, atPacket, ptState);
}

int32_t CheckStatus_PelcoD(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kPelcoDDriver, nAddress, atPacket, ptState);
}
