// Pelco-D, Pelco-P and extended Pelco-P: golden frames with their deliberate differences, and the
// speed ramp and preset tour they share.
#include "tests/unit/drivers/driver_harness.h"

constexpr uint32_t kPelcoD = 14, kPelcoP = 19, kExtPelcoP = 22;

TEST(PelcoD, GoldenFrames) {
    ExpectGolden(kPelcoD, {
        // moves: level 0 -> 4, 5 -> 32, 8 -> 63, 10 unclamped -> 70; pan in data 1, tilt in 2
        {PTZCmd_Left, 8, 1, "FF 01 00 04 3F 00 44", PTZCmd_Left},
        {PTZCmd_UpRight, 0, 3, "FF 03 00 0A 04 04 15", PTZCmd_UpRight},
        {PTZCmd_Down, 5, 1, "FF 01 00 10 00 20 31", PTZCmd_Down},
        {PTZCmd_Right, 10, 1, "FF 01 00 02 46 00 49", PTZCmd_Right},
        // focus bits differ from Pelco-P; FocusAuto and MenuOn keep their code, IrisAuto does not
        {PTZCmd_FocusNear, 0, 1, "FF 01 01 00 00 00 02", PTZCmd_FocusNear},
        {PTZCmd_FocusFar, 0, 1, "FF 01 00 80 00 00 81", PTZCmd_FocusFar},
        {PTZCmd_FocusAuto, 0, 1, "FF 01 00 2B 00 01 2D", PTZCmd_FocusAuto},
        {PTZCmd_MenuOn, 0, 2, "FF 02 00 03 00 5F 64", PTZCmd_MenuOn},
        {PTZCmd_IrisAuto, 0, 1, "FF 01 00 2D 00 01 2F", kNone},
        {PTZCmd_CameraOn, 0, 0x105, "FF 05 88 00 00 00 8D", kNone},
        {PTZCmd_AutoPan, 0, 0xFF, "FF FF 90 00 00 00 8F", kNone},
        // presets 1-255, patterns 1-32
        {PTZCmd_PresetGo, 255, 1, "FF 01 00 07 00 FF 07", kNone},
        {PTZCmd_PresetGo, 0, 1, "", kNone},
        {PTZCmd_PresetGo, 256, 1, "", kNone},
        {PTZCmd_RunPattern, 32, 1, "FF 01 00 23 00 20 44", kNone},
        {PTZCmd_RunPattern, 33, 1, "", kNone},
        // joystick: directions from bit 7, magnitudes from bits 0-5 (zoom 0-6)
        {PTZCmd_Joystick, 0x90, 1, "FF 01 00 14 10 05 2A", kNone, 0x05, 0x80},
        {PTZCmd_Joystick, 0x05, 1, "FF 01 00 2A 05 03 33", kNone, 0x83, 0x81},
        {PTZCmd_Joystick, 0x80, 1, "FF 01 00 40 00 00 41", kNone, 0x40, 0x01},
        // unsupported codes are remembered: there is no frame to close the menu
        {PTZCmd_MenuOff, 0, 1, "", PTZCmd_MenuOff},
    });
}

