// Pelco-D builder: golden frames, and which codes keep nLastCmd (their repeat is suppressed).
#include "ptz/drivers/pm_drivers.h"
#include "tests/unit/drivers/driver_harness.h"

namespace {

constexpr uint32_t kNone = kPTZCmdNone;

const GoldenRow kPelcoD[] = {
    // moves: speed per level (0 -> 4, 5 -> 32, 8 -> 63, 10 unclamped -> 70); pan in data 1, tilt in 2
    {PTZCmd_Left, 8, 0, 0, 1, "FF 01 00 04 3F 00 44", PTZCmd_Left},
    {PTZCmd_UpRight, 0, 0, 0, 3, "FF 03 00 0A 04 04 15", PTZCmd_UpRight},
    {PTZCmd_Down, 5, 0, 0, 1, "FF 01 00 10 00 20 31", PTZCmd_Down},
    {PTZCmd_Right, 10, 0, 0, 1, "FF 01 00 02 46 00 49", PTZCmd_Right},
    {PTZCmd_DownRight, 2, 0, 0, 1, "FF 01 00 12 08 08 23", PTZCmd_DownRight},
    // lens, held: they keep their code
    {PTZCmd_FocusNear, 0, 0, 0, 1, "FF 01 01 00 00 00 02", PTZCmd_FocusNear},
    {PTZCmd_FocusFar, 0, 0, 0, 1, "FF 01 00 80 00 00 81", PTZCmd_FocusFar},
    {PTZCmd_ZoomTele, 0, 0, 0, 1, "FF 01 00 20 00 00 21", PTZCmd_ZoomTele},
    {PTZCmd_FocusAuto, 0, 0, 0, 1, "FF 01 00 2B 00 01 2D", PTZCmd_FocusAuto},
    {PTZCmd_MenuOn, 0, 0, 0, 2, "FF 02 00 03 00 5F 64", PTZCmd_MenuOn},
    // one-shot
    {PTZCmd_IrisOpen, 0, 0, 0, 1, "FF 01 02 00 00 00 03", kNone},
    {PTZCmd_IrisAuto, 0, 0, 0, 1, "FF 01 00 2D 00 01 2F", kNone},
    {PTZCmd_FocusAutoOff, 0, 0, 0, 1, "FF 01 00 2B 00 02 2E", kNone},
    {PTZCmd_CameraOn, 0, 0, 0, 0x105, "FF 05 88 00 00 00 8D", kNone},
    {PTZCmd_CameraOff, 0, 0, 0, 1, "FF 01 08 00 00 00 09", kNone},
    {PTZCmd_AutoPan, 0, 0, 0, 0xFF, "FF FF 90 00 00 00 8F", kNone},
    {PTZCmd_AutoPanOff, 0, 0, 0, 1, "FF 01 10 00 00 00 11", kNone},
    {PTZCmd_LeftStop, 0, 0, 0, 1, "FF 01 00 00 00 00 01", kNone},
    {PTZCmd_JoystickStop, 0, 0, 0, 9, "FF 09 00 00 00 00 09", kNone},
    // numbers: presets 1-255, patterns 1-32
    {PTZCmd_PresetGo, 1, 0, 0, 1, "FF 01 00 07 00 01 09", kNone},
    {PTZCmd_PresetGo, 255, 0, 0, 1, "FF 01 00 07 00 FF 07", kNone},
    {PTZCmd_PresetGo, 0, 0, 0, 1, "", kNone},
    {PTZCmd_PresetGo, 256, 0, 0, 1, "", kNone},
    {PTZCmd_PresetGo, -1, 0, 0, 1, "", kNone},
    {PTZCmd_PresetSet, 255, 0, 0, 1, "FF 01 00 03 00 FF 03", kNone},
    {PTZCmd_RunPattern, 32, 0, 0, 1, "FF 01 00 23 00 20 44", kNone},
    {PTZCmd_RunPattern, 33, 0, 0, 1, "", kNone},
    // joystick: directions from bit 7, magnitudes from bits 0-5
    {PTZCmd_Joystick, 0x90, 0x05, 0, 1, "FF 01 00 14 10 05 2A", kNone},
    {PTZCmd_Joystick, 0x05, 0x83, 0x81, 1, "FF 01 00 2A 05 03 33", kNone},
    {PTZCmd_Joystick, 0x80, 0x40, 0x01, 1, "FF 01 00 40 00 00 41", kNone},
    {PTZCmd_Joystick, 0xFF, 0xFF, 0xFF, 1, "FF 01 00 2C 3F 3F AB", kNone},
    // tours send nothing themselves
    {PTZCmd_PresetTour, 3, 0, 0, 1, "", kNone},
    {PTZCmd_PresetTourStop, 0, 0, 0, 1, "", kNone},
    // unsupported: nothing, and the code itself is remembered
    {7, 0, 0, 0, 1, "", 7},
    {PTZCmd_PresetClear, 5, 0, 0, 1, "", PTZCmd_PresetClear},
    {PTZCmd_AuxOn1, 0, 0, 0, 1, "", PTZCmd_AuxOn1},
    {PTZCmd_MenuOff, 0, 0, 0, 1, "", PTZCmd_MenuOff},
    {114, 0, 0, 0, 1, "", 114},
    {0x10000 + PTZCmd_Left, 8, 0, 0, 1, "", 0x10000 + PTZCmd_Left},
};

TEST(PelcoD, GoldenFrames) { ExpectGolden(BuildCmd_PelcoD, kPelcoD); }

}  // namespace
