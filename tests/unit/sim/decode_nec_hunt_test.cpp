// Decoders of the 11-byte speed domes (A0 .. AF and 55 .. AA), Hunt and Elmo PTC-400C: the words of
// built frames, a damaged check flagged with the same words, cut frames and foreign bytes refused,
// and no other checked protocol reading these frames as its own.
#include <set>

#include "tests/unit/drivers/driver_harness.h"
#include "tools/sim/ptz_decode.h"

namespace {

enum : uint32_t { kNec = 5, kSunkwang = 6, kDMax = 8, kWonwoo = 11, kHunt = 30, kElmo = 34,
                  kNiceCam = 35 };
constexpr uint32_t kModels[] = {kNec, kSunkwang, kDMax, kWonwoo, kHunt, kElmo, kNiceCam};

// The words of every frame a command yields, " / " between frames. Each frame must be refused
// when cut short, decode whole with a byte following it, and keep its words, flagged, when its
// check byte is damaged.
std::string Words(uint32_t nModel, uint32_t nAddress, uint32_t nCmd, int32_t p1) {
    const PtzProtocol& pr = *ProtocolOfModel(nModel);
    std::string s;
    for (Bytes f : DriverHarness(nModel, nAddress).Send(nCmd, p1)) {
        PtzFrameText t, cut, bad;
        for (size_t n = 1; n < f.size(); ++n) EXPECT_FALSE(PtzDecode(pr, f.data(), n, &cut)) << n;
        f.push_back(0x00);
        if (!PtzDecode(pr, f.data(), f.size(), &t)) return "(not decoded)";
        EXPECT_EQ(t.nLength, f.size() - 1);
        EXPECT_FALSE(t.bBadCheck);
        EXPECT_EQ(t.nAddress, nAddress);
        f[t.nLength - 1] ^= 0x01;
        EXPECT_TRUE(PtzDecode(pr, f.data(), f.size(), &bad) && bad.bBadCheck) << t.sWords;
        EXPECT_EQ(bad.sWords, t.sWords);
        s += (s.empty() ? "" : " / ") + t.sWords;
    }
    return s;
}

}  // namespace

TEST(DecodeNecHunt, WordsOfBuiltFrames) {
    const struct { uint32_t model, address, cmd; int32_t p1; const char* words; } kCases[] = {
        {kNec, 1, PTZCmd_Left, 5, "pan left 32"},
        {kNec, 1, PTZCmd_ZoomWide, 8, "zoom wide speed 8"},
        {kNec, 1, PTZCmd_FocusNear, 0, "focus near speed 4"},
        {kNec, 1, PTZCmd_RightStop, 0, "stop"},
        {kNec, 1, PTZCmd_MenuOff, 0, "menu off"},
        {kNec, 1, PTZCmd_RunPattern, 4, "run pattern 4"},
        {kNiceCam, 35, PTZCmd_PresetSet, 95, "set preset 95"},
        {kDMax, 4, PTZCmd_PresetGo, 9, "go to preset 9"},
        {kWonwoo, 11, PTZCmd_UpRight, 0, "move up right 24"},
        {kHunt, 40, PTZCmd_Up, 0, "tilt up 16"},
        {kHunt, 1, PTZCmd_UpLeft, 3, "move up left 60"},
        {kHunt, 1, PTZCmd_ZoomTele, 0, "zoom tele speed 120"},
        {kHunt, 1, PTZCmd_IrisCloseStop, 0, "stop"},
        {kHunt, 1, PTZCmd_AutoPan, 8, "auto pan on speed 239"},
        {kHunt, 300, PTZCmd_PresetSet, 192, "set preset 192"},
        {kHunt, 1, PTZCmd_ExtRun, 16, "run 16 camera tour"},
        {kElmo, 1, PTZCmd_Left, 8, "pan left 63"},
        {kElmo, 1, PTZCmd_FocusNear, 0, "focus near"},
        {kElmo, 160, PTZCmd_PresetGo, 255, "go to preset 255"},
        {kElmo, 1, PTZCmd_UpStop, 0, "stop / stop / stop / stop"},
    };
    for (const auto& c : kCases)
        EXPECT_EQ(Words(c.model, c.address, c.cmd, c.p1), c.words) << c.model << " " << c.cmd;
}

