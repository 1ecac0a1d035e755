// Samsung SCC-641 protocol driver. The model has no status routine: level-0 moves are never sped
// up and a preset tour is stored but never stepped.
//
//  byte  0     1     2        3      4      5      6       7       8
//        A0    FE    address  group  cmd 1  cmd 2  data 1  data 2  check
//
//  address  the configured address, low 8 bits
//  group    01 moves, lens, iris and stops; 03 functions (menu, presets, auto pan, patterns)
//  data     moves carry the speed in both data bytes, straight or diagonal; numbers go in cmd 2
//  check    0xFF minus the 8-bit sum of bytes 1-7
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_engine.h"

const PTZCntlOpt CntlOpt_SCC641 = {10, 0xFC08C902};

namespace {

using enum PTZOp;

constexpr uint8_t kLens = 0x01;
constexpr uint8_t kFunc = 0x03;
constexpr uint8_t kNumberMax = 99;    // presets, tours and patterns

// Rows: group, cmd 1, cmd 2, data 1, data 2. Focus is one-shot while zoom keeps its code; the stop
// partners of the model keys 4-10 and FocusAutoOff send a stop although their start codes are
// unsupported; the iris and joystick stops are unsupported; the tour stop sends a stop.
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_AutoPan,        Held,        {kFunc, 0x1A, 0x01, 0xFF, 0xFF}},
    {PTZCmd_FocusNear,      Once,        {kLens, 0x02, 0x00}},
    {PTZCmd_FocusFar,       Once,        {kLens, 0x01, 0x00}},
    {PTZCmd_ZoomWide,       Held,        {kLens, 0x40, 0x00}},
    {PTZCmd_ZoomTele,       Held,        {kLens, 0x20, 0x00}},
    {PTZCmd_UpLeft,         Move,        {kLens, 0x00, 0x05}},
    {PTZCmd_Up,             Move,        {kLens, 0x00, 0x04}},
    {PTZCmd_UpRight,        Move,        {kLens, 0x00, 0x06}},
    {PTZCmd_Left,           Move,        {kLens, 0x00, 0x01}},
    {PTZCmd_Right,          Move,        {kLens, 0x00, 0x02}},
    {PTZCmd_DownLeft,       Move,        {kLens, 0x00, 0x09}},
    {PTZCmd_Down,           Move,        {kLens, 0x00, 0x08}},
    {PTZCmd_DownRight,      Move,        {kLens, 0x00, 0x0A}},
    {PTZCmd_PresetSet,      Number,      {kFunc, 0x50, 0x00, 0xFF, 0xFF}, kNumberMax},
    {PTZCmd_PresetTour,     TourStart,   {}, kNumberMax},
    {PTZCmd_IrisOpen,       Once,        {kLens, 0x08, 0x00}},
    {PTZCmd_IrisClose,      Once,        {kLens, 0x10, 0x00}},
    {PTZCmd_AutoPanOff,     Held,        {kFunc, 0x1A, 0x00, 0xFF, 0xFF}},
    {kPTZAnyStop,           Once,        {kLens}},
    {PTZCmd_Ext4Stop,       Once,        {kLens}},
    {PTZCmd_Ext6Stop,       Once,        {kLens}},
    {PTZCmd_Ext8Stop,       Once,        {kLens}},
    {PTZCmd_Ext10Stop,      Once,        {kLens}},
    {PTZCmd_FocusAutoOff,   Once,        {kLens}},
    {PTZCmd_IrisOpenStop,   Unsupported},
    {PTZCmd_IrisCloseStop,  Unsupported},
    {PTZCmd_JoystickStop,   Unsupported},
    {PTZCmd_PresetTourStop, Halt,        {kLens}},
    {PTZCmd_FocusAuto,      Once,        {kLens, 0x04, 0x00}},
    {PTZCmd_MenuOn,         Held,        {kFunc, 0x17, 0x01, 0xFF, 0xFF}},
    {PTZCmd_MenuEnter,      Held,        {kFunc, 0x18, 0xFF, 0xFF, 0xFF}},
    {PTZCmd_RunPattern,     Number,      {kFunc, 0x1B, 0x00, 0x01, 0xFF}, kNumberMax},
    {PTZCmd_PresetGo,       Number,      {kFunc, 0x19, 0x00, 0xFF, 0xFF}, kNumberMax},
    {PTZCmd_MenuOff,        Held,        {kFunc, 0x17, 0x00, 0xFF, 0xFF}},
};
// clang-format on

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    uint32_t nCmd2 = c.ay[2], nData1 = c.ay[3], nData2 = c.ay[4];
    if (c.eOp == Move) nData1 = nData2 = static_cast<uint32_t>(x.nPanSpeed);
    if (c.eOp == Number) nCmd2 = x.nNumber;
    out.Start().Put(0xA0).Put(0xFE).Put(nAddress).Put(c.ay[0]).Put(c.ay[1]).Put(nCmd2);
    out.Put(nData1).Put(nData2).Check(PTZCheck::Complement, 1);
}

constexpr PTZSpeedScale kSpeeds = {5, 1, 64, 0, 0};   // never ramped: no status routine
constexpr PTZDriver kSCC641 = {kCodes, Write, kSpeeds, kSpeeds};

}  // namespace

int32_t BuildCmd_SCC641(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                        uint32_t /*nParam2*/) {
    return PTZBuild(kSCC641, nAddress, atPacket, ptState);
}
