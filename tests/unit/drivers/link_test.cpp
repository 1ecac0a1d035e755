// Controller-link drivers (Ikegami i-LAN, Toa, Toshiba SC1000, PT2000): golden frames, the same
// bytes from every model of the family, the joystick where the capability word offers it, and the
// ramp and tour of the models with a status routine.
#include "ptz/drivers/pm_drivers.h"
#include "ptz/ptz_model.h"
#include "tests/unit/drivers/driver_harness.h"

namespace {

constexpr uint32_t kPCSiLAN = 37, kICDiLAN = 38, kToaCC = 39, kToaSC = 40, kSC1000 = 41;
constexpr uint32_t kFamily[] = {kPCSiLAN, kICDiLAN, kToaCC, kToaSC, kSC1000};

TEST(ControllerLink, GoldenFrames) {
    ExpectGolden(kPCSiLAN, {
        // 02, address, 04, Pelco-D's four bytes, 03, XOR of bytes 1-7
        {PTZCmd_LeftStop, 0, 1, "02 01 04 00 00 00 00 03 06", kNone},
        {PTZCmd_JoystickStop, 0, 0x1FF, "02 FF 04 00 00 00 00 03 F8", kNone},
        // moves: level 0 -> 4, 5 -> 32, 8 -> 63; pan in data 1, tilt in data 2, both for diagonals
        {PTZCmd_Left, 8, 1, "02 01 04 00 04 3F 00 03 3D", PTZCmd_Left},
        {PTZCmd_UpRight, 0, 3, "02 03 04 00 0A 04 04 03 0E", PTZCmd_UpRight},
        {PTZCmd_Down, 5, 1, "02 01 04 00 10 00 20 03 36", PTZCmd_Down},
        {PTZCmd_FocusNear, 0, 1, "02 01 04 01 00 00 00 03 07", PTZCmd_FocusNear},
        // switches are one-shot, the menu included (set preset 95)
        {PTZCmd_MenuOn, 0, 2, "02 02 04 00 03 00 5F 03 59", kNone},
        {PTZCmd_AutoPan, 0, 1, "02 01 04 90 00 00 00 03 96", kNone},
        {PTZCmd_IrisAuto, 0, 1, "02 01 04 00 2D 00 01 03 2A", kNone},
        {PTZCmd_AuxOn3, 0, 1, "02 01 04 00 09 00 03 03 0C", kNone},
        // presets set / clear / go 03 / 05 / 07 with 1-255; patterns 1-32
        {PTZCmd_PresetGo, 5, 1, "02 01 04 00 07 00 05 03 04", kNone},
        {PTZCmd_PresetClear, 255, 0x105, "02 05 04 00 05 00 FF 03 F8", kNone},
        {PTZCmd_PresetSet, 256, 1, "", kNone},
        {PTZCmd_RunPattern, 32, 1, "02 01 04 00 23 00 20 03 05", kNone},
        {PTZCmd_RunPattern, 33, 1, "", kNone},
        // joystick: left 0x10, down 5, no zoom
        {PTZCmd_Joystick, 0x90, 1, "02 01 04 00 14 10 05 03 07", kNone, 0x05, 0x80},
        // no frame for these: the code is remembered
        {PTZCmd_MenuOff, 0, 1, "", PTZCmd_MenuOff},
    });
}

// Every model of the family builds the same bytes; only the joystick differs, offered exactly where
// the capability word says so.
TEST(ControllerLink, SameFramesFromEveryModelJoystickByCapability) {
    const Frames left = Hex("02 07 04 00 04 3F 00 03 3B");
    const Frames joystick = Hex("02 07 04 00 2A 05 03 03 2C");
    for (uint32_t nModel : kFamily) {
        SCOPED_TRACE(nModel);
        EXPECT_EQ(DriverHarness(nModel, 7).Send(PTZCmd_Left, 8), left);
        const bool bJoystick = (PTZModelEntry(nModel).ptCntlOpt->dwCaps & kPTZCapJoystick) != 0;
        EXPECT_EQ(bJoystick, nModel != kICDiLAN);
        DriverHarness h(nModel, 7);
        EXPECT_EQ(h.Send(PTZCmd_Joystick, 0x05, 0x83, 0x81), bJoystick ? joystick : Frames{});
        EXPECT_EQ(h.State().nLastCmd, bJoystick ? kNone : PTZCmd_Joystick);
    }
}

// PT2000 has no model entry: its builder is called as the core calls it, on a channel state as the
// core prepares it at start, with the command stored in it first.
TEST(ControllerLink, Pt2000BuildsTheFamilyFrames) {
    PTZInitChannels();
    PTZChannelState& s = tGlobal.atChannel[0];
    const struct { uint32_t nCmd; int32_t p1; uint32_t p2, p3; const char* sFrames; } kCases[] = {
        {PTZCmd_Left, 8, 0, 0, "02 03 04 00 04 3F 00 03 3F"},
        {PTZCmd_Left, 8, 0, 0, ""},   // a repeat while held
        {PTZCmd_Joystick, 0x90, 0x05, 0x80, "02 03 04 00 14 10 05 03 05"},
        {PTZCmd_PresetGo, 5, 0, 0, "02 03 04 00 07 00 05 03 06"},
    };
    for (const auto& c : kCases) {
        s.nCmd = c.nCmd;
        s.nParam1 = c.p1;
        s.nParam2 = c.p2;
        s.nParam3 = c.p3;
        s.nParam4 = 0;
        s.nSource = 1;
        PTZPacket atPacket[kPTZPacketsPerCall] = {};
        const int32_t n = BuildCmd_PT2000(3, atPacket, &s, c.p2);
        Frames got;
        for (int32_t i = 0; i < n; ++i)
            got.emplace_back(atPacket[i].abData, atPacket[i].abData + atPacket[i].nLength);
        EXPECT_EQ(got, Hex(c.sFrames)) << c.nCmd;
    }
}

}  // namespace