// Frames our drivers never build but a keyboard on the line may send: the stop of a running
// pattern, and a Hunt move at a speed no level gives (the maker's worked example).
TEST(DecodeNecHunt, FramesOthersSend) {
    const struct { PtzDecodeFn decode; const char* sHex; const char* sWords; } kCases[] = {
        {DecodeNEC_NC21, "A0 01 00 00 73 00 00 00 00 AF 8B", "stop pattern"},
        {DecodeHunt, "FA 03 00 01 77 00 75", "pan left 119"},
    };
    for (const auto& c : kCases) {
        const Bytes b = Hex(c.sHex).at(0);
        PtzFrameText t;
        const PtzProtocol p = {"", c.decode, true};
        ASSERT_TRUE(PtzDecode(p, b.data(), b.size(), &t)) << c.sHex;
        EXPECT_EQ(t.nLength, b.size());
        EXPECT_FALSE(t.bBadCheck) << c.sHex;
        EXPECT_EQ(t.nAddress, 1u);
        EXPECT_EQ(t.sWords, c.sWords);
    }
}

// Another protocol's frame, or bytes that break this protocol's fixed bytes or ranges: refused.
TEST(DecodeNecHunt, RefusesForeignBytes) {
    const struct { PtzDecodeFn decode; const char* sHex; } kCases[] = {
        {DecodeNEC_NC21, "A0 00 00 04 3F 00 AF 34 A0 00 00"},   // Pelco-P
        {DecodeNEC_NC21, "55 00 01 00 00 00 00 00 00 AA FE"},   // the 55 framing
        {DecodeNEC_NC21, "A0 01 01 00 00 00 00 00 00 AF FD"},   // host byte not 00
        {DecodeSK2107, "A0 01 00 00 00 00 00 00 00 AF FE"},
        {DecodeSK2107, "55 00 01 00 00 00 00 00 00 AF FE"},     // end byte
        {DecodeHunt, "FF 01 00 04 3F 00 44"},                   // Pelco-D
        {DecodeHunt, "FA 03 00 21 77 00 75"},                   // low address bits past 1F
        {DecodeHunt, "FA 03 00 01 77 00 F5"},                   // check with bit 7
        {DecodePTC400C, "FF 01 00 04 3F 00 44"},                // Pelco-D
        {DecodePTC400C, "01 FF 00 00 00 FE"},                   // a command it does not take
        {DecodePTC400C, "FF 30 31 00 A1 30 EF"},                // Canon VC-C4
    };
    for (const auto& c : kCases) {
        const Bytes b = Hex(c.sHex).at(0);
        PtzFrameText t;
        EXPECT_FALSE(c.decode(b.data(), b.size(), &t)) << c.sHex;
    }
}

// Guessing the protocol from the bytes: of the protocols whose frames carry a check, only a
// frame's own reads it whole with a good check, at any address, also 0xFE and 0xFF where other
// protocols have fixed bytes. Each frame is followed by a copy of itself, as on a busy line.
TEST(DecodeNecHunt, NoOtherCheckedProtocolClaimsTheseFrames) {
    for (uint32_t nModel : kModels) {
        const PtzProtocol* ptOwn = ProtocolOfModel(nModel);
        std::set<std::string> claimed;
        for (uint32_t nAddress : {1u, 23u, 200u, 0xFEu, 0xFFu}) {
            for (uint32_t nCmd = 0; nCmd < 128; ++nCmd) {
                for (int32_t p1 : {0, 5, 8}) {
                    for (const Bytes& f : DriverHarness(nModel, nAddress).Send(nCmd, p1)) {
                        Bytes line = f;
                        line.insert(line.end(), f.begin(), f.end());
                        for (const PtzProtocol& p : PtzProtocols()) {
                            PtzFrameText t;
                            if (&p == ptOwn || !p.bChecked) continue;
                            if (PtzDecode(p, line.data(), line.size(), &t) && !t.bBadCheck)
                                claimed.insert(std::string(p.sName) + ": " +
                                               Ascii(std::string(f.begin(), f.end())));
                        }
                    }
                }
            }
        }
        EXPECT_EQ(claimed.size(), 0u)
            << "model " << nModel << ", first: " << (claimed.empty() ? "" : *claimed.begin());
    }
}
