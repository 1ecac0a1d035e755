// Pelco-P and extended Pelco-P builders: golden frames and their deliberate differences.
#include "ptz/drivers/pm_drivers.h"
#include "tests/unit/drivers/driver_harness.h"

namespace {

constexpr uint32_t kNone = kPTZCmdNone;

const GoldenRow kPelcoP[] = {
    // address byte is the address minus 1; 0 stays 0
    {PTZCmd_Left, 8, 0, 0, 1, "A0 00 00 04 3F 00 AF 34", PTZCmd_Left},
    {PTZCmd_Left, 8, 0, 0, 0, "A0 00 00 04 3F 00 AF 34", PTZCmd_Left},
    {PTZCmd_ZoomTele, 0, 0, 0, 0x100, "A0 FF 00 20 00 00 AF D0", PTZCmd_ZoomTele},
    {PTZCmd_UpLeft, 0, 0, 0, 2, "A0 01 00 0C 04 04 AF 02", PTZCmd_UpLeft},
    {PTZCmd_Down, 6, 0, 0, 2, "A0 01 00 10 00 27 AF 39", PTZCmd_Down},
    // focus bits swapped against Pelco-D; camera on/off 0x40 / 0x10
    {PTZCmd_FocusNear, 0, 0, 0, 1, "A0 00 02 00 00 00 AF 0D", PTZCmd_FocusNear},
    {PTZCmd_FocusFar, 0, 0, 0, 1, "A0 00 01 00 00 00 AF 0E", PTZCmd_FocusFar},
    {PTZCmd_CameraOn, 0, 0, 0, 1, "A0 00 40 00 00 00 AF 4F", kNone},
    {PTZCmd_CameraOff, 0, 0, 0, 1, "A0 00 10 00 00 00 AF 1F", kNone},
    {PTZCmd_IrisOpen, 0, 0, 0, 1, "A0 00 04 00 00 00 AF 0B", kNone},
    // automatic pan through presets 99 / 96: on keeps its code; the menu does not
    {PTZCmd_AutoPan, 0, 0, 0, 1, "A0 00 00 07 00 63 AF 6B", PTZCmd_AutoPan},
    {PTZCmd_AutoPanOff, 0, 0, 0, 1, "A0 00 00 07 00 60 AF 68", kNone},
    {PTZCmd_MenuOn, 0, 0, 0, 1, "A0 00 00 03 00 5F AF 53", kNone},
    {PTZCmd_UpStop, 0, 0, 0, 1, "A0 00 00 00 00 00 AF 0F", kNone},
    {PTZCmd_Joystick, 0x90, 0x05, 0, 1, "A0 00 00 14 10 05 AF 0E", kNone},
    // numbers 1-127
    {PTZCmd_PresetGo, 127, 0, 0, 5, "A0 04 00 07 00 7F AF 73", kNone},
    {PTZCmd_PresetGo, 128, 0, 0, 5, "", kNone},
    {PTZCmd_PresetSet, 1, 0, 0, 1, "A0 00 00 03 00 01 AF 0D", kNone},
    {PTZCmd_RunPattern, 127, 0, 0, 1, "A0 00 00 23 00 7F AF 53", kNone},
    {PTZCmd_RunPattern, 128, 0, 0, 1, "", kNone},
    {PTZCmd_PresetTour, 0, 0, 0, 1, "", kNone},
    // automatic iris and focus are unsupported here
    {PTZCmd_IrisAuto, 0, 0, 0, 1, "", PTZCmd_IrisAuto},
    {PTZCmd_FocusAuto, 0, 0, 0, 1, "", PTZCmd_FocusAuto},
    {PTZCmd_FocusAutoOff, 0, 0, 0, 1, "", PTZCmd_FocusAutoOff},
    {114, 0, 0, 0, 1, "", 114},
};

const GoldenRow kExtPelcoP[] = {
    // address unchanged; check leaves out start and end bytes
    {PTZCmd_PresetGo, 3, 0, 0, 1, "A0 01 00 07 00 03 AF 05", kNone},
    {PTZCmd_FocusNear, 0, 0, 0, 1, "A0 01 02 00 01 01 AF 03", PTZCmd_FocusNear},
    {PTZCmd_FocusFar, 0, 0, 0, 1, "A0 01 01 00 01 01 AF 00", PTZCmd_FocusFar},
    {PTZCmd_IrisOpen, 0, 0, 0, 1, "A0 01 04 00 01 01 AF 05", kNone},
    {PTZCmd_CameraOn, 0, 0, 0, 1, "A0 01 40 00 00 00 AF 41", kNone},
    {PTZCmd_CameraOff, 0, 0, 0, 1, "A0 01 01 00 00 00 AF 00", kNone},
    {PTZCmd_Left, 8, 0, 0, 0x1F5, "A0 F5 00 04 3F 00 AF CE", PTZCmd_Left},
    {PTZCmd_Up, 0, 0, 0, 1, "A0 01 00 08 00 04 AF 0D", PTZCmd_Up},
    {PTZCmd_DownRight, 8, 0, 0, 1, "A0 01 00 12 3F 3F AF 13", PTZCmd_DownRight},
    // pattern record / end / run on the first two auxiliaries; AuxOff2 is a stop
    {PTZCmd_AuxOn1, 0, 0, 0, 1, "A0 01 00 1F 00 00 AF 1E", kNone},
    {PTZCmd_AuxOff1, 0, 0, 0, 1, "A0 01 00 21 00 00 AF 20", kNone},
    {PTZCmd_AuxOn2, 0, 0, 0, 1, "A0 01 00 23 00 00 AF 22", kNone},
    {PTZCmd_AuxOff2, 0, 0, 0, 1, "A0 01 00 00 00 00 AF 01", kNone},
    // numbers 1-32
    {PTZCmd_PresetSet, 32, 0, 0, 7, "A0 07 00 03 00 20 AF 24", kNone},
    {PTZCmd_PresetSet, 33, 0, 0, 7, "", kNone},
    {PTZCmd_PresetGo, 0, 0, 0, 7, "", kNone},
    {PTZCmd_PresetTour, 33, 0, 0, 1, "", kNone},
    // model keys 4, 6, 8, 10 are refused (255); everything else unsupported keeps the code
    {PTZCmd_Ext4, 0, 0, 0, 1, "", kNone},
    {PTZCmd_Ext4Stop, 0, 0, 0, 1, "", PTZCmd_Ext4Stop},
    {PTZCmd_AutoPan, 0, 0, 0, 1, "", PTZCmd_AutoPan},
    {PTZCmd_Joystick, 0x90, 5, 0, 1, "", PTZCmd_Joystick},
    {PTZCmd_JoystickStop, 0, 0, 0, 1, "", PTZCmd_JoystickStop},
    {PTZCmd_MenuOn, 0, 0, 0, 1, "", PTZCmd_MenuOn},
    {PTZCmd_IrisAuto, 0, 0, 0, 1, "", PTZCmd_IrisAuto},
    {PTZCmd_RunPattern, 1, 0, 0, 1, "", PTZCmd_RunPattern},
};

TEST(PelcoP, GoldenFrames) { ExpectGolden(BuildCmd_PelcoP, kPelcoP); }
TEST(ExtPelcoP, GoldenFrames) { ExpectGolden(BuildCmd_ExtPelcoP, kExtPelcoP); }

// A refused code is refused again rather than suppressed; an unsupported one is suppressed; a
// tour number out of range starts no tour.
TEST(ExtPelcoP, RefusalsAndTourRange) {
    DriverHarness h(BuildCmd_ExtPelcoP, CheckStatus_ExtPelcoP, 1);
    h.Send(PTZCmd_Ext4);
    h.Send(PTZCmd_Ext4);
    EXPECT_EQ(h.State().nLastCmd, kNone);
    h.Send(PTZCmd_Ext2);
    EXPECT_EQ(h.State().nLastCmd, uint32_t{PTZCmd_Ext2});
    for (int32_t n : {0, 33}) {
        h.Send(PTZCmd_PresetTour, n);
        EXPECT_EQ(h.State().bStatusActive, 0) << n;
    }
    h.Send(PTZCmd_PresetTour, 32);
    EXPECT_EQ(h.State().bStatusActive, 1);
    EXPECT_EQ(h.State().nTourCount, 32u);
}

}  // namespace
