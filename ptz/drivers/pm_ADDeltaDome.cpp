// American Dynamics DeltaDome protocol driver. Frames and codes are the maker's protocol manual's;
// an independent public decoder reads them the same way.
//
//  command frame (3 bytes)   A  cmd  check
//  speed move (5 bytes)      A  C0   dir  speed  check        dir 81 left, 82 right, 84 up, 85 down
//  preset (5 bytes)          A  C7   01 store / 02 go  n  check
//  pattern (4 bytes)         A  CC   03 / 04 / 05 (patterns 1-3)  check
//
//  A      the configured address (1-63), low 8 bits
//  cmd    pan stop 83, tilt stop 86; focus near 87, far 88, stop 89; zoom tele 8A, wide 8B,
//         stop 8C; iris open 90, close 91, stop 92; all stop 93
//  check  0 minus the 8-bit sum of all bytes before it
//
// Moves always carry a speed; a diagonal is a pan frame followed by a tilt frame, and its stop a
// pan stop followed by a tilt stop. The dome stops by itself after 30 s without traffic, so held
// moves, zoom and focus are sent again every 10 s until their stop. No menu, automatic pan, camera
// power or auxiliaries: those codes send nothing. The plain direction commands 81/82/84/85 (the
// dome's own speed) are not used.
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_engine.h"

const PTZCntlOpt CntlOpt_ADDeltaDome = {10, 0xFC00C002};

namespace {

using enum PTZOp;

constexpr uint8_t kLeft = 0x81, kRight = 0x82, kPanStop = 0x83;
constexpr uint8_t kUp = 0x84, kDown = 0x85, kTiltStop = 0x86;
constexpr uint8_t kAllStop = 0x93;
constexpr uint8_t kSpeedMove = 0xC0;
constexpr uint8_t kPreset = 0xC7, kPresetStore = 0x01, kPresetGo = 0x02;
constexpr uint8_t kPattern = 0xCC, kFirstPattern = 0x03;

constexpr uint8_t kPresetMax = 255;   // presets and tour length: the whole byte
constexpr uint8_t kPatternMax = 3;

// Moves: pan direction, tilt direction (0 where the axis stands still). Lens rows: the command,
// then the command that stops it. Numbered rows: the frame's command byte, then its first data
// byte. Stops not listed stop what they end by axis, or everything when it is not known here.
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_FocusNear,      Held,      {0x87, 0x89}},
    {PTZCmd_FocusFar,       Held,      {0x88, 0x89}},
    {PTZCmd_ZoomWide,       Held,      {0x8B, 0x8C}},
    {PTZCmd_ZoomTele,       Held,      {0x8A, 0x8C}},
    {PTZCmd_UpLeft,         Move,      {kLeft, kUp}},
    {PTZCmd_Up,             Move,      {0, kUp}},
    {PTZCmd_UpRight,        Move,      {kRight, kUp}},
    {PTZCmd_Left,           Move,      {kLeft, 0}},
    {PTZCmd_Right,          Move,      {kRight, 0}},
    {PTZCmd_DownLeft,       Move,      {kLeft, kDown}},
    {PTZCmd_Down,           Move,      {0, kDown}},
    {PTZCmd_DownRight,      Move,      {kRight, kDown}},
    {PTZCmd_PresetSet,      Number,    {kPreset, kPresetStore}, kPresetMax},
    {PTZCmd_PresetTour,     TourStart, {}, kPresetMax},
    {PTZCmd_IrisOpen,       Held,      {0x90, 0x92}},
    {PTZCmd_IrisClose,      Held,      {0x91, 0x92}},
    {kPTZAnyStop,           Once},
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_RunPattern,     Number,    {kPattern}, kPatternMax},
    {PTZCmd_PresetGo,       Number,    {kPreset, kPresetGo}, kPresetMax},
};
// clang-format on
static_assert(PTZCovers(kCodes, kPTZMoveMask));

void Command(PTZFrames& out, uint32_t nAddress, uint8_t yCmd) {
    out.Start().Put(nAddress).Put(yCmd).Check(PTZCheck::Negate, 0);
}

void SpeedMove(PTZFrames& out, uint32_t nAddress, uint8_t yDir, int32_t nSpeed) {
    out.Start().Put(nAddress).Put(kSpeedMove).Put(yDir).Put(static_cast<uint32_t>(nSpeed));
    out.Check(PTZCheck::Negate, 0);
}

// The stop of what a stop code ends: each moving axis, the lens action, or everything.
void Stop(PTZFrames& out, uint32_t nAddress, const PTZCode* ptStopped) {
    if (ptStopped == nullptr) return Command(out, nAddress, kAllStop);
    if (ptStopped->eOp != Move) return Command(out, nAddress, ptStopped->ay[1]);
    if (ptStopped->ay[0] != 0) Command(out, nAddress, kPanStop);
    if (ptStopped->ay[1] != 0) Command(out, nAddress, kTiltStop);
}

// Domes answer to addresses 1-63: a frame to any other address would reach no dome.
constexpr uint32_t kAddressMax = 63;

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    if (nAddress == 0 || nAddress > kAddressMax) return;
    switch (c.eOp) {
    case Move:
        if (c.ay[0] != 0) SpeedMove(out, nAddress, c.ay[0], x.nPanSpeed);
        if (c.ay[1] != 0) SpeedMove(out, nAddress, c.ay[1], x.nTiltSpeed);
        return;
    case Number:
        out.Start().Put(nAddress).Put(c.ay[0]);
        if (c.ay[0] == kPattern) out.Put(kFirstPattern - 1 + x.nNumber);
        else out.Put(c.ay[1]).Put(x.nNumber);
        out.Check(PTZCheck::Negate, 0);
        return;
    case Held:
        return Command(out, nAddress, c.ay[0]);
    default:
        return Stop(out, nAddress, x.ptStopped);
    }
}

// The manual fixes the speed byte, not its steps; we use Pelco-D's speeds 1-63: a level-0 move
// starts at 4 and ramps to 24 and 56.
constexpr PTZDriver kDeltaDome = {kCodes, Write, kPTZPelcoSpeeds, kPTZPelcoSpeeds, {}, kPTZMoveMask,
                                  10000};

}  // namespace

int32_t BuildCmd_ADDeltaDome(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                             uint32_t /*nParam2*/) {
    return PTZBuild(kDeltaDome, nAddress, atPacket, ptState);
}

int32_t CheckStatus_ADDeltaDome(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kDeltaDome, nAddress, atPacket, ptState);
}
