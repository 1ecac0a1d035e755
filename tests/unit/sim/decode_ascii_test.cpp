// Decoders of the Panasonic, C&B Tech, LG LPT-A100L and SmartDome protocols: words of the frames
// the drivers build, a damaged check flagged, cut frames and foreign bytes refused, and the makers'
// own frames read.
#include "tests/unit/drivers/driver_harness.h"
#include "tools/sim/ptz_decode.h"

namespace {

constexpr uint32_t kLpt = 9, kCnbZoom = 15, kPanasonic = 23, kSmartDome = 26, kCnbPtz = 36;

// The check of a frame of these protocols sits this far from its end (0: the frame has none).
size_t CheckFromEnd(uint32_t nModel) {
    return nModel == kSmartDome ? 2 : nModel == kPanasonic ? 0 : 1;
}

// Another value in the same place: another hexadecimal digit, or another 7-bit byte.
uint8_t Damaged(uint8_t y) {
    if ((y >= '0' && y <= '9') || (y >= 'A' && y <= 'F')) return y == '0' ? '1' : '0';
    return static_cast<uint8_t>(y ^ 0x01);
}

// The words of every frame a command yields, " / " between frames. Each frame decodes whole with
// a byte after it, is refused when cut short, and with a damaged check reads the same, flagged.
std::string Words(uint32_t nModel, uint32_t nAddress, uint32_t nCmd, int32_t p1, uint32_t p2 = 0) {
    const PtzProtocol& pr = *ProtocolOfModel(nModel);
    std::string s;
    for (Bytes f : DriverHarness(nModel, nAddress).Send(nCmd, p1, p2)) {
        PtzFrameText t, cut, bad;
        for (size_t n = 0; n < f.size(); ++n) EXPECT_FALSE(PtzDecode(pr, f.data(), n, &cut)) << n;
        const size_t nFrame = f.size();
        f.push_back('0');
        if (!PtzDecode(pr, f.data(), f.size(), &t)) return "(not decoded)";
        EXPECT_EQ(t.nLength, nFrame);
        EXPECT_FALSE(t.bBadCheck);
        EXPECT_EQ(t.nAddress, nAddress);
        if (const size_t nBack = CheckFromEnd(nModel); nBack != 0) {
            f[nFrame - nBack] = Damaged(f[nFrame - nBack]);
            if (!PtzDecode(pr, f.data(), f.size(), &bad)) return "(damaged check refused)";
            EXPECT_TRUE(bad.bBadCheck) << t.sWords;
            EXPECT_EQ(bad.sWords, t.sWords);
        }
        s += (s.empty() ? "" : " / ") + t.sWords;
    }
    return s;
}

}  // namespace

TEST(DecodeAscii, WordsOfBuiltFrames) {
    const struct { uint32_t model, address, cmd; int32_t p1; const char* words; } kCases[] = {
        {kPanasonic, 1, PTZCmd_ZoomTele, 0, "zoom tele"},
        {kPanasonic, 12, PTZCmd_Left, 8, "pan left 7"},
        {kPanasonic, 99, PTZCmd_DownRight, 5, "move down right 4"},
        {kPanasonic, 1, PTZCmd_LeftStop, 0, "stop"},
        {kPanasonic, 1, PTZCmd_PresetGo, 64, "go to preset 64"},
        {kPanasonic, 1, PTZCmd_PresetSet, 1, "set preset 1"},
        {kPanasonic, 1, PTZCmd_AuxOn1, 0, "aux 1 on"},
        {kCnbZoom, 0, PTZCmd_FocusAuto, 0, "auto focus on once"},
        {kCnbZoom, 99, PTZCmd_PresetSet, 63, "set preset 63"},
        {kCnbPtz, 5, PTZCmd_DownLeft, 3, "pan left 16 / tilt down 16"},
        {kCnbPtz, 5, PTZCmd_DownLeftStop, 0, "stop pan / stop tilt"},
        {kLpt, 1, PTZCmd_Left, 8, "speed high / pan left 500 ms"},
        {kLpt, 0x80, PTZCmd_UpRight, 2, "speed low / move up right 500 ms"},
        {kLpt, 1, PTZCmd_FocusNear, 0, "focus near 500 ms"},
        {kSmartDome, 1, PTZCmd_UpRight, 0, "pan right 4 / tilt up 4"},
        {kSmartDome, 999, PTZCmd_ZoomWideStop, 0, "stop"},
        {kSmartDome, 0, PTZCmd_PresetGo, 99, "go to preset 99"},
        {kSmartDome, 1, PTZCmd_AuxOn6, 0, "aux 6 on"},
    };
    for (const auto& c : kCases)
        EXPECT_EQ(Words(c.model, c.address, c.cmd, c.p1), c.words)
            << "model " << c.model << " code " << c.cmd;
}

