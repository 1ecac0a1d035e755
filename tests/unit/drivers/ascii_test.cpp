// Panasonic, C&B Tech, LG LPT-A100L and SmartDome: golden frames (the makers' worked examples
// among them), number and address ranges, multi-frame commands and stops, the LG speed frame and
// ramp, and the preset tours.
#include "tests/unit/drivers/driver_harness.h"

namespace {

constexpr uint32_t kLpt = 9, kCnbZoom = 15, kPanasonic = 23, kSmartDome = 26, kCnbPtz = 36;

// A Panasonic frame around its command characters: 02 "AD" address ";GC" length ':' ... 03.
std::string Pana(const std::string& s) { return "02 " + Ascii(s) + " 03"; }
// A SmartDome line: its characters (check included), then CR.
std::string Line(const std::string& s) { return Ascii(s) + " 0D"; }

}  // namespace

TEST(Panasonic, GoldenFrames) {
    ExpectGolden(kPanasonic, {
        // the decoder's worked example
        {PTZCmd_ZoomTele, 0, 1, Pana("AD01;GC7:2021228"), PTZCmd_ZoomTele},
        // pan/tilt: direction digit, then pan and tilt speed digits 1-7 ('0' for a still axis);
        // level 0 is 1, 5 is 4, 8 is 7
        {PTZCmd_Left, 8, 12, Pana("AD12;GCF:2021368:2022700"), PTZCmd_Left},
        {PTZCmd_UpRight, 0, 99, Pana("AD99;GCF:202136B:2022110"), PTZCmd_UpRight},
        {PTZCmd_Down, 5, 1, Pana("AD01;GCF:202136E:2022040"), PTZCmd_Down},
        {PTZCmd_DownLeft, 12, 1, Pana("AD01;GCF:202136F:2022770"), PTZCmd_DownLeft},
        // each stop names what it stops
        {PTZCmd_DownStop, 0, 1, Pana("AD01;GC7:2021324"), kNone},
        {PTZCmd_ZoomTeleStop, 0, 1, Pana("AD01;GC7:2021224"), kNone},
        {PTZCmd_IrisOpenStop, 0, 1, Pana("AD01;GC7:0021004"), kNone},
        {PTZCmd_FocusNear, 0, 1, Pana("AD01;GC7:202126E"), PTZCmd_FocusNear},
        {PTZCmd_AuxOff1, 0, 1, Pana("AD01;GC7:2021161"), kNone},
        // presets 1-64: go is hex(n - 1), set hex(0x64 + n - 1), after the same first command
        {PTZCmd_PresetGo, 1, 1, Pana("AD01;GCF:00219F0:0022000"), kNone},
        {PTZCmd_PresetGo, 64, 1, Pana("AD01;GCF:00219F0:00223F0"), kNone},
        {PTZCmd_PresetSet, 1, 1, Pana("AD01;GCF:00219F0:0022640"), kNone},
        {PTZCmd_PresetSet, 64, 1, Pana("AD01;GCF:00219F0:0022A30"), kNone},
        {PTZCmd_PresetGo, 65, 1, "", kNone},
        // addresses are 1-99
        {PTZCmd_ZoomTele, 0, 0, "", PTZCmd_ZoomTele},
        {PTZCmd_ZoomTele, 0, 100, "", PTZCmd_ZoomTele},
        // no frame for these
        {PTZCmd_CameraOn, 0, 1, "", PTZCmd_CameraOn},
    });
}

TEST(CnbTech, GoldenFrames) {
    // Both models share the lens and preset commands.
    for (uint32_t nModel : {kCnbZoom, kCnbPtz}) {
        ExpectGolden(nModel, {
            // the manual's examples
            {PTZCmd_PresetGo, 5, 1, Ascii("*01C80500CB"), kNone},
            {PTZCmd_FocusAuto, 0, 0, Ascii("*00A00000BB"), kNone},
            // presets 1-63 in the option's first byte
            {PTZCmd_PresetSet, 1, 1, Ascii("*01C70100C6"), kNone},
            {PTZCmd_PresetGo, 63, 1, Ascii("*01C83F00DF"), kNone},
            {PTZCmd_PresetGo, 64, 1, "", kNone},
            {PTZCmd_PresetTour, 64, 1, "", kNone},
            // lens: 01 tele / far / open, 02 wide / near / close, 00 stop
            {PTZCmd_ZoomTele, 0, 12, Ascii("*12A10100C0"), PTZCmd_ZoomTele},
            {PTZCmd_ZoomTeleStop, 0, 12, Ascii("*12A10000BF"), kNone},
            {PTZCmd_FocusNear, 0, 99, Ascii("*99A20200D1"), PTZCmd_FocusNear},
            {PTZCmd_IrisOpen, 0, 1, Ascii("*01A30100C0"), kNone},
            {PTZCmd_IrisOpenStop, 0, 1, Ascii("*01A30000BF"), kNone},
            // two decimal digits reach cameras 0-99 only
            {PTZCmd_ZoomTele, 0, 100, "", PTZCmd_ZoomTele},
        });
    }
    // The pan/tilt head: pan frame, then tilt frame; a stop stops the axes of its move.
    ExpectGolden(kCnbPtz, {
        {PTZCmd_Left, 8, 1, Ascii("*01B1023FD9"), PTZCmd_Left},
        {PTZCmd_UpLeft, 3, 1, Ascii("*01B10210C1") + " | " + Ascii("*01B20110C1"), PTZCmd_UpLeft},
        {PTZCmd_Up, 12, 5, Ascii("*05B2013FDD"), PTZCmd_Up},
        {PTZCmd_LeftStop, 0, 1, Ascii("*01B10000BE"), kNone},
        {PTZCmd_UpLeftStop, 0, 1, Ascii("*01B10000BE") + " | " + Ascii("*01B20000BF"), kNone},
        {PTZCmd_JoystickStop, 0, 1, Ascii("*01B10000BE") + " | " + Ascii("*01B20000BF"), kNone},
    });
    // The zoom camera has no pan/tilt.
    ExpectGolden(kCnbZoom, {
        {PTZCmd_Left, 8, 1, "", PTZCmd_Left},
        {PTZCmd_LeftStop, 0, 1, "", PTZCmd_LeftStop},
    });
}

