// Honeywell GCC-655N camera protocol driver. Frames and codes are the maker's protocol manual's.
//
//  byte  0    1         2    3    4    5
//        C5   function  key  00   A    check
//
//  function  5F ('_'): a key; zoom tele 01, wide 03, focus far 08, near 09, menu 24, release 0C
//            3A camera power on, 3E off (key 00)
//            79 store an internal preset, 7A go to it (key = preset 0-49)
//  A         the configured address, low 8 bits
//  check     8-bit sum of bytes 0-4
//
// A key stays pressed until the release frame: zoom and focus send it on their stop code. The menu
// key opens the menu and closes it again, so both menu switches send it (a repeat of either is
// suppressed). The camera numbers its presets 0-49: the recorder's presets 1-50 map onto them in
// order. A zoom camera without pan and tilt and without a status routine: moves send nothing, and
// a preset tour is stored but never stepped.
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_engine.h"

const PTZCntlOpt CntlOpt_GC655NP = {10, 0x00002000};

namespace {

using enum PTZOp;

constexpr uint8_t kKey = 0x5F;
constexpr uint8_t kRelease = 0x0C;
constexpr uint8_t kMenu = 0x24;
constexpr uint8_t kPresetMax = 50;     // the camera's presets 0-49

// Rows: function, key. Stops release the held key; a stop of something this camera does not do
// sends nothing.
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_FocusNear,      Held,      {kKey, 0x09}},
    {PTZCmd_FocusFar,       Held,      {kKey, 0x08}},
    {PTZCmd_ZoomWide,       Held,      {kKey, 0x03}},
    {PTZCmd_ZoomTele,       Held,      {kKey, 0x01}},
    {PTZCmd_CameraOn,       Once,      {0x3A, 0x00}},
    {PTZCmd_PresetSet,      Number,    {0x79}, kPresetMax},
    {PTZCmd_PresetTour,     TourStart, {}, kPresetMax},
    {kPTZAnyStop,           Once,      {kKey, kRelease}},
    {PTZCmd_CameraOff,      Once,      {0x3E, 0x00}},
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_MenuOn,         Held,      {kKey, kMenu}},
    {PTZCmd_PresetGo,       Number,    {0x7A}, kPresetMax},
    {PTZCmd_MenuOff,        Held,      {kKey, kMenu}},
};
// clang-format on

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    if (c.nCode == kPTZAnyStop && x.ptStopped == nullptr) return;
    const uint32_t nKey = c.eOp == Number ? x.nNumber - 1 : c.ay[1];
    out.Start().Put(0xC5).Put(c.ay[0]).Put(nKey).Put(0x00).Put(nAddress).Check(PTZCheck::Sum8, 0);
}

// No moves: nothing to ramp, and level-0 moves arm nothing.
constexpr PTZDriver kGC655 = {kCodes, Write, {}, {}, {}, 0};

}  // namespace

int32_t BuildCmd_GC655NP(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                         uint32_t /*nParam2*/) {
    return PTZBuild(kGC655, nAddress, atPacket, ptState);
}