TEST(PelcoP, GoldenFrames) {
    ExpectGolden(kPelcoP, {
        // address byte is the address minus 1, 0 stays 0
        {PTZCmd_Left, 8, 0, "A0 00 00 04 3F 00 AF 34", PTZCmd_Left},
        {PTZCmd_ZoomTele, 0, 0x100, "A0 FF 00 20 00 00 AF D0", PTZCmd_ZoomTele},
        {PTZCmd_UpLeft, 0, 2, "A0 01 00 0C 04 04 AF 02", PTZCmd_UpLeft},
        // focus bits swapped against Pelco-D; camera on/off 0x40 / 0x10
        {PTZCmd_FocusNear, 0, 1, "A0 00 02 00 00 00 AF 0D", PTZCmd_FocusNear},
        {PTZCmd_FocusFar, 0, 1, "A0 00 01 00 00 00 AF 0E", PTZCmd_FocusFar},
        {PTZCmd_CameraOn, 0, 1, "A0 00 40 00 00 00 AF 4F", kNone},
        {PTZCmd_CameraOff, 0, 1, "A0 00 10 00 00 00 AF 1F", kNone},
        // automatic pan through presets 99 / 96: on keeps its code; the menu does not
        {PTZCmd_AutoPan, 0, 1, "A0 00 00 07 00 63 AF 6B", PTZCmd_AutoPan},
        {PTZCmd_AutoPanOff, 0, 1, "A0 00 00 07 00 60 AF 68", kNone},
        {PTZCmd_MenuOn, 0, 1, "A0 00 00 03 00 5F AF 53", kNone},
        {PTZCmd_Joystick, 0x90, 1, "A0 00 00 14 10 05 AF 0E", kNone, 0x05},
        // numbers 1-127
        {PTZCmd_PresetGo, 127, 5, "A0 04 00 07 00 7F AF 73", kNone},
        {PTZCmd_PresetGo, 128, 5, "", kNone},
        // automatic iris is unsupported here
        {PTZCmd_IrisAuto, 0, 1, "", PTZCmd_IrisAuto},
    });
}

TEST(ExtPelcoP, GoldenFrames) {
    ExpectGolden(kExtPelcoP, {
        // address unchanged; check leaves out start and end bytes; focus and iris carry 1, 1;
        // camera off is data 1 = 0x01
        {PTZCmd_Left, 8, 0x1F5, "A0 F5 00 04 3F 00 AF CE", PTZCmd_Left},
        {PTZCmd_Up, 0, 1, "A0 01 00 08 00 04 AF 0D", PTZCmd_Up},
        {PTZCmd_FocusNear, 0, 1, "A0 01 02 00 01 01 AF 03", PTZCmd_FocusNear},
        {PTZCmd_IrisOpen, 0, 1, "A0 01 04 00 01 01 AF 05", kNone},
        {PTZCmd_CameraOff, 0, 1, "A0 01 01 00 00 00 AF 00", kNone},
        // pattern record / end / run on the first two auxiliaries; AuxOff2 is a stop
        {PTZCmd_AuxOn1, 0, 1, "A0 01 00 1F 00 00 AF 1E", kNone},
        {PTZCmd_AuxOff1, 0, 1, "A0 01 00 21 00 00 AF 20", kNone},
        {PTZCmd_AuxOn2, 0, 1, "A0 01 00 23 00 00 AF 22", kNone},
        {PTZCmd_AuxOff2, 0, 1, "A0 01 00 00 00 00 AF 01", kNone},
        // numbers 1-32
        {PTZCmd_PresetSet, 32, 7, "A0 07 00 03 00 20 AF 24", kNone},
        {PTZCmd_PresetSet, 33, 7, "", kNone},
        // model keys 4, 6, 8, 10 are refused anew each time; other unsupported codes are kept
        {PTZCmd_Ext4, 0, 1, "", kNone},
        {PTZCmd_Ext4Stop, 0, 1, "", PTZCmd_Ext4Stop},
        {PTZCmd_AutoPan, 0, 1, "", PTZCmd_AutoPan},
        {PTZCmd_Joystick, 0x90, 1, "", PTZCmd_Joystick, 5},
    });
}

struct Family {
    const char* sName;
    uint32_t nModel;
    int32_t nTourMax;   // 0: any tour count is stored unchecked
    uint8_t bArmedAfterEmptyTour;
};

const Family kFamily[] = {
    {"PelcoD", kPelcoD, 0, 0},
    {"PelcoP", kPelcoP, 0, 1},
    {"ExtPelcoP", kExtPelcoP, 32, 0},
};

class PelcoFamily : public testing::TestWithParam<Family> {};

