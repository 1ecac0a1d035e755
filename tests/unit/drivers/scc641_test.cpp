#include "tests/unit/drivers/driver_harness.h"

constexpr uint32_t kSamsung = 4;

TEST(Scc641, GoldenFrames) {
    ExpectGolden(kSamsung, {
        // moves: speed in both data bytes, level 0 -> 5, 1 -> 1, 3 -> 16, 6 -> 40, 8 -> 64
        {PTZCmd_Up, 8, 0x12, "A0 FE 12 01 00 04 40 40 6A", PTZCmd_Up},
        {PTZCmd_UpRight, 3, 0x12, "A0 FE 12 01 00 06 10 10 C8", PTZCmd_UpRight},
        {PTZCmd_Left, 0, 0x12, "A0 FE 12 01 00 01 05 05 E3", PTZCmd_Left},
        {PTZCmd_Right, 1, 0x12, "A0 FE 12 01 00 02 01 01 EA", PTZCmd_Right},
        {PTZCmd_Down, 6, 0x12, "A0 FE 12 01 00 08 28 28 96", PTZCmd_Down},
        // zoom, automatic pan and the menu keep their code; focus and iris do not
        {PTZCmd_ZoomWide, 0, 0x12, "A0 FE 12 01 40 00 00 00 AE", PTZCmd_ZoomWide},
        {PTZCmd_AutoPan, 0, 0x12, "A0 FE 12 03 1A 01 FF FF D3", PTZCmd_AutoPan},
        {PTZCmd_MenuOn, 0, 0x12, "A0 FE 12 03 17 01 FF FF D6", PTZCmd_MenuOn},
        {PTZCmd_MenuEnter, 0, 0x12, "A0 FE 12 03 18 FF FF FF D7", PTZCmd_MenuEnter},
        {PTZCmd_MenuOff, 0, 0x12, "A0 FE 12 03 17 00 FF FF D7", PTZCmd_MenuOff},
        {PTZCmd_FocusNear, 0, 0x12, "A0 FE 12 01 02 00 00 00 EC", kNone},
        {PTZCmd_IrisOpen, 0, 0x12, "A0 FE 12 01 08 00 00 00 E6", kNone},
        // numbers 1-99 in cmd 2; the check is 0xFF minus the 8-bit sum
        {PTZCmd_PresetSet, 7, 0x12, "A0 FE 12 03 50 07 FF FF 97", kNone},
        {PTZCmd_RunPattern, 12, 0x12, "A0 FE 12 03 1B 0C 01 FF C5", kNone},
        {PTZCmd_PresetGo, 99, 0x12, "A0 FE 12 03 19 63 FF FF 72", kNone},
        {PTZCmd_PresetGo, 5, 0x1FF, "A0 FE FF 03 19 05 FF FF E3", kNone},
        {PTZCmd_PresetGo, 100, 1, "", kNone},
        {PTZCmd_RunPattern, 0, 1, "", kNone},
        // one stop frame, also for the unsupported keys 4-10; the iris stops are unsupported
        {PTZCmd_Ext4Stop, 0, 1, "A0 FE 01 01 00 00 00 00 FF", kNone},
        {PTZCmd_FocusAutoOff, 0, 1, "A0 FE 01 01 00 00 00 00 FF", kNone},
        {PTZCmd_IrisOpenStop, 0, 1, "", PTZCmd_IrisOpenStop},
    });
}

// Tours of 1-99 are stored but never stepped (no status routine) and free the code in force; the
// tour stop sends a stop.
TEST(Scc641, Tour) {
    DriverHarness h(kSamsung, 1);
    h.Send(PTZCmd_Left, 8);
    EXPECT_TRUE(h.Send(PTZCmd_PresetTour, 99).empty());
    EXPECT_EQ(h.State().nLastCmd, kNone);
    EXPECT_EQ(h.State().nTourCount, 99u);
    EXPECT_EQ(h.Send(PTZCmd_PresetTourStop), Hex("A0 FE 01 01 00 00 00 00 FF"));
    EXPECT_EQ(h.State().bStatusActive, 0);
    h.Send(PTZCmd_PresetTour, 100);
    EXPECT_EQ(h.State().bStatusActive, 0);
}
