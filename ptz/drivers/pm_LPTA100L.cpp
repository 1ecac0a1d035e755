// LG LPT-A100L pan/tilt/zoom driver, from the maker's protocol manual. Every frame is 6 bytes:
//
//   byte  0    1        2        3     4    5
//         02   address  command  data  03   check
//
//   address  01-80
//   command  30-43, data 30-39 (ASCII digits)
//   check    8-bit sum of bytes 0-4, low 7 bits
//
// A move, zoom or focus command runs for 150 ms (data 30) or 500 ms (data 31) and then stops by
// itself. We always ask for 500 ms and re-send the frame every 400 ms while the action is held; a
// stop sends nothing, the action runs out. The camera knows two pan/tilt speeds, set by command 31
// (data 30 low, 31 high): levels 1-4 are low, 5-8 high, and level 0 starts low and ramps to high.
// The speed frame goes before every move the recorder asks for and before each ramp step, so the
// camera moves at the asked speed whatever set it last; the 400 ms reminders repeat only the move.
// The camera has no presets (so no tour), no iris, no auxiliaries; codes not listed send nothing.
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_engine.h"

const PTZCntlOpt CntlOpt_LPTA100L = {10, 0x00082000};

namespace {

using enum PTZOp;

constexpr uint8_t kCmdSpeed = 0x31;
constexpr uint8_t kLong = 0x31;           // the 500 ms form of a move, zoom or focus
constexpr int32_t kHighFromLevel = 5;

// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_AutoPan,        Once,      {0x33, 0x30}},
    {PTZCmd_FocusNear,      Held,      {0x40, kLong}},
    {PTZCmd_FocusFar,       Held,      {0x41, kLong}},
    {PTZCmd_ZoomWide,       Held,      {0x3F, kLong}},
    {PTZCmd_ZoomTele,       Held,      {0x3E, kLong}},
    {PTZCmd_UpLeft,         Move,      {0x3A, kLong}},
    {PTZCmd_Up,             Move,      {0x36, kLong}},
    {PTZCmd_UpRight,        Move,      {0x3D, kLong}},
    {PTZCmd_Left,           Move,      {0x38, kLong}},
    {PTZCmd_CameraOn,       Once,      {0x30, 0x30}},
    {PTZCmd_Right,          Move,      {0x39, kLong}},
    {PTZCmd_DownLeft,       Move,      {0x3B, kLong}},
    {PTZCmd_Down,           Move,      {0x37, kLong}},
    {PTZCmd_DownRight,      Move,      {0x3C, kLong}},
    {PTZCmd_AutoPanOff,     Once,      {0x33, 0x31}},
    {kPTZAnyStop,           Silent},
    {PTZCmd_CameraOff,      Once,      {0x30, 0x31}},
    {PTZCmd_FocusAuto,      Once,      {0x32, 0x30}},
    {PTZCmd_MenuOn,         Once,      {0x42, 0x30}},
};
// clang-format on
static_assert(PTZCovers(kCodes, kPTZMoveMask));

void Frame(PTZFrames& out, uint32_t nAddress, uint8_t yCmd, uint8_t yData) {
    out.Start().Put(0x02).Put(nAddress).Put(yCmd).Put(yData).Put(0x03).Check(PTZCheck::Sum7, 0);
}

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    if (nAddress < 1 || nAddress > 0x80) return;
    if (c.eOp == Move && x.eWhy != PTZWhy::Refresh)
        Frame(out, nAddress, kCmdSpeed, x.nPanSpeed >= kHighFromLevel ? 0x31 : 0x30);
    Frame(out, nAddress, c.ay[0], c.ay[1]);
}

// Speeds are counted as levels (1-7, 8 gives 9); level 0 is low, its ramp stays low at the middle
// step and goes high at the top.
constexpr PTZSpeedScale kLevels = {1, 1, 9, 3, 8};
constexpr PTZDriver kLPT = {kCodes, Write, kLevels, kLevels, {}, kPTZMoveMask, 400};

}  // namespace

int32_t BuildCmd_LPTA100L(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                          uint32_t /*nParam2*/) {
    return PTZBuild(kLPT, nAddress, atPacket, ptState);
}

int32_t CheckStatus_LPTA100L(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kLPT, nAddress, atPacket, ptState);
}
