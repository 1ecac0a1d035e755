#include "tests/unit/drivers/driver_harness.h"

constexpr uint32_t kBosch = 27;

static DriverHarness Bosch(uint32_t nAddress = 1) {
    return DriverHarness(kBosch, nAddress);
}

TEST(AutoDome, GoldenFrames) {
    ExpectGolden(kBosch, {
        // lens frames: tilt speed and zoom speed in byte 4, pan speed and focus/iris in byte 5
        {PTZCmd_FocusNear, 0, 1, "87 00 00 05 00 00 40 4C", PTZCmd_FocusNear},
        {PTZCmd_FocusFar, 0, 1, "87 00 00 05 00 01 00 0D", PTZCmd_FocusFar},
        {PTZCmd_ZoomWide, 8, 1, "87 00 00 05 70 00 10 0C", PTZCmd_ZoomWide},
        {PTZCmd_ZoomTele, 5, 1, "87 00 00 05 30 00 20 5C", PTZCmd_ZoomTele},
        {PTZCmd_UpLeft, 8, 1, "87 00 00 05 0F 78 0A 1D", PTZCmd_UpLeft},
        {PTZCmd_Left, 8, 1, "87 00 00 05 00 78 02 06", PTZCmd_Left},
        {PTZCmd_Down, 2, 1, "87 00 00 05 01 00 04 11", PTZCmd_Down},
        {PTZCmd_IrisOpen, 0, 1, "87 00 00 05 00 04 00 10", PTZCmd_IrisOpen},
        {PTZCmd_FocusNearStop, 0, 1, "87 00 00 05 00 00 00 0C", kNone},
        // preset frames 1-63; address minus 1 in two 7-bit bytes, 0 wrapping to 7F 7F
        {PTZCmd_PresetSet, 5, 1, "86 00 00 07 04 05 16", kNone},
        {PTZCmd_PresetGo, 63, 1, "86 00 00 07 05 3F 51", kNone},
        {PTZCmd_PresetGo, 1, 129, "86 01 00 07 05 01 14", kNone},
        {PTZCmd_PresetGo, 1, 0, "86 7F 7F 07 05 01 11", kNone},
        {PTZCmd_PresetGo, 0, 1, "", kNone},
        {PTZCmd_PresetSet, 64, 1, "", kNone},
        // unsupported codes are remembered
        {PTZCmd_AutoPan, 0, 1, "", PTZCmd_AutoPan},
    });
}

// Only the start byte may have bit 7 set, whatever the code or level, even at address 0 (7F 7F).
TEST(AutoDome, DataBytesStaySevenBit) {
    for (uint32_t cmd = 0; cmd < 128; ++cmd)
        for (int32_t level : {0, 1, 9, 10, 17, 63})
            for (const Bytes& f : Bosch(0).Send(cmd, level))
                for (size_t i = 1; i < f.size(); ++i) ASSERT_LT(f[i], 0x80) << cmd << " " << level;
}

// A level-0 zoom or move starts at speed 0 (level 1's frame), is sent again at speed 7 after 0.3 s
// and at 15 after 0.8 s (levels 5 and 8; zoom keeps 3 bits: 7 both times), then stays armed.
// Focus and iris stops leave the poller armed; zoom and move stops disarm it at once.
TEST(AutoDome, RampsAndStops) {
    const struct { uint32_t cmd; int32_t middle; uint32_t stop; uint8_t armed; } kCases[] = {
        {PTZCmd_ZoomTele, 8, PTZCmd_IrisCloseStop, 1}, {PTZCmd_Left, 5, PTZCmd_UpStop, 0},
        {PTZCmd_Up, 5, PTZCmd_ZoomWideStop, 0}, {PTZCmd_Down, 5, PTZCmd_FocusFarStop, 1}};
    for (const auto& c : kCases) {
        Frames want;
        for (int32_t level : {1, c.middle, 8})
            want.push_back(DriverHarness(kBosch, 1).Send(c.cmd, level).at(0));
        DriverHarness h = Bosch();
        Frames got = h.Send(c.cmd, 0);
        EXPECT_TRUE(h.RunMs(290).empty());
        for (const Bytes& b : h.RunMs(10)) got.push_back(b);
        EXPECT_TRUE(h.RunMs(490).empty());
        for (const Bytes& b : h.RunMs(10)) got.push_back(b);
        EXPECT_TRUE(h.RunMs(3000).empty());
        EXPECT_EQ(got, want) << c.cmd;
        EXPECT_EQ(h.State().bStatusActive, 1);
        EXPECT_EQ(h.Send(c.stop).size(), 1u);
        EXPECT_EQ(h.State().bStatusActive, c.armed) << c.stop;
        EXPECT_TRUE(h.RunMs(1000).empty());
    }
}

// Presets 1, 2, 3, 1 every 3 s until the stop; a tour without presets, left by another model's
// driver, disarms instead of stepping.
TEST(AutoDome, Tour) {
    DriverHarness h = Bosch();
    EXPECT_TRUE(h.Send(PTZCmd_PresetTour, 3).empty());
    for (const char* f : {"86 00 00 07 05 01 13", "86 00 00 07 05 02 14", "86 00 00 07 05 03 15",
                          "86 00 00 07 05 01 13"}) {
        EXPECT_TRUE(h.RunMs(2990).empty());
        EXPECT_EQ(h.RunMs(10), Hex(f));
    }
    EXPECT_TRUE(h.Send(PTZCmd_PresetTourStop).empty());
    EXPECT_TRUE(h.RunMs(6000).empty());
    h.State().nPrevCmd = PTZCmd_PresetTour;
    h.State().nTourCount = 0;
    h.State().bStatusActive = 1;
    EXPECT_TRUE(h.RunMs(4000).empty());
    EXPECT_EQ(h.State().bStatusActive, 0);
}
