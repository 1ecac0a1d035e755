// Decoders of the AD DeltaDome, Merit Lilin, VCL and GCC-655N protocols: the words of what the
// drivers build, the makers' worked examples, damaged and cut frames, and bytes of other protocols
// or bytes these protocols cannot carry.
#include <set>
#include <string>

#include "tests/unit/drivers/driver_harness.h"
#include "tools/sim/ptz_decode.h"

namespace {

constexpr uint32_t kLilin = 2, kVcl = 3, kGcc = 10, kDeltaDome = 29;

// The words of every frame a command yields, " / " between frames. Each frame must decode whole
// when the next frame's first byte follows it, be refused when cut short, and, when its protocol
// has a check byte, be flagged with the same words once the check is damaged.
std::string Words(uint32_t nModel, uint32_t nAddress, uint32_t nCmd, int32_t p1, uint32_t p2 = 0,
                  uint32_t p3 = 0) {
    const PtzProtocol& pr = *ProtocolOfModel(nModel);
    std::string s;
    for (Bytes f : DriverHarness(nModel, nAddress).Send(nCmd, p1, p2, p3)) {
        PtzFrameText t, cut, bad;
        for (size_t n = 0; n < f.size(); ++n) EXPECT_FALSE(PtzDecode(pr, f.data(), n, &cut)) << n;
        f.push_back(f[0]);
        if (!PtzDecode(pr, f.data(), f.size(), &t)) return "(not decoded)";
        EXPECT_EQ(t.nLength, f.size() - 1);
        EXPECT_EQ(t.nAddress, nAddress);
        EXPECT_FALSE(t.bBadCheck);
        f[t.nLength - 1] ^= 0x01;
        const bool bFlagged = PtzDecode(pr, f.data(), f.size(), &bad) && bad.bBadCheck;
        EXPECT_EQ(bFlagged && bad.sWords == t.sWords, pr.bChecked) << t.sWords;
        s += (s.empty() ? "" : " / ") + t.sWords;
    }
    return s;
}

TEST(DecodeShortFrames, WordsOfBuiltFrames) {
    const struct { uint32_t model, address, cmd; int32_t p1; const char* words;
                   uint32_t p2 = 0, p3 = 0; } kCases[] = {
        {kDeltaDome, 63, PTZCmd_UpRight, 3, "pan right 16 / tilt up 16"},
        {kDeltaDome, 1, PTZCmd_DownLeftStop, 0, "stop pan / stop tilt"},
        {kDeltaDome, 1, PTZCmd_RunPattern, 2, "run pattern 2"},
        {kLilin, 63, PTZCmd_Joystick, 0x3F, "move up right 7 zoom tele", 0xBF, 0x85},
        {kLilin, 1, PTZCmd_AutoPanOff, 0, "auto pan on (auto pan off) toggles"},
        {kLilin, 7, PTZCmd_PresetSet, 200, "set preset 200"},
        {kVcl, 128, PTZCmd_DownRight, 8, "pan right 127 / tilt down 127"},
        {kVcl, 1, PTZCmd_IrisOpenStop, 0, "stop iris"},
        {kGcc, 200, PTZCmd_MenuOn, 0, "menu on (menu off) toggles"},
        {kGcc, 1, PTZCmd_PresetGo, 50, "go to preset 50 (camera preset 49)"},
    };
    for (const auto& c : kCases)
        EXPECT_EQ(Words(c.model, c.address, c.cmd, c.p1, c.p2, c.p3), c.words) << c.cmd;
}

// The makers' worked examples, also those our drivers do not send (the dome's plain direction
// command, the camera's quick zoom), and frames these protocols cannot carry.
TEST(DecodeShortFrames, ExamplesAndImpossibleFrames) {
    const struct { PtzDecodeFn decode; const char* sHex; const char* words; size_t length = 0; }
        kCases[] = {
        {DecodeADDeltaDome, "01 81 7E", "pan left"},
        {DecodeADDeltaDome, "01 C0 81 1E A0", "pan left 30"},
        {DecodeADDeltaDome, "01 C7 01 05 33", "set preset 5 [bad check]"},
        {DecodeADDeltaDome, "00 81 7F", nullptr},            // address 0
        {DecodeADDeltaDome, "01 8D 72", nullptr},            // no such command
        {DecodeADDeltaDome, "01 C0 83 1E 9E", nullptr},      // a stop is no direction
        {DecodeMLPIH7x00, "01 50 FF", "zoom tele and focus far"},
        {DecodeMLPIH7x00, "C1 05 00", nullptr},              // no bank C0
        {DecodeMLPIH7x00, "01 03 87", nullptr},              // left and right at once
        {DecodeMLPIH7x00, "01 01 C7", nullptr},              // speeds have bit 6 clear
        {DecodeMLPIH7x00, "01 10 87", nullptr},              // lens keys carry FF
        {DecodeMLPIH7x00, "41 05 01", nullptr},              // presets end in 00
        {DecodeVCL, "80 50 02 81", "record pattern start", 3},   // the next frame's header
        {DecodeVCL, "80 4C 80", nullptr},                    // data 80 is a header
        {DecodeVCL, "80 72 01", nullptr},                    // only a header follows a frame
        {DecodeGC655NP, "C5 5F 02 00 0A 30", "zoom tele quick (menu up)"},
        {DecodeGC655NP, "C5 5F 0D 00 01 32", nullptr},       // no such key
        {DecodeGC655NP, "C5 5F 01 01 01 27", nullptr},       // byte 3 is 00
        {DecodeGC655NP, "C5 7A 32 00 01 72", nullptr},       // presets 0-49
    };
    for (const auto& c : kCases) {
        const Bytes b = Hex(c.sHex).at(0);
        PtzFrameText t;
        const bool bRead = c.decode(b.data(), b.size(), &t);
        EXPECT_EQ(bRead, c.words != nullptr) << c.sHex;
        if (!bRead || c.words == nullptr) continue;
        EXPECT_EQ(PtzWords(t) + (t.bBadCheck ? " [bad check]" : ""), c.words) << c.sHex;
        EXPECT_EQ(t.nLength, c.length != 0 ? c.length : b.size()) << c.sHex;
    }
}

// Guessing a protocol from bytes: a golden frame of one protocol is refused by every other
// decoder, both ways between these four protocols and the others, except where the bytes are a
// frame of both. Lilin's preset frames (41-7F or 81-BF, a number, 00) have no check byte: a
// Pelco-P frame or an AutoDome frame may begin with such three bytes.
TEST(DecodeShortFrames, OtherProtocolsFramesAreRefused) {
    const struct { const char* sProtocol; const char* sHex; } kGolden[] = {
        {"Pelco-D", "FF 01 00 04 3F 00 44"},
        {"Pelco-P", "A0 00 00 04 3F 00 AF 34"},
        {"Pelco-EP", "A0 01 00 08 00 04 AF 0D"},
        {"Samsung SCC-641", "A0 FE 12 01 00 04 40 40 6A"},
        {"Bosch AutoDome", "87 01 00 05 00 00 20 2D"},
        {"Canon VC-C4", "FF 31 32 00 60 30 31 EF"},
        {"AD DeltaDome", "01 83 7C"},
        {"AD DeltaDome", "01 C7 02 05 31"},
        {"Merit Lilin", "01 01 87"},
        {"Merit Lilin", "41 05 00"},
        {"Merit Lilin", "81 05 00"},
        {"VCL", "80 4C 20"},
        {"VCL", "FF 72"},
        {"Honeywell GCC-655N", "C5 5F 01 00 01 26"},
        {"Honeywell GCC-655N", "C5 7A 31 00 01 71"},
    };
    const std::set<std::string> kOurs = {"AD DeltaDome", "Merit Lilin", "VCL",
                                         "Honeywell GCC-655N"};
    const std::set<std::string> kFrameOfBoth = {
        "A0 01 00 08 00 04 AF 0D read by Merit Lilin",
        "87 01 00 05 00 00 20 2D read by Merit Lilin",
    };
    for (const auto& g : kGolden) {
        ASSERT_NE(ProtocolNamed(g.sProtocol), nullptr) << g.sProtocol;
        const Bytes b = Hex(g.sHex).at(0);
        for (const PtzProtocol& p : PtzProtocols()) {
            if (p.sName == std::string(g.sProtocol)) continue;
            if (!kOurs.contains(p.sName) && !kOurs.contains(g.sProtocol)) continue;
            PtzFrameText t;
            const std::string sCase = std::string(g.sHex) + " read by " + p.sName;
            EXPECT_EQ(PtzDecode(p, b.data(), b.size(), &t), kFrameOfBoth.contains(sCase))
                << g.sProtocol << " " << sCase << " as " << t.sWords;
        }
    }
}

}  // namespace
