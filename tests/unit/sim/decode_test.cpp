// The decoders in words: what the drivers build, what cameras and keyboards send that the drivers
// never build, and bytes a protocol cannot carry. That every built frame is read whole, refused cut
// short, flagged when damaged and claimed by no other checked protocol is the round trip's part.
#include <set>

#include "tests/unit/drivers/driver_harness.h"
#include "tools/sim/ptz_decode.h"

namespace {

enum : uint32_t {
    kEZ = 1, kLilin = 2, kVcl = 3, kSamsung = 4, kNec = 5, kDMax = 8, kLpt = 9, kGcc = 10,
    kWonwoo = 11, kD = 14, kCnbZoom = 15, kCanon = 16, kP = 19, kEP = 22, kPanasonic = 23,
    kHSDN = 24, kSmartDome = 26, kBosch = 27, kDeltaDome = 29, kHunt = 30, kLG = 33, kElmo = 34,
    kNiceCam = 35, kCnbPtz = 36, kPcs = 37, kIcd = 38, kToaCC = 39, kToaSC = 40, kSC1000 = 41,
    kBBV = 42,
};

// The words of every frame a command yields, " / " between frames, a frame to another address
// than the channel's marked with it.
std::string Words(uint32_t nModel, uint32_t nAddress, uint32_t nCmd, int32_t p1, uint32_t p2,
                  uint32_t p3) {
    const PtzProtocol& pr = *ProtocolOfModel(nModel);
    std::string s;
    for (Bytes f : DriverHarness(nModel, nAddress).Send(nCmd, p1, p2, p3)) {
        PtzFrameText t;
        f.insert(f.end(), f.begin(), f.end());
        if (!PtzDecode(pr, f.data(), f.size(), &t)) return "(not decoded)";
        s += (s.empty() ? "" : " / ") + t.sWords;
        if (t.nAddress != nAddress) s += " [addr " + std::to_string(t.nAddress) + "]";
    }
    return s;
}

}  // namespace

TEST(Decode, WordsOfBuiltFrames) {
    const struct { uint32_t model, address, cmd; int32_t p1; const char* words;
                   uint32_t p2 = 0, p3 = 0; } kCases[] = {
        {kD, 1, PTZCmd_Left, 8, "pan left 63"},
        {kD, 1, PTZCmd_Joystick, 0x90, "move down 5 left 16", 0x05},
        {kP, 0, PTZCmd_Down, 0, "tilt down 4 [addr 1]"},
        {kEP, 250, PTZCmd_PresetSet, 32, "set preset 32"},
        {kEP, 1, PTZCmd_AuxOn1, 0, "record pattern start (aux 1 on)"},
        {kSamsung, 200, PTZCmd_Up, 3, "tilt up 16"},
        {kBosch, 1, PTZCmd_Left, 8, "pan left 15"},
        {kCanon, 12, PTZCmd_Left, 8, "pan speed 800 / pan left"},
        {kHSDN, 7, PTZCmd_DownRight, 8, "move down right 63"},
        {kHSDN, 7, PTZCmd_MenuOn, 0, "set preset 95 (menu on)"},
        {kBBV, 3, PTZCmd_FocusFar, 0, "focus far"},
        {kBBV, 3, PTZCmd_AutoPanOff, 0, "go to preset 96 (auto pan off)"},
        {kEZ, 300, PTZCmd_Up, 1, "tilt up 1"},
        {kEZ, 300, PTZCmd_MenuOn, 0, "go to preset 95 (menu on)"},
        {kLG, 200, PTZCmd_ZoomWide, 0, "zoom wide"},
        {kNec, 1, PTZCmd_Left, 5, "pan left 32"},
        {kNiceCam, 35, PTZCmd_PresetSet, 95, "set preset 95"},
        {kDMax, 4, PTZCmd_PresetGo, 9, "go to preset 9"},
        {kWonwoo, 11, PTZCmd_UpRight, 0, "move up right 24"},
        {kHunt, 40, PTZCmd_Up, 0, "tilt up 16"},
        {kElmo, 160, PTZCmd_PresetGo, 255, "go to preset 255"},
        {kElmo, 1, PTZCmd_UpStop, 0, "stop / stop / stop / stop"},
        {kDeltaDome, 63, PTZCmd_UpRight, 3, "pan right 16 / tilt up 16"},
        {kLilin, 63, PTZCmd_Joystick, 0x3F, "move up right 7 zoom tele", 0xBF, 0x85},
        {kVcl, 128, PTZCmd_DownRight, 8, "pan right 127 / tilt down 127"},
        {kGcc, 200, PTZCmd_MenuOn, 0, "menu on (menu off) toggles"},
        {kPanasonic, 1, PTZCmd_ZoomTele, 0, "zoom tele"},
        {kCnbZoom, 0, PTZCmd_FocusAuto, 0, "auto focus on once"},
        {kCnbPtz, 5, PTZCmd_DownLeft, 3, "pan left 16 / tilt down 16"},
        {kLpt, 1, PTZCmd_Left, 8, "speed high / pan left 500 ms"},
        {kSmartDome, 1, PTZCmd_UpRight, 0, "pan right 4 / tilt up 4"},
        {kPcs, 1, PTZCmd_Left, 8, "pan left 63"},
        {kToaCC, 5, PTZCmd_UpLeft, 3, "move up left 16"},
        {kToaSC, 1, PTZCmd_Joystick, 0x05, "move up 3 right 5 zoom tele", 0x83, 0x81},
        {kSC1000, 1, PTZCmd_MenuOn, 0, "set preset 95 (menu on)"},
        {kIcd, 9, PTZCmd_PresetClear, 12, "clear preset 12"},
        {kToaCC, 300, PTZCmd_ZoomWide, 0, "zoom wide [addr 44]"},
    };
    for (const auto& c : kCases)
        EXPECT_EQ(Words(c.model, c.address, c.cmd, c.p1, c.p2, c.p3), c.words)
            << "model " << c.model << " code " << c.cmd;
}

