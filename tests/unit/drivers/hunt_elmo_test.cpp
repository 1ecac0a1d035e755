// Hunt HTZ-2300 (7-byte frames, a stop per action) and Elmo PTC-200C/400C (6-byte frames, a stop of
// four frames, no diagonals, no iris).
#include "tests/unit/drivers/driver_harness.h"

constexpr uint32_t kHunt = 30, kElmo = 34;

TEST(Hunt, GoldenFrames) {
    ExpectGolden(kHunt, {
        // address split into bits 5+ and 0-4; level 0 starts at 16
        {PTZCmd_LeftStop, 0, 1, "FA 03 00 01 00 00 7E", kNone},
        {PTZCmd_Up, 0, 40, "FA 01 01 08 10 00 14", PTZCmd_Up},
        {PTZCmd_Left, 1, 0x1F5, "FA 03 0F 15 01 00 22", PTZCmd_Left},
        // speeds 1-239, one for both axes of a diagonal
        {PTZCmd_UpLeft, 3, 1, "FA 05 00 01 3C 00 3C", PTZCmd_UpLeft},
        {PTZCmd_DownRight, 10, 1, "FA 08 00 01 EF 00 72", PTZCmd_DownRight},
        // lens actions are held, at 120 when given no speed; each stops with its own code
        {PTZCmd_ZoomTele, 0, 1, "FA 0B 00 01 78 00 7E", PTZCmd_ZoomTele},
        {PTZCmd_FocusFar, 0, 1, "FA 0D 00 01 78 00 00", PTZCmd_FocusFar},
        {PTZCmd_UpLeftStop, 0, 1, "FA 05 00 01 00 00 00", kNone},
        {PTZCmd_ZoomTeleStop, 0, 1, "FA 0B 00 01 00 00 06", kNone},
        {PTZCmd_IrisCloseStop, 0, 1, "FA 0A 00 01 00 00 05", kNone},
        {PTZCmd_JoystickStop, 0, 1, "", kNone},
        // auto pan at the move speed, off at 00
        {PTZCmd_AutoPan, 8, 1, "FA 10 00 01 EF 00 7A", kNone},
        {PTZCmd_AutoPanOff, 0, 1, "FA 10 00 01 00 00 0B", kNone},
        // presets 1-192, the dome's own tours 1-16
        {PTZCmd_PresetSet, 192, 300, "FA 75 09 0C C0 00 44", kNone},
        {PTZCmd_PresetSet, 193, 1, "", kNone},
        {PTZCmd_PresetGo, 1, 1, "FA 76 00 01 01 00 72", kNone},
        {PTZCmd_ExtRun, 16, 1, "FA 71 00 01 10 00 7C", kNone},
        {PTZCmd_ExtRun, 17, 1, "", kNone},
        {PTZCmd_MenuOn, 0, 1, "", PTZCmd_MenuOn},
    });
}

TEST(PTC400C, GoldenFrames) {
    const std::string kStop = "01 FF 14 00 00 EA | 01 FF 13 00 00 ED | 01 FF 24 04 00 DE | "
                              "01 FF 25 04 00 DF";
    ExpectGolden(kElmo, {
        // speeds 7-63, a level past 8 stays at 3F
        {PTZCmd_Left, 8, 1, "01 FF 18 01 3F D8", PTZCmd_Left},
        {PTZCmd_Right, 0, 1, "01 FF 18 00 07 E1", PTZCmd_Right},
        {PTZCmd_Down, 10, 1, "01 FF 18 03 3F DA", PTZCmd_Down},
        {PTZCmd_ZoomTele, 0, 1, "01 FF 24 00 00 DA", PTZCmd_ZoomTele},
        {PTZCmd_FocusNear, 0, 1, "01 FF 25 00 00 DB", PTZCmd_FocusNear},
        // presets 1-255; the address byte is the low 8 bits
        {PTZCmd_PresetGo, 255, 0x1A0, "A0 FF 11 00 FF B1", kNone},
        {PTZCmd_PresetGo, 256, 1, "", kNone},
        {PTZCmd_PresetSet, 1, 1, "01 FF 1D 00 01 E2", kNone},
        // every stop of a move, zoom or focus is the same four frames
        {PTZCmd_LeftStop, 0, 1, kStop, kNone},
        {PTZCmd_ZoomWideStop, 0, 1, kStop, kNone},
        // no diagonals and no iris: nothing, not even for their stops
        {PTZCmd_UpLeft, 5, 1, "", PTZCmd_UpLeft},
        {PTZCmd_UpLeftStop, 0, 1, "", kNone},
        {PTZCmd_IrisOpen, 0, 1, "", PTZCmd_IrisOpen},
        {PTZCmd_IrisOpenStop, 0, 1, "", kNone},
    });
}

