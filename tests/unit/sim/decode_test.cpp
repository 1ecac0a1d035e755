// The simulator's decoders read back what the drivers build, in words, flag a damaged check byte,
// never claim a frame they were not given whole, and refuse other protocols' bytes.
#include "tests/unit/drivers/driver_harness.h"
#include "tools/sim/ptz_decode.h"

// The words of every frame a command yields, " / " between frames, a frame to another address
// than the channel's marked with it. Each frame must decode whole with a byte following it, be
// refused when cut short, and be flagged, with the same words, when its check byte is damaged.
static std::string Words(uint32_t nModel, uint32_t nAddress, uint32_t nCmd, int32_t p1,
                         uint32_t p2, uint32_t p3) {
    const PtzProtocol& pr = *ProtocolOfModel(nModel);
    std::string s;
    for (Bytes f : DriverHarness(nModel, nAddress).Send(nCmd, p1, p2, p3)) {
        PtzFrameText t, cut, bad;
        for (size_t n = 0; n < f.size(); ++n) EXPECT_FALSE(PtzDecode(pr, f.data(), n, &cut)) << n;
        f.push_back(0x55);
        if (!PtzDecode(pr, f.data(), f.size(), &t)) return "(not decoded)";
        EXPECT_EQ(t.nLength, f.size() - 1);
        EXPECT_FALSE(t.bBadCheck);
        f[t.nLength - 1] ^= 0x01;
        const bool bFlagged = PtzDecode(pr, f.data(), f.size(), &bad) && bad.bBadCheck;
        EXPECT_EQ(bFlagged && bad.sWords == t.sWords, pr.bChecked) << t.sWords;
        s += (s.empty() ? "" : " / ") + t.sWords;
        if (t.nAddress != nAddress) s += " [addr " + std::to_string(t.nAddress) + "]";
    }
    return s;
}

TEST(Decode, WordsOfBuiltFrames) {
    enum : uint32_t { kD = 14, kP = 19, kEP = 22, kSamsung = 4, kBosch = 27, kCanon = 16,
                      kEZ = 32, kHSDN = 24, kLG = 33, kBBV = 42 };
    const struct { uint32_t model, address, cmd; int32_t p1; const char* words;
                   uint32_t p2 = 0, p3 = 0; } kCases[] = {
        {kD, 1, PTZCmd_Left, 8, "pan left 63"},
        {kD, 1, PTZCmd_DownLeft, 3, "move down left 16"},
        {kD, 1, PTZCmd_Joystick, 0x90, "move down 5 left 16", 0x05},
        {kD, 1, PTZCmd_Joystick, 0x02, "pan right 2 zoom tele", 0, 0x85},
        {kD, 2, PTZCmd_MenuOn, 0, "set preset 95 (menu on)"},
        {kD, 1, PTZCmd_CameraOn, 0, "camera on"},
        {kP, 0, PTZCmd_Down, 0, "tilt down 4 [addr 1]"},
        {kP, 1, PTZCmd_FocusFar, 0, "focus far"},
        {kP, 1, PTZCmd_AutoPan, 0, "go to preset 99 (auto pan on)"},
        {kEP, 250, PTZCmd_PresetSet, 32, "set preset 32"},
        {kEP, 1, PTZCmd_AuxOn1, 0, "record pattern start (aux 1 on)"},
        {kEP, 1, PTZCmd_AuxOn2, 0, "run pattern (aux 2 on)"},
        {kEP, 1, PTZCmd_CameraOff, 0, "camera off"},
        {kSamsung, 200, PTZCmd_Up, 3, "tilt up 16"},
        {kSamsung, 1, PTZCmd_LeftStop, 0, "stop"},
        {kSamsung, 1, PTZCmd_PresetGo, 5, "go to preset 5"},
        {kBosch, 1, PTZCmd_Left, 8, "pan left 15"},
        {kBosch, 129, PTZCmd_Down, 5, "tilt down 7"},
        {kBosch, 16384, PTZCmd_ZoomTele, 8, "zoom tele speed 7"},
        {kBosch, 300, PTZCmd_PresetSet, 63, "set preset 63"},
        {kCanon, 12, PTZCmd_Left, 8, "pan speed 800 / pan left"},
        {kCanon, 1, PTZCmd_IrisOpen, 0, "iris level 0x3A"},
        {kCanon, 45, PTZCmd_PresetTour, 4, "pan speed 500 / tilt speed 400 / go to preset 1"},
        {kCanon, 1, PTZCmd_CameraOff, 0, "camera off (aux 1 off) / aux 2 off (camera off) [addr 0]"},
        {kCanon, 147, PTZCmd_FocusNearStop, 0, "auto focus off (stop) [addr 47]"},
        {kHSDN, 7, PTZCmd_DownRight, 8, "move down right 63"},
        {kHSDN, 7, PTZCmd_MenuOn, 0, "set preset 95 (menu on)"},
        {kBBV, 3, PTZCmd_FocusFar, 0, "focus far"},
        {kBBV, 3, PTZCmd_AuxOn2, 0, "aux 2 on"},
        {kBBV, 3, PTZCmd_Ext1, 0, "record pattern start"},
        {kBBV, 3, PTZCmd_AutoPanOff, 0, "go to preset 96 (auto pan off)"},
        {kEZ, 300, PTZCmd_Up, 1, "tilt up 1"},
        {kEZ, 300, PTZCmd_CameraOff, 0, "camera off"},
        {kEZ, 300, PTZCmd_MenuOn, 0, "go to preset 95 (menu on)"},
        {kEZ, 300, PTZCmd_Joystick, 0x85, "move down left 5 zoom tele", 0x05, 0x81},
        {kLG, 200, PTZCmd_ZoomWide, 0, "zoom wide"},
        {kLG, 200, PTZCmd_PresetClear, 9, "clear preset 9"},
    };
    for (const auto& c : kCases)
        EXPECT_EQ(Words(c.model, c.address, c.cmd, c.p1, c.p2, c.p3), c.words) << c.cmd;
}

// Another protocol's frame, or a byte that cannot be in one: refused.
TEST(Decode, RefusesForeignBytes) {
    const struct { PtzDecodeFn decode; const char* sHex; } kCases[] = {
        {DecodePelcoP, "A0 00 00 04 3F 00 AE 34"},
        {DecodeAutoDome, "86 00 00 07 85 05 11"},
        {DecodeCanonVCC4, "FF 30 31 00 A1 01 EF"},
        // the LG dome and the NV/EZ protocol share their start byte, not the next
        {DecodeRvtEZ, "E5 01 01 00 00 00 00 E7"},
        {DecodeLGDome, "E5 10 01 00 00 00 53"},
        {DecodeBBV, "B0 01 00 00 00 00 AF 0E"},
        {DecodeHSDN251NP, "FF 01 00 00 00 00 01"},
    };
    for (const auto& c : kCases) {
        const Bytes b = Hex(c.sHex).at(0);
        PtzFrameText t;
        EXPECT_FALSE(c.decode(b.data(), b.size(), &t)) << c.sHex;
    }
}
