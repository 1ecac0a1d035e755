// Pelco decoders read back what the Pelco builders send, flag a damaged check byte and refuse
// what is not a whole frame of their protocol.
#include "ptz/drivers/pm_drivers.h"
#include "tests/unit/drivers/driver_harness.h"
#include "tools/sim/ptz_decode.h"

namespace {

using DecodeFn = bool (*)(const uint8_t*, size_t, PtzFrameText*);

struct Protocol {
    const char* sName;
    PTZBuildCmdFn build;
    DecodeFn decode;
    size_t nLength;
};
const Protocol kD = {"PelcoD", BuildCmd_PelcoD, DecodePelcoD, 7};
const Protocol kP = {"PelcoP", BuildCmd_PelcoP, DecodePelcoP, 8};
const Protocol kEP = {"ExtPelcoP", BuildCmd_ExtPelcoP, DecodeExtPelcoP, 8};

struct RoundTrip {
    const Protocol* ptProtocol;
    uint32_t nCmd;
    int32_t p1;
    uint32_t p2, p3;
    uint32_t nAddress;
    const char* sWords;
};

const RoundTrip kRoundTrips[] = {
    {&kD, PTZCmd_Left, 8, 0, 0, 1, "pan left 63"},
    {&kD, PTZCmd_Up, 4, 0, 0, 1, "tilt up 24"},
    {&kD, PTZCmd_DownLeft, 3, 0, 0, 1, "move down left 16"},
    {&kD, PTZCmd_UpRight, 0, 0, 0, 1, "move up right 4"},
    {&kD, PTZCmd_Joystick, 0x90, 0x05, 0, 1, "joystick left 16 down 5"},
    {&kD, PTZCmd_Joystick, 0x02, 0, 0x85, 1, "joystick right 2 zoom tele"},
    {&kD, PTZCmd_Joystick, 0, 0, 0x05, 1, "zoom wide"},
    {&kD, PTZCmd_ZoomTele, 0, 0, 0, 1, "zoom tele"},
    {&kD, PTZCmd_FocusNear, 0, 0, 0, 1, "focus near"},
    {&kD, PTZCmd_CameraOn, 0, 0, 0, 1, "camera on"},
    {&kD, PTZCmd_AutoPan, 0, 0, 0, 255, "auto pan on"},
    {&kD, PTZCmd_PresetGo, 1, 0, 0, 1, "go to preset 1"},
    {&kD, PTZCmd_MenuOn, 0, 0, 0, 2, "set preset 95 (menu)"},
    {&kD, PTZCmd_RunPattern, 3, 0, 0, 1, "run pattern 3"},
    {&kD, PTZCmd_FocusAuto, 0, 0, 0, 1, "auto focus on"},
    {&kD, PTZCmd_LeftStop, 0, 0, 0, 1, "stop"},
    {&kP, PTZCmd_Down, 0, 0, 0, 0, "tilt down 4"},
    {&kP, PTZCmd_UpLeft, 2, 0, 0, 256, "move up left 8"},
    {&kP, PTZCmd_Joystick, 0x10, 0x83, 0x81, 9, "joystick right 16 up 3 zoom tele"},
    {&kP, PTZCmd_FocusFar, 0, 0, 0, 1, "focus far"},
    {&kP, PTZCmd_CameraOff, 0, 0, 0, 1, "camera off"},
    {&kP, PTZCmd_AutoPan, 0, 0, 0, 1, "go to preset 99 (auto pan on)"},
    {&kP, PTZCmd_AutoPanOff, 0, 0, 0, 1, "go to preset 96 (auto pan off)"},
    {&kP, PTZCmd_MenuOn, 0, 0, 0, 1, "set preset 95 (menu)"},
    {&kP, PTZCmd_PresetGo, 127, 0, 0, 5, "go to preset 127"},
    {&kP, PTZCmd_ZoomWideStop, 0, 0, 0, 1, "stop"},
    {&kEP, PTZCmd_PresetSet, 32, 0, 0, 0, "set preset 32"},
    {&kEP, PTZCmd_Right, 6, 0, 0, 250, "pan right 39"},
    {&kEP, PTZCmd_FocusFar, 0, 0, 0, 1, "focus far"},
    {&kEP, PTZCmd_CameraOff, 0, 0, 0, 1, "camera off"},
    {&kEP, PTZCmd_AuxOn1, 0, 0, 0, 1, "record pattern start"},
    {&kEP, PTZCmd_AuxOff1, 0, 0, 0, 1, "record pattern end"},
    {&kEP, PTZCmd_AuxOn2, 0, 0, 0, 1, "run pattern"},
    {&kEP, PTZCmd_AuxOff2, 0, 0, 0, 1, "stop"},
};

// Builds each command, decodes the frame, then decodes it again with the check byte damaged.
TEST(DecodePelco, RoundTripAndDamagedCheck) {
    for (const RoundTrip& r : kRoundTrips) {
        const Protocol& pr = *r.ptProtocol;
        SCOPED_TRACE(testing::Message() << pr.sName << " code " << r.nCmd << " p1 " << r.p1);
        DriverHarness h(pr.build, nullptr, r.nAddress);
        std::vector<Bytes> f = h.Send(r.nCmd, r.p1, r.p2, r.p3);
        ASSERT_EQ(f.size(), 1u);
        Bytes b = f[0];
        b.push_back(0x55);  // a following byte is not part of the frame

        PtzFrameText t;
        ASSERT_TRUE(pr.decode(b.data(), b.size(), &t));
        EXPECT_EQ(t.sWords, r.sWords);
        EXPECT_EQ(t.nLength, pr.nLength);
        // The wire keeps 8 bits of the address; Pelco-P sends address - 1, and 0 like 1.
        const uint32_t nAddress = &pr != &kP ? r.nAddress & 0xFF
                                  : r.nAddress == 0 ? 1 : ((r.nAddress - 1) & 0xFF) + 1;
        EXPECT_EQ(t.nAddress, nAddress);
        EXPECT_FALSE(t.bBadCheck);

        b[pr.nLength - 1] ^= 0x01;
        PtzFrameText bad;
        ASSERT_TRUE(pr.decode(b.data(), b.size(), &bad));
        EXPECT_TRUE(bad.bBadCheck);
        EXPECT_EQ(bad.sWords, r.sWords);
    }
}

// Not a frame: too short, wrong start byte, or (Pelco-P shapes) wrong end byte.
TEST(DecodePelco, RefusesWhatIsNoFrame) {
    const struct { DecodeFn decode; const char* sHex; } kCases[] = {
        {DecodePelcoD, "FF 01 00 04 3F 00"},
        {DecodePelcoD, "FE 01 00 04 3F 00 44"},
        {DecodePelcoD, ""},
        {DecodePelcoP, "A0 00 00 04 3F 00 AF"},
        {DecodePelcoP, "A1 00 00 04 3F 00 AF 34"},
        {DecodePelcoP, "A0 00 00 04 3F 00 AE 34"},
        {DecodeExtPelcoP, "A0 01 00 07 00 03 AF"},
        {DecodeExtPelcoP, "A0 01 00 07 00 03 FF 05"},
        {DecodeExtPelcoP, "FF 01 00 07 00 03 AF 05"},
    };
    for (const auto& c : kCases) {
        const std::vector<Bytes> f = ParseFrames(c.sHex);
        const Bytes b = f.empty() ? Bytes{} : f[0];
        PtzFrameText t;
        t.sWords = "untouched";
        EXPECT_FALSE(c.decode(b.data(), b.size(), &t)) << c.sHex;
        EXPECT_EQ(t.sWords, "untouched") << c.sHex;
    }
}

}  // namespace
