// The makes that carry Pelco's command set: Pelco-D copies byte for byte, Honeywell's A5 frame,
// BBV, the NV/EZ protocol and the LG dome.
#include "tests/unit/drivers/driver_harness.h"

namespace {

constexpr uint32_t kCustom1 = 7, kCyberDome = 25, kKRE303 = 28, kCustom2 = 31, kPelcoD = 14;
constexpr uint32_t kNuvico = 1, kHSDN = 24, kRvt = 32, kLG = 33, kBBV = 42;

// The four reserved and Pelco-D-speaking models build Pelco-D's own frames and run its status
// routine: the same bytes as model 14 for every code, and a level-0 move ramped.
TEST(PelcoCopies, SameFramesAndRampAsPelcoD) {
    for (uint32_t nModel : {kCustom1, kCyberDome, kKRE303, kCustom2}) {
        ExpectGolden(nModel, {
            {PTZCmd_Left, 8, 1, "FF 01 00 04 3F 00 44", PTZCmd_Left},
            {PTZCmd_PresetGo, 1, 1, "FF 01 00 07 00 01 09", kNone},
            {PTZCmd_MenuOn, 0, 2, "FF 02 00 03 00 5F 64", PTZCmd_MenuOn},
        });
        for (uint32_t nCmd = 0; nCmd < 128; ++nCmd) {
            const Frames want = DriverHarness(kPelcoD, 9).Send(nCmd, 3, 0x85, 0x81);
            EXPECT_EQ(DriverHarness(nModel, 9).Send(nCmd, 3, 0x85, 0x81), want) << nModel << " " << nCmd;
        }
        DriverHarness h(nModel, 1);
        h.Send(PTZCmd_Up, 0);
        EXPECT_EQ(h.RunMs(kPTZRampMiddleMs), Hex("FF 01 00 08 00 18 21")) << nModel;
    }
}

TEST(HSDN251NP, GoldenFrames) {
    ExpectGolden(kHSDN, {
        {PTZCmd_LeftStop, 0, 1, "A5 01 00 00 00 00 01", kNone},
        {PTZCmd_Left, 5, 1, "A5 01 00 04 20 00 25", PTZCmd_Left},
        {PTZCmd_MenuOn, 0, 2, "A5 02 00 03 00 5F 64", PTZCmd_MenuOn},
        {PTZCmd_PresetGo, 1, 1, "A5 01 00 07 00 01 09", kNone},
        {PTZCmd_PresetGo, 256, 1, "", kNone},
    });
}

TEST(BBV, GoldenFrames) {
    ExpectGolden(kBBV, {
        {PTZCmd_Left, 5, 1, "B0 01 00 04 20 00 BF 2A", PTZCmd_Left},
        {PTZCmd_UpStop, 0, 1, "B0 01 00 00 00 00 BF 0E", kNone},
        {PTZCmd_PresetGo, 5, 1, "B0 01 00 07 00 05 BF 0C", kNone},
        // focus far and near the reverse of Pelco-P; the address travels unchanged
        {PTZCmd_FocusFar, 0, 1, "B0 01 02 00 00 00 BF 0C", PTZCmd_FocusFar},
        {PTZCmd_CameraOn, 0, 1, "B0 01 40 00 00 00 BF 4E", kNone},
        // presets are cleared up to 32 only
        {PTZCmd_PresetClear, 32, 1, "B0 01 00 05 00 20 BF 2B", kNone},
        {PTZCmd_PresetClear, 33, 1, "", kNone},
        // three auxiliary outputs
        {PTZCmd_AuxOn3, 0, 1, "B0 01 00 09 00 03 BF 04", kNone},
        {PTZCmd_AuxOff1, 0, 1, "B0 01 00 0B 00 01 BF 04", kNone},
        {PTZCmd_AuxOn4, 0, 1, "", PTZCmd_AuxOn4},
        // the menu is set-preset 95, automatic pan presets 99 / 96
        {PTZCmd_MenuOn, 0, 1, "B0 01 00 03 00 5F BF 52", kNone},
        {PTZCmd_AutoPan, 0, 1, "B0 01 00 07 00 63 BF 6A", PTZCmd_AutoPan},
        // the one pattern: model key 1 records it, its release ends, RunPattern 1 runs it
        {PTZCmd_Ext1, 0, 1, "B0 01 00 1F 00 00 BF 11", kNone},
        {PTZCmd_Ext1Stop, 0, 1, "B0 01 00 21 00 00 BF 2F", kNone},
        {PTZCmd_RunPattern, 1, 1, "B0 01 00 23 00 01 BF 2C", kNone},
        {PTZCmd_RunPattern, 2, 1, "", kNone},
    });
}

TEST(RvtEZ, GoldenFrames) {
    for (uint32_t nModel : {kNuvico, kRvt}) {
        ExpectGolden(nModel, {
            {PTZCmd_RightStop, 0, 1, "E5 10 01 00 00 00 53", kNone},
            {PTZCmd_Left, 5, 1, "E5 10 01 04 20 00 BF", PTZCmd_Left},
            {PTZCmd_PresetGo, 5, 1, "E5 10 01 07 00 05 A7", kNone},
            // a 12-bit address: bits 8-11 beside the protocol bits
            {PTZCmd_UpStop, 0, 300, "E5 11 2C 00 00 00 87", kNone},
            {PTZCmd_UpStop, 0, 4095, "E5 1F FF 00 00 00 A6", kNone},
            // lens and power through command 01
            {PTZCmd_FocusNear, 0, 1, "E5 10 01 01 01 00 5D", PTZCmd_FocusNear},
            {PTZCmd_CameraOn, 0, 1, "E5 10 01 01 88 00 DA", kNone},
            // numbers 1-99; the menu and automatic pan are presets
            {PTZCmd_PresetSet, 99, 1, "E5 10 01 03 00 63 F9", kNone},
            {PTZCmd_PresetSet, 100, 1, "", kNone},
            {PTZCmd_MenuOn, 0, 1, "E5 10 01 07 00 5F F9", kNone},
            {PTZCmd_AutoPan, 0, 1, "E5 10 01 07 00 63 C5", kNone},
            {PTZCmd_AuxOn6, 0, 1, "E5 10 01 09 00 06 A0", kNone},
            {PTZCmd_Joystick, 0x90, 1, "E5 10 01 14 10 05 BA", kNone, 0x05},
        });
    }
}

TEST(LGDome, GoldenFrames) {
    ExpectGolden(kLG, {
        {PTZCmd_DownStop, 0, 1, "E5 01 01 00 00 00 00 E7", kNone},
        {PTZCmd_Left, 5, 1, "E5 01 01 00 04 20 00 0B", PTZCmd_Left},
        {PTZCmd_PresetGo, 5, 1, "E5 01 01 00 07 00 05 F3", kNone},
        {PTZCmd_PresetGo, 255, 1, "E5 01 01 00 07 00 FF ED", kNone},
        {PTZCmd_PresetClear, 7, 1, "E5 01 01 00 05 00 07 F3", kNone},
        {PTZCmd_CameraOn, 0, 1, "E5 01 01 88 00 00 00 6F", kNone},
        {PTZCmd_FocusNear, 0, 1, "E5 01 01 01 00 00 00 E8", PTZCmd_FocusNear},
        {PTZCmd_MenuOn, 0, 1, "E5 01 01 00 07 00 5F 4D", kNone},
        {PTZCmd_Joystick, 0x90, 1, "", PTZCmd_Joystick, 0x05},
    });
}

}  // namespace