TEST(LgLptA100L, GoldenFrames) {
    ExpectGolden(kLpt, {
        // the manual's examples: left for 500 ms, menu
        {PTZCmd_MenuOn, 0, 1, "02 01 42 30 03 78", kNone},
        // every move is preceded by the speed: levels 1-4 low (30), 5-8 high (31), 0 low
        {PTZCmd_Left, 8, 1, "02 01 31 31 03 68 | 02 01 38 31 03 6F", PTZCmd_Left},
        {PTZCmd_Left, 5, 1, "02 01 31 31 03 68 | 02 01 38 31 03 6F", PTZCmd_Left},
        {PTZCmd_Left, 4, 1, "02 01 31 30 03 67 | 02 01 38 31 03 6F", PTZCmd_Left},
        {PTZCmd_DownRight, 0, 5, "02 05 31 30 03 6B | 02 05 3C 31 03 77", PTZCmd_DownRight},
        // the check keeps 7 bits; addresses are 01-80
        {PTZCmd_Left, 8, 0x80, "02 80 31 31 03 67 | 02 80 38 31 03 6E", PTZCmd_Left},
        {PTZCmd_Left, 8, 0x81, "", PTZCmd_Left},
        // zoom and focus carry no speed
        {PTZCmd_ZoomTele, 0, 1, "02 01 3E 31 03 75", PTZCmd_ZoomTele},
        {PTZCmd_FocusFar, 0, 1, "02 01 41 31 03 78", PTZCmd_FocusFar},
        // a stop sends nothing: the action runs out
        {PTZCmd_LeftStop, 0, 1, "", kNone},
        {PTZCmd_CameraOn, 0, 1, "02 01 30 30 03 66", kNone},
        {PTZCmd_AutoPan, 0, 1, "02 01 33 30 03 69", kNone},
        {PTZCmd_FocusAuto, 0, 1, "02 01 32 30 03 68", kNone},
        // no presets, no iris
        {PTZCmd_PresetGo, 1, 1, "", PTZCmd_PresetGo},
        {PTZCmd_PresetTour, 3, 1, "", PTZCmd_PresetTour},
        {PTZCmd_IrisOpen, 0, 1, "", PTZCmd_IrisOpen},
    });
}

// Level 0 starts low; the ramp sends the speed with the move again at 0.3 s (still low) and at
// 0.8 s (high). The reminders, 400 ms after the last frame, repeat the move only.
TEST(LgLptA100L, RampSendsTheSpeedRemindersDoNot) {
    const Frames up = Hex("02 01 36 31 03 6D");
    const Frames low = Hex("02 01 31 30 03 67 | 02 01 36 31 03 6D");
    const Frames high = Hex("02 01 31 31 03 68 | 02 01 36 31 03 6D");
    DriverHarness h(kLpt, 1);
    EXPECT_EQ(h.Send(PTZCmd_Up, 0), low);
    EXPECT_TRUE(h.RunMs(290).empty());
    EXPECT_EQ(h.RunMs(10), low);
    EXPECT_TRUE(h.RunMs(390).empty());
    EXPECT_EQ(h.RunMs(10), up);
    EXPECT_TRUE(h.RunMs(90).empty());
    EXPECT_EQ(h.RunMs(10), high);
    EXPECT_TRUE(h.RunMs(390).empty());
    EXPECT_EQ(h.RunMs(10), up);
    EXPECT_TRUE(h.Send(PTZCmd_UpStop).empty());
    EXPECT_TRUE(h.RunMs(1000).empty());
    EXPECT_EQ(h.State().bStatusActive, 0);
}

TEST(SmartDome, GoldenFrames) {
    ExpectGolden(kSmartDome, {
        // the worked example: camera 1 stop; every stop is this line
        {PTZCmd_LeftStop, 0, 1, Line("at001S0019"), kNone},
        // speeds 01-63 as two decimal digits; a diagonal is a pan line, then a tilt line
        {PTZCmd_Left, 8, 1, Line("at001L631B"), PTZCmd_Left},
        {PTZCmd_UpRight, 0, 5, Line("at005R0420") + " | " + Line("at005U0423"), PTZCmd_UpRight},
        {PTZCmd_Down, 4, 999, Line("at999D242A"), PTZCmd_Down},
        {PTZCmd_ZoomTele, 0, 1, Line("at001T001A"), PTZCmd_ZoomTele},
        {PTZCmd_FocusNear, 0, 0, Line("at000N0013"), PTZCmd_FocusNear},
        // presets 1-99
        {PTZCmd_PresetGo, 99, 123, Line("at123G9924"), kNone},
        {PTZCmd_PresetSet, 1, 1, Line("at001P0117"), kNone},
        {PTZCmd_PresetGo, 100, 1, "", kNone},
        // auxiliaries: output, then 1 on / 0 off; menu 01 on, 00 off
        {PTZCmd_AuxOn3, 0, 7, Line("at007A3111"), kNone},
        {PTZCmd_MenuOn, 0, 1, Line("at001M0114"), kNone},
        {PTZCmd_MenuOff, 0, 1, Line("at001M0013"), kNone},
        // three digits reach cameras 0-999 only
        {PTZCmd_ZoomTele, 0, 1000, "", PTZCmd_ZoomTele},
    });
}

