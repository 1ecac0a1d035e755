// American Dynamics DeltaDome, Merit Lilin PIH-7000, VCL Orbiter and Honeywell GCC-655N: golden
// frames (the makers' worked examples among them), stops by axis, multi-frame diagonals, speed
// ramps and preset tours.
#include "tests/unit/drivers/driver_harness.h"

namespace {

constexpr uint32_t kLilin = 2, kVcl = 3, kGcc = 10, kDeltaDome = 29;

TEST(DeltaDome, GoldenFrames) {
    ExpectGolden(kDeltaDome, {
        // worked examples: pan stop, go to / set preset 5
        {PTZCmd_LeftStop, 0, 1, "01 83 7C", kNone},
        {PTZCmd_PresetGo, 5, 1, "01 C7 02 05 31", kNone},
        {PTZCmd_PresetSet, 5, 1, "01 C7 01 05 32", kNone},
        // moves are speed moves, Pelco-D's speeds; a diagonal is pan, then tilt
        {PTZCmd_Left, 8, 1, "01 C0 81 3F 7F", PTZCmd_Left},
        {PTZCmd_UpLeft, 5, 5, "05 C0 81 20 9A | 05 C0 84 20 97", PTZCmd_UpLeft},
        // lens actions are held; each stop stops its own axis, a diagonal's both
        {PTZCmd_ZoomTele, 0, 1, "01 8A 75", PTZCmd_ZoomTele},
        {PTZCmd_ZoomWideStop, 0, 1, "01 8C 73", kNone},
        {PTZCmd_UpLeftStop, 0, 1, "01 83 7C | 01 86 79", kNone},
        {PTZCmd_JoystickStop, 0, 1, "01 93 6C", kNone},
        // presets 1-255, patterns 1-3; nothing for what the dome has no command for
        {PTZCmd_PresetGo, 256, 2, "", kNone},
        {PTZCmd_RunPattern, 3, 63, "3F CC 05 F0", kNone},
        {PTZCmd_RunPattern, 4, 1, "", kNone},
        {PTZCmd_MenuOn, 0, 1, "", PTZCmd_MenuOn},
    });
}

TEST(MeritLilin, GoldenFrames) {
    ExpectGolden(kLilin, {
        // worked examples: right at pan speed 7, stop
        {PTZCmd_Right, 8, 1, "01 01 87", PTZCmd_Right},
        {PTZCmd_RightStop, 0, 1, "01 00 FF", kNone},
        // speeds 0-7: tilt in bits 3-5, pan in bits 0-2; wild levels stay inside 7
        {PTZCmd_UpLeft, 5, 1, "01 06 9B", PTZCmd_UpLeft},
        {PTZCmd_Left, 20, 1, "01 02 87", PTZCmd_Left},
        // lens keys carry FF; iris and automatic pan (one toggle) travel in the data byte
        {PTZCmd_ZoomTele, 0, 1, "01 10 FF", PTZCmd_ZoomTele},
        {PTZCmd_IrisClose, 0, 1, "01 00 01", kNone},
        {PTZCmd_AutoPanOff, 0, 1, "01 00 0A", PTZCmd_AutoPanOff},
        // presets: 40 + A to go, 80 + A to store
        {PTZCmd_PresetGo, 5, 1, "41 05 00", kNone},
        {PTZCmd_PresetSet, 5, 1, "81 05 00", kNone},
        {PTZCmd_PresetGo, 255, 63, "7F FF 00", kNone},
        // an address that would turn into a preset byte reaches nobody
        {PTZCmd_PresetGo, 5, 64, "", kNone},
        // proportional moves: magnitudes 0-63 to 0-7, zoom keys beside them
        {PTZCmd_Joystick, 0x90, 1, "01 0A 81", kNone, 0x05},
        {PTZCmd_Joystick, 0x3F, 1, "01 15 BF", kNone, 0xBF, 0x85},
        {PTZCmd_CameraOn, 0, 1, "", PTZCmd_CameraOn},
    });
}

TEST(Vcl, GoldenFrames) {
    ExpectGolden(kVcl, {
        // worked examples: camera 1 pan left 0x20, camera 2 tilt up 0x40
        {PTZCmd_Left, 3, 1, "80 4C 20", PTZCmd_Left},
        {PTZCmd_Up, 5, 2, "81 55 40", PTZCmd_Up},
        // speeds 1-127, never 80 or above; a diagonal is pan, then tilt
        {PTZCmd_Right, 10, 1, "80 52 7F", PTZCmd_Right},
        {PTZCmd_UpLeft, 8, 128, "FF 4C 7F | FF 55 7F", PTZCmd_UpLeft},
        // each stop stops its own axis or lens action
        {PTZCmd_LeftStop, 0, 1, "80 72", kNone},
        {PTZCmd_DownRightStop, 0, 1, "80 72 | 80 75", kNone},
        {PTZCmd_ZoomTeleStop, 0, 1, "80 2A", kNone},
        {PTZCmd_IrisOpenStop, 0, 1, "80 2E", kNone},
        // presets and patterns 1-127, auxiliaries 1-3
        {PTZCmd_AuxOff3, 0, 1, "80 7D", kNone},
        {PTZCmd_PresetSet, 127, 1, "80 47 7F", kNone},
        {PTZCmd_PresetSet, 128, 1, "", kNone},
        // cameras 1-128 only
        {PTZCmd_PresetGo, 5, 129, "", kNone},
        {PTZCmd_MenuOn, 0, 1, "", PTZCmd_MenuOn},
    });
}

TEST(Gcc655, GoldenFrames) {
    ExpectGolden(kGcc, {
        // worked examples: zoom tele and its stop (the key's release)
        {PTZCmd_ZoomTele, 0, 1, "C5 5F 01 00 01 26", PTZCmd_ZoomTele},
        {PTZCmd_ZoomTeleStop, 0, 1, "C5 5F 0C 00 01 31", kNone},
        {PTZCmd_FocusNear, 0, 0x12C, "C5 5F 09 00 2C 59", PTZCmd_FocusNear},
        // no pan and tilt: a move's stop releases nothing
        {PTZCmd_LeftStop, 0, 1, "", kNone},
        {PTZCmd_CameraOff, 0, 1, "C5 3E 00 00 01 04", kNone},
        // one menu key opens and closes
        {PTZCmd_MenuOn, 0, 1, "C5 5F 24 00 01 49", PTZCmd_MenuOn},
        {PTZCmd_MenuOff, 0, 1, "C5 5F 24 00 01 49", PTZCmd_MenuOff},
        // presets 1-50 are the camera's 0-49
        {PTZCmd_PresetSet, 1, 1, "C5 79 00 00 01 3F", kNone},
        {PTZCmd_PresetGo, 50, 1, "C5 7A 31 00 01 71", kNone},
        {PTZCmd_PresetGo, 51, 1, "", kNone},
    });
}

}  // namespace