// Frames the drivers never build, as the cameras' makers give them or a keyboard on the line
// sends them (words, with "[bad check]" for a frame read with a bad check), and bytes a protocol
// cannot carry (refused: no words).
TEST(Decode, FramesTheDriversDoNotBuild) {
    const struct { PtzDecodeFn decode; std::string sHex; const char* words; size_t length = 0; }
        kCases[] = {
        {DecodeCNB, Ascii("*2B750000CA"), "id 2B command 0x75 option 0x0000"},
        {DecodeCNB, Ascii("*00C60100C4"), "command 0xC6 option 0x0100"},
        {DecodeCNB, Ascii("*00000000AA"), "camera reply"},
        {DecodeCNB, Ascii("*01c80500CB"), nullptr},                 // lower case
        {DecodeLPTA100L, "02 01 38 30 03 6E", "pan left 150 ms"},
        {DecodeLPTA100L, "02 01 44 31 03 7B", nullptr},              // no such command
        {DecodeLPTA100L, "02 01 38 31 03 EF", nullptr},              // check with bit 7
        {DecodeSmartDome, Ascii("at001T011B") + " 0D", "command T01"},
        {DecodeSmartDome, Ascii("at001X0024") + " 0D", nullptr},    // a letter no dome knows
        {DecodeSmartDome, Ascii("at001S0019") + " 0A", nullptr},    // no CR
        {DecodePSonicCS85x, "02 " + Ascii("AD01;GCF:2021368:2022800") + " 03",
         "command 2021368:2022800"},
        {DecodePSonicCS85x, "02 " + Ascii("AD01;GC8:2021228") + " 03", nullptr},
        {DecodeNEC_NC21, "A0 01 00 00 73 00 00 00 00 AF 8B", "stop pattern"},
        {DecodeNEC_NC21, "55 00 01 00 00 00 00 00 00 AA FE", nullptr},   // the 55 framing
        {DecodeNEC_NC21, "A0 01 01 00 00 00 00 00 00 AF FD", nullptr},   // host byte not 00
        {DecodeSK2107, "55 00 01 00 00 00 00 00 00 AF FE", nullptr},     // end byte
        {DecodeHunt, "FA 03 00 01 77 00 75", "pan left 119"},
        {DecodeHunt, "FA 03 00 21 77 00 75", nullptr},               // low address bits past 1F
        {DecodeHunt, "FA 03 00 01 77 00 F5", nullptr},               // check with bit 7
        {DecodePTC400C, "01 FF 00 00 00 FE", nullptr},               // a command it does not take
        {DecodeADDeltaDome, "01 81 7E", "pan left"},
        {DecodeADDeltaDome, "01 C0 81 1E A0", "pan left 30"},
        {DecodeADDeltaDome, "01 C7 01 05 33", "set preset 5 [bad check]"},
        {DecodeADDeltaDome, "00 81 7F", nullptr},                    // address 0
        {DecodeADDeltaDome, "01 8D 72", nullptr},                    // no such command
        {DecodeADDeltaDome, "01 C0 83 1E 9E", nullptr},              // a stop is no direction
        {DecodeMLPIH7x00, "01 50 FF", "zoom tele and focus far"},
        {DecodeMLPIH7x00, "C1 05 00", nullptr},                      // no bank C0
        {DecodeMLPIH7x00, "01 03 87", nullptr},                      // left and right at once
        {DecodeMLPIH7x00, "01 01 C7", nullptr},                      // speeds have bit 6 clear
        {DecodeMLPIH7x00, "01 10 87", nullptr},                      // lens keys carry FF
        {DecodeMLPIH7x00, "41 05 01", nullptr},                      // presets end in 00
        {DecodeVCL, "80 50 02 81", "record pattern start", 3},       // the next frame's header
        {DecodeVCL, "80 4C 80", nullptr},                            // data 80 is a header
        {DecodeVCL, "80 72 01", nullptr},                            // only a header follows
        {DecodeGC655NP, "C5 5F 02 00 0A 30", "zoom tele quick (menu up)"},
        {DecodeGC655NP, "C5 5F 0D 00 01 32", nullptr},               // no such key
        {DecodeGC655NP, "C5 5F 01 01 01 27", nullptr},               // byte 3 is 00
        {DecodeGC655NP, "C5 7A 32 00 01 72", nullptr},               // presets 0-49
        {DecodeControllerLink, "02 01 05 00 00 00 00 00 03 07", nullptr},   // a payload of 5
        {DecodeControllerLink, "02 01 04 00 00 00 00 02 06", nullptr},      // no ETX
        {DecodeCanonVCC4, "FF 30 31 00 A1 01 EF", nullptr},          // arguments are characters
        {DecodeAutoDome, "86 00 00 07 85 05 11", nullptr},           // bit 7 after the start
    };
    for (const auto& c : kCases) {
        const Bytes b = Hex(c.sHex).at(0);
        const PtzProtocol p = {"", c.decode, true};
        PtzFrameText t;
        const bool bRead = PtzDecode(p, b.data(), b.size(), &t);
        EXPECT_EQ(bRead, c.words != nullptr) << c.sHex;
        if (!bRead || c.words == nullptr) continue;
        EXPECT_EQ(t.sWords + (t.bBadCheck ? " [bad check]" : ""), c.words) << c.sHex;
        EXPECT_EQ(t.nLength, c.length != 0 ? c.length : b.size()) << c.sHex;
    }
}

