// C&B Tech CNB-PTZ102 pan/tilt driver: the AN200's lens and preset commands plus pan and tilt, in
// the C&B command frame (see pm_cnb_family.h for the frame and where its codes come from). Pan and
// tilt are separate commands, so a diagonal move and its stop are two frames, pan first. Codes
// not listed (camera power, automatic iris, the menu, patterns, auxiliaries, the joystick) send
// nothing.
#include "ptz/drivers/pm_cnb_family.h"
#include "ptz/drivers/pm_drivers.h"

const PTZCntlOpt CntlOpt_CNBPTZ = {60, 0xFE5A0000};

namespace {

using enum PTZOp;

constexpr uint8_t kR = kCNBPlus, kL = kCNBMinus, kU = kCNBPlus, kD = kCNBMinus;

// Move rows: 0, pan direction, tilt direction.
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_UpLeft,         Move,      {0, kL, kU}},
    {PTZCmd_Up,             Move,      {0, 0, kU}},
    {PTZCmd_UpRight,        Move,      {0, kR, kU}},
    {PTZCmd_Left,           Move,      {0, kL, 0}},
    {PTZCmd_Right,          Move,      {0, kR, 0}},
    {PTZCmd_DownLeft,       Move,      {0, kL, kD}},
    {PTZCmd_Down,           Move,      {0, 0, kD}},
    {PTZCmd_DownRight,      Move,      {0, kR, kD}},
    {kPTZAnyStop,           Once,      {kCNBPan}},           // the moving axes
};
// clang-format on
static_assert(PTZCovers(kCodes, kPTZMoveMask, kCNBLens));

// Pelco-D's speeds: 01-3F, level 0 starts at 4 and ramps to 24 and 56.
constexpr PTZDriver kCNBPtzDriver = {.atCodes = kCodes, .write = CNBWrite, .tPan = kPTZPelcoSpeeds,
                                     .tTilt = kPTZPelcoSpeeds, .atShared = kCNBLens};

}  // namespace

int32_t BuildCmd_CNBPTZ(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                        uint32_t /*nParam2*/) {
    return PTZBuild(kCNBPtzDriver, nAddress, atPacket, ptState);
}

int32_t CheckStatus_CNBPTZ(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kCNBPtzDriver, nAddress, atPacket, ptState);
}