// Frames the recorder never builds, as the cameras' makers give them.
TEST(DecodeAscii, MakersFrames) {
    const struct { PtzDecodeFn decode; std::string sHex; const char* words; } kCases[] = {
        {DecodeCNB, Ascii("*2B750000CA"), "id 2B command 0x75 option 0x0000"},
        {DecodeCNB, Ascii("*00C60100C4"), "command 0xC6 option 0x0100"},
        {DecodeCNB, Ascii("*00000000AA"), "camera reply"},
        {DecodeLPTA100L, "02 01 38 30 03 6E", "pan left 150 ms"},
        {DecodeSmartDome, Ascii("at001T011B") + " 0D", "command T01"},
        {DecodePSonicCS85x, "02 " + Ascii("AD01;GCF:2021368:2022800") + " 03",
         "command 2021368:2022800"},
    };
    for (const auto& c : kCases) {
        const Bytes b = Hex(c.sHex).at(0);
        PtzFrameText t;
        ASSERT_TRUE(c.decode(b.data(), b.size(), &t)) << c.sHex;
        EXPECT_EQ(t.nLength, b.size());
        EXPECT_FALSE(t.bBadCheck);
        EXPECT_EQ(PtzWords(t), c.words);
    }
}

// Every frame is claimed by its own protocol only (the two Pelco-P variants share one frame), and
// bytes out of a protocol's alphabet are refused.
TEST(DecodeAscii, EachFrameHasOneProtocol) {
    const struct { const char* sName; PtzDecodeFn decode; } kDecoders[] = {
        {"D", DecodePelcoD}, {"P", DecodePelcoP}, {"EP", DecodeExtPelcoP}, {"S", DecodeSCC641},
        {"B", DecodeAutoDome}, {"V", DecodeCanonVCC4}, {"Pana", DecodePSonicCS85x},
        {"CNB", DecodeCNB}, {"LPT", DecodeLPTA100L}, {"Smart", DecodeSmartDome},
    };
    const struct { std::string sHex; const char* sClaimedBy; } kFrames[] = {
        {"FF 01 00 04 3F 00 44", "D"},
        {"A0 00 00 04 3F 00 AF 34", "P EP"},
        {"A0 FE 12 01 00 04 40 40 6A", "S"},
        {"87 00 00 05 00 00 40 4C", "B"},
        // Pelco-D takes any 7 bytes after FF, flagging the check
        {"FF 30 31 00 A1 30 EF", "D V"},
        {"02 " + Ascii("AD01;GC7:2021228") + " 03", "Pana"},
        {Ascii("*01C80500CB"), "CNB"},
        {"02 01 38 31 03 6F", "LPT"},
        {Ascii("at001S0019") + " 0D", "Smart"},
        // out of the alphabet: lower-case or odd length letters, commands and data beyond the
        // table, a letter no dome knows, a missing terminator
        {"02 " + Ascii("AD01;GC8:2021228") + " 03", ""},
        {Ascii("*01c80500CB"), ""},
        {"02 01 44 31 03 7B", ""},
        {"02 01 38 31 03 EF", ""},
        {Ascii("at001X0024") + " 0D", ""},
        {Ascii("at001S0019") + " 0A", ""},
    };
    for (const auto& f : kFrames) {
        Bytes b = Hex(f.sHex).at(0);
        b.push_back(0x00);   // a following byte
        std::string sClaimed;
        for (const auto& d : kDecoders) {
            PtzFrameText t;
            if (d.decode(b.data(), b.size(), &t))
                sClaimed += (sClaimed.empty() ? "" : " ") + std::string(d.sName);
        }
        EXPECT_EQ(sClaimed, f.sClaimedBy) << f.sHex;
    }
}