// A decoder without a check byte can only judge a frame's shape: each refuses the other
// protocols' frames, but for frames that are also of its own shape.
TEST(Decode, DecodersWithoutACheckRefuseOtherProtocolsFrames) {
    const struct { const char* sProtocol; std::string sHex; } kGolden[] = {
        {"Pelco-D", "FF 01 00 04 3F 00 44"},
        {"Pelco-P", "A0 00 00 04 3F 00 AF 34"},
        {"Pelco-EP", "A0 01 00 08 00 04 AF 0D"},
        {"Samsung SCC-641", "A0 FE 12 01 00 04 40 40 6A"},
        {"Bosch AutoDome", "87 01 00 05 00 00 20 2D"},
        {"Canon VC-C4", "FF 31 32 00 60 30 31 EF"},
        {"AD DeltaDome", "01 C7 02 05 31"},
        {"Merit Lilin", "01 01 87"},
        {"Merit Lilin", "81 05 00"},
        {"VCL", "80 4C 20"},
        {"Honeywell GCC-655N", "C5 7A 31 00 01 71"},
        {"Panasonic", "02 " + Ascii("AD01;GC7:2021228") + " 03"},
        {"C&B Tech", Ascii("*01C80500CB")},
        {"LG LPT-A100L", "02 01 38 31 03 6F"},
        {"SmartDome", Ascii("at001S0019") + " 0D"},
        {"Controller link", "02 01 04 00 00 00 00 03 06"},
        {"BBV", "B0 01 00 04 20 00 BF 2A"},
    };
    // Merit Lilin's preset frames (81-BF or 41-7F, a number, 00) start many 8-byte frames.
    const std::set<std::string> kFrameOfBoth = {
        "A0 01 00 08 00 04 AF 0D read by Merit Lilin",
        "87 01 00 05 00 00 20 2D read by Merit Lilin",
        "B0 01 00 04 20 00 BF 2A read by Merit Lilin",
    };
    for (const auto& g : kGolden) {
        ASSERT_NE(ProtocolNamed(g.sProtocol), nullptr) << g.sProtocol;
        Bytes b = Hex(g.sHex).at(0);
        b.insert(b.end(), b.begin(), b.end());
        for (const PtzProtocol& p : PtzProtocols()) {
            if (p.bChecked || p.sName == std::string(g.sProtocol)) continue;
            PtzFrameText t;
            const std::string sCase = g.sHex + " read by " + p.sName;
            EXPECT_EQ(PtzDecode(p, b.data(), b.size(), &t), kFrameOfBoth.contains(sCase))
                << sCase << " as " << t.sWords;
        }
    }
}