// Level 0 sends speed 4, after 0.3 s the move's level-4 frame (speed 24) and after 0.8 s the same
// with 56, also across the counter's wrap; then nothing until the stop disarms. Any other level,
// however wild, sends one frame and arms nothing.
TEST_P(PelcoFamily, SpeedRamp) {
    const Family& d = GetParam();
    for (uint32_t tStart : {1000u, 0xFFFFFFE0u}) {
        for (uint32_t cmd : {PTZCmd_UpRight, PTZCmd_Left, PTZCmd_Down}) {
            const Frames middle = DriverHarness(d.nModel, 1).Send(cmd, 4);
            DriverHarness h(d.nModel, 1, tStart);
            h.Send(cmd, 0);
            EXPECT_TRUE(h.RunMs(290).empty());
            EXPECT_EQ(h.RunMs(10), middle) << cmd << " from " << tStart;
            EXPECT_TRUE(h.RunMs(490).empty());
            const Frames top = h.RunMs(10);
            ASSERT_EQ(top.size(), 1u);
            for (size_t i = 0; i + 1 < top[0].size(); ++i)
                EXPECT_EQ(top[0][i], middle[0][i] == 24 ? 56 : middle[0][i]) << cmd << " @" << i;
            EXPECT_TRUE(h.RunMs(3000).empty());
            EXPECT_EQ(h.Send(cmd + 32).size(), 1u);
            EXPECT_TRUE(h.RunMs(10).empty());
            EXPECT_EQ(h.State().bStatusActive, 0);
        }
    }
    for (int32_t level : {3, 9, INT32_MAX, INT32_MIN, -1}) {
        DriverHarness h(d.nModel, 1);
        EXPECT_EQ(h.Send(PTZCmd_UpLeft, level).size(), 1u) << level;
        EXPECT_EQ(h.State().bStatusActive, 0) << level;
    }
}

// Pelco-D and Pelco-P store any tour count, the extended driver 1-32. A tour of 3 visits 1, 2, 3,
// 1 every 3 s with the driver's go-to-preset frames until its stop or another command. A tour of
// none sends nothing, and only Pelco-P keeps polling.
TEST_P(PelcoFamily, Tour) {
    const Family& d = GetParam();
    for (int32_t n : {0, 32, 33, 300}) {
        DriverHarness h(d.nModel, 1);
        EXPECT_TRUE(h.Send(PTZCmd_PresetTour, n).empty());
        const bool bTaken = d.nTourMax == 0 || (n >= 1 && n <= d.nTourMax);
        EXPECT_EQ(h.State().bStatusActive, bTaken ? 1 : 0) << n;
        EXPECT_EQ(h.State().nTourCount, bTaken ? static_cast<uint32_t>(n) : 0u) << n;
    }
    Frames want;
    for (int32_t n : {1, 2, 3, 1})
        want.push_back(DriverHarness(d.nModel, 4).Send(PTZCmd_PresetGo, n).at(0));
    for (uint32_t nEnd : {PTZCmd_PresetTourStop, PTZCmd_ZoomWide}) {
        DriverHarness h(d.nModel, 4);
        h.Send(PTZCmd_PresetTour, 3);
        for (const Bytes& b : want) {
            EXPECT_TRUE(h.RunMs(2990).empty());
            EXPECT_EQ(h.RunMs(10), Frames{b});
        }
        h.Send(nEnd);
        EXPECT_TRUE(h.RunMs(10000).empty()) << nEnd;
        EXPECT_EQ(h.State().bStatusActive, 0) << nEnd;
    }
    DriverHarness h(d.nModel, 1);
    h.Send(PTZCmd_Left, 0);
    h.Send(PTZCmd_PresetTour, 0);
    EXPECT_TRUE(h.RunMs(10000).empty());
    EXPECT_EQ(h.State().bStatusActive, d.bArmedAfterEmptyTour);
}

INSTANTIATE_TEST_SUITE_P(Drivers, PelcoFamily, testing::ValuesIn(kFamily),
                         [](const testing::TestParamInfo<Family>& i) { return i.param.sName; });
