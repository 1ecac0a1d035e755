// The 11-byte speed domes: NEC NC-21D and NiceCam (A0 .. AF), Sunkwang SK2107, D-MAX and Wonwoo
// (55 .. AA), one command set inside both frames.
#include "tests/unit/drivers/session_steps.h"

constexpr uint32_t kNec = 5, kSunkwang = 6, kDMax = 8, kWonwoo = 11, kNiceCam = 35;

TEST(NecNC21, GoldenFrames) {
    ExpectGolden(kNec, {
        {PTZCmd_LeftStop, 0, 1, "A0 01 00 00 00 00 00 00 00 AF FE", kNone},
        {PTZCmd_Left, 5, 1, "A0 01 00 00 04 20 00 00 00 AF DA", PTZCmd_Left},
        {PTZCmd_PresetGo, 5, 1, "A0 01 00 00 07 05 FF FF FF AF F5", kNone},
        // moves: pan speed in data 1, tilt in data 2; a level past 8 stays at 3F
        {PTZCmd_UpRight, 0, 3, "A0 03 00 00 0A 04 04 00 00 AF EA", PTZCmd_UpRight},
        {PTZCmd_Down, 10, 1, "A0 01 00 00 10 00 3F 00 00 AF AF", PTZCmd_Down},
        // zoom and focus speed 1-8 in data 3, 4 when none is given; lens actions are held
        {PTZCmd_ZoomTele, 0, 1, "A0 01 00 00 20 00 00 04 00 AF DA", PTZCmd_ZoomTele},
        {PTZCmd_FocusFar, 3, 1, "A0 01 00 01 00 00 00 02 00 AF FB", PTZCmd_FocusFar},
        {PTZCmd_IrisOpen, 0, 1, "A0 01 00 10 00 00 00 00 00 AF EE", PTZCmd_IrisOpen},
        {PTZCmd_IrisCloseStop, 0, 1, "A0 01 00 00 00 00 00 00 00 AF FE", kNone},
        // functions
        {PTZCmd_MenuOn, 0, 1, "A0 01 00 00 B1 00 00 00 00 AF 4D", kNone},
        {PTZCmd_MenuOff, 0, 1, "A0 01 00 00 B1 01 00 00 00 AF 4C", kNone},
        {PTZCmd_AutoPan, 0, 1, "A0 01 00 00 1B 00 00 00 00 AF E3", kNone},
        // patterns 1-4 travel as 0-3, presets 1-255; address byte is the low 8 bits
        {PTZCmd_RunPattern, 4, 1, "A0 01 00 00 71 01 03 00 00 AF 89", kNone},
        {PTZCmd_RunPattern, 5, 1, "", kNone},
        {PTZCmd_PresetSet, 255, 0x1F5, "A0 F5 00 00 03 FF FF FF FF AF 0B", kNone},
        {PTZCmd_PresetSet, 256, 1, "", kNone},
        // no frames for these: the code is remembered
        {PTZCmd_AutoPanOff, 0, 1, "", PTZCmd_AutoPanOff},
        {PTZCmd_Joystick, 0x90, 1, "", PTZCmd_Joystick},
    });
    ExpectGolden(kNiceCam, {
        {PTZCmd_Up, 8, 35, "A0 23 00 00 08 00 3F 00 00 AF 95", PTZCmd_Up},
    });
}

// The 55 .. AA frame, with the address in byte 2; Wonwoo has no status routine, so a move given no
// speed goes out at 24 at once.
TEST(Sunkwang, GoldenFrames) {
    ExpectGolden(kSunkwang, {
        {PTZCmd_DownStop, 0, 1, "55 00 01 00 00 00 00 00 00 AA FE", kNone},
        {PTZCmd_Left, 5, 1, "55 00 01 00 04 20 00 00 00 AA DA", PTZCmd_Left},
        {PTZCmd_PresetSet, 7, 0x20, "55 00 20 00 03 07 FF FF FF AA D8", kNone},
    });
    ExpectGolden(kDMax, {
        {PTZCmd_Left, 5, 1, "55 00 01 00 04 20 00 00 00 AA DA", PTZCmd_Left},
        {PTZCmd_PresetGo, 9, 4, "55 00 04 00 07 09 FF FF FF AA EE", kNone},
    });
    ExpectGolden(kWonwoo, {
        {PTZCmd_Down, 0, 11, "55 00 0B 00 10 00 18 00 00 AA CC", PTZCmd_Down},
    });
}

// D-MAX: a preset, pattern or auto pan that arrives while a move or lens action is still in force
// goes out behind a stop; once that action has been stopped, or for anything else, one frame. A
// ramp step is never preceded by a stop, and the Sunkwang never splits.
TEST(DMax, StopsBeforeGoingSomewhereByItself) {
    const char* kStop = "55 00 04 00 00 00 00 00 00 AA FB";
    ExpectSession(kDMax, 4, {
        {PTZCmd_Right, 5, "55 00 04 00 02 20 00 00 00 AA D9"},
        {PTZCmd_PresetGo, 9, "55 00 04 00 00 00 00 00 00 AA FB | 55 00 04 00 07 09 FF FF FF AA EE"},
        {PTZCmd_ZoomTele, 0, "55 00 04 00 20 00 00 04 00 AA D7"},
        {PTZCmd_PresetSet, 9,
         "55 00 04 00 00 00 00 00 00 AA FB | 55 00 04 00 03 09 FF FF FF AA F2"},
        {PTZCmd_FocusFar, 0, "55 00 04 01 00 00 00 04 00 AA F6"},
        {PTZCmd_AutoPan, 0, "55 00 04 00 00 00 00 00 00 AA FB | 55 00 04 00 1B 00 00 00 00 AA E0"},
        {PTZCmd_IrisOpen, 0, "55 00 04 10 00 00 00 00 00 AA EB"},
        {PTZCmd_IrisOpenStop, 0, kStop},
        {PTZCmd_RunPattern, 2, "55 00 04 00 71 01 01 00 00 AA 88"},
        {PTZCmd_Right, 0, "55 00 04 00 02 04 00 00 00 AA F5"},
        {PTZCmd_MenuOn, 0, "55 00 04 00 B1 00 00 00 00 AA 4A"},
        {PTZCmd_Right, 0, "55 00 04 00 02 04 00 00 00 AA F5"},
        {kWait, 300, "55 00 04 00 02 18 00 00 00 AA E1"},
        {PTZCmd_PresetGo, 9, "55 00 04 00 00 00 00 00 00 AA FB | 55 00 04 00 07 09 FF FF FF AA EE"},
        {kWait, 1000, ""},
    });
    ExpectSession(kSunkwang, 4, {
        {PTZCmd_Right, 0, "55 00 04 00 02 04 00 00 00 AA F5"},
        {PTZCmd_PresetGo, 9, "55 00 04 00 07 09 FF FF FF AA EE"},
    });
}
