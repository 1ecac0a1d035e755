// Dongyang SmartDome driver: one ASCII line per command.
//
//   "at"  a a a  letter  d d  k k  CR
//
//   a a a   camera address, three decimal digits, 0-999
//   letter  L R U D pan / tilt (d d = speed); T W zoom tele / wide; F N focus far / near;
//           O C iris open / close; S stop (00); P set, G go to preset (d d = 01-99);
//           A auxiliary (d d = output 1-6, then 1 on / 0 off); M menu (01 on, 00 off)
//   k k     8-bit sum of all characters before it, two upper-case hexadecimal digits
//
// Our choice on the dome's line: nothing public gives its codes beyond the letters, so each letter
// does what its name says, and digits that carry no value are 00. A diagonal move is a pan line,
// then a tilt line; the stop line ends every action. Speeds are Pelco-D's (01-63; level 0 starts
// at 04 and ramps to 24, then 56), written in decimal. Codes not listed (automatic pan, camera
// power, automatic focus and iris, patterns, the joystick) send nothing.
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_engine.h"

const PTZCntlOpt CntlOpt_SmartDome = {10, 0xFD482002};

namespace {

using enum PTZOp;

constexpr uint8_t kPresetMax = 99;        // presets and tour length

// Rows: letter and its two digits; move rows: pan letter, tilt letter (0 where the axis stands).
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_FocusNear,      Held,      {'N'}},
    {PTZCmd_FocusFar,       Held,      {'F'}},
    {PTZCmd_ZoomWide,       Held,      {'W'}},
    {PTZCmd_ZoomTele,       Held,      {'T'}},
    {PTZCmd_UpLeft,         Move,      {'L', 'U'}},
    {PTZCmd_Up,             Move,      {0, 'U'}},
    {PTZCmd_UpRight,        Move,      {'R', 'U'}},
    {PTZCmd_Left,           Move,      {'L', 0}},
    {PTZCmd_Right,          Move,      {'R', 0}},
    {PTZCmd_DownLeft,       Move,      {'L', 'D'}},
    {PTZCmd_Down,           Move,      {0, 'D'}},
    {PTZCmd_DownRight,      Move,      {'R', 'D'}},
    {PTZCmd_PresetSet,      Number,    {'P'}, kPresetMax},
    {PTZCmd_PresetTour,     TourStart, {}, kPresetMax},
    {PTZCmd_IrisOpen,       Once,      {'O'}},
    {PTZCmd_IrisClose,      Once,      {'C'}},
    {kPTZAnyStop,           Once,      {'S'}},
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_AuxOn1,         Once,      {'A', 1, 1}},
    {PTZCmd_AuxOn2,         Once,      {'A', 2, 1}},
    {PTZCmd_AuxOn3,         Once,      {'A', 3, 1}},
    {PTZCmd_AuxOn4,         Once,      {'A', 4, 1}},
    {PTZCmd_AuxOn5,         Once,      {'A', 5, 1}},
    {PTZCmd_AuxOn6,         Once,      {'A', 6, 1}},
    {PTZCmd_MenuOn,         Once,      {'M', 0, 1}},
    {PTZCmd_PresetGo,       Number,    {'G'}, kPresetMax},
    {PTZCmd_AuxOff1,        Once,      {'A', 1, 0}},
    {PTZCmd_AuxOff2,        Once,      {'A', 2, 0}},
    {PTZCmd_AuxOff3,        Once,      {'A', 3, 0}},
    {PTZCmd_AuxOff4,        Once,      {'A', 4, 0}},
    {PTZCmd_AuxOff5,        Once,      {'A', 5, 0}},
    {PTZCmd_AuxOff6,        Once,      {'A', 6, 0}},
    {PTZCmd_MenuOff,        Once,      {'M', 0, 0}},
};
// clang-format on
static_assert(PTZCovers(kCodes, kPTZMoveMask));

void Line(PTZFrames& out, uint32_t nAddress, uint8_t yLetter, uint32_t nDigits) {
    out.Start().Text("at").Dec(nAddress, 3).Put(yLetter).Dec(nDigits, 2);
    out.CheckHex(PTZCheck::Sum8, 0).Put('\r');
}

// Two digits of speed, also for wild levels.
uint32_t Speed(int32_t n) { return n < 1 ? 1 : n > 99 ? 99 : static_cast<uint32_t>(n); }

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    if (nAddress > 999) return;
    switch (c.eOp) {
    case Move:
        if (c.ay[0] != 0) Line(out, nAddress, c.ay[0], Speed(x.nPanSpeed));
        if (c.ay[1] != 0) Line(out, nAddress, c.ay[1], Speed(x.nTiltSpeed));
        return;
    case Number:
        return Line(out, nAddress, c.ay[0], x.nNumber);
    default:
        return Line(out, nAddress, c.ay[0], c.ay[1] * 10u + c.ay[2]);
    }
}

constexpr PTZDriver kSmartDome = {kCodes, Write, kPTZPelcoSpeeds, kPTZPelcoSpeeds};

}  // namespace

int32_t BuildCmd_SmartDome(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                           uint32_t /*nParam2*/) {
    return PTZBuild(kSmartDome, nAddress, atPacket, ptState);
}

int32_t CheckStatus_SmartDome(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kSmartDome, nAddress, atPacket, ptState);
}
