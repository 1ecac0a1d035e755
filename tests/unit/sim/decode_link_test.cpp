// The controller-link decoder reads back what the family's drivers build, flags a damaged check
// with the same words, refuses a frame cut short and refuses other protocols' frames.
#include "tests/unit/drivers/driver_harness.h"
#include "tools/sim/ptz_decode.h"

namespace {

// The words of the frames one command yields (" / " between frames, "[addr n]" where the frame
// names another address than the channel's), checking each frame on the way.
std::string LinkWords(uint32_t nModel, uint32_t nAddress, uint32_t nCmd, int32_t p1, uint32_t p2,
                      uint32_t p3) {
    const PtzProtocol& pr = *ProtocolOfModel(nModel);
    std::string s;
    for (Bytes f : DriverHarness(nModel, nAddress).Send(nCmd, p1, p2, p3)) {
        PtzFrameText t, bad;
        for (size_t n = 0; n < f.size(); ++n) EXPECT_FALSE(PtzDecode(pr, f.data(), n, &t)) << n;
        f.push_back(0x02);   // the next frame's first byte
        if (!PtzDecode(pr, f.data(), f.size(), &t)) return "(not decoded)";
        EXPECT_EQ(t.nLength, f.size() - 1);
        EXPECT_FALSE(t.bBadCheck);
        f[t.nLength - 1] ^= 0x40;
        EXPECT_TRUE(PtzDecode(pr, f.data(), f.size(), &bad) && bad.bBadCheck);
        EXPECT_EQ(bad.sWords, t.sWords);
        s += (s.empty() ? "" : " / ") + t.sWords;
        if (t.nAddress != nAddress) s += " [addr " + std::to_string(t.nAddress) + "]";
    }
    return s;
}

TEST(DecodeLink, WordsOfBuiltFrames) {
    const struct { uint32_t model, address, cmd; int32_t p1; const char* words;
                   uint32_t p2 = 0, p3 = 0; } kCases[] = {
        {37, 1, PTZCmd_Left, 8, "pan left 63"},
        {39, 5, PTZCmd_UpLeft, 3, "move up left 16"},
        {40, 1, PTZCmd_Joystick, 0x05, "move up 3 right 5 zoom tele", 0x83, 0x81},
        {41, 1, PTZCmd_MenuOn, 0, "set preset 95 (menu on)"},
        {38, 9, PTZCmd_PresetClear, 12, "clear preset 12"},
        {37, 1, PTZCmd_LeftStop, 0, "stop"},
        {39, 300, PTZCmd_ZoomWide, 0, "zoom wide [addr 44]"},
    };
    for (const auto& c : kCases)
        EXPECT_EQ(LinkWords(c.model, c.address, c.cmd, c.p1, c.p2, c.p3), c.words) << c.cmd;
}

// Other protocols' frames, some of which also start with STX, and link-shaped bytes of a length
// or end the family never sends.
TEST(DecodeLink, RefusesForeignBytes) {
    for (const char* sHex : {
             "FF 01 00 04 3F 00 44 00 00",                         // Pelco-D
             "A0 00 00 04 3F 00 AF 34 00",                         // Pelco-P
             "A0 FE 01 03 19 05 FF FF E1",                         // Samsung SCC-641
             "B0 01 00 04 20 00 BF 2A 00",                         // BBV
             "02 01 38 31 03 6F 02 01 38 31 03 6F",                // LG LPT-A100L
             "02 41 44 30 31 3B 47 43 37 3A 32 30 32 31 32 32 38 03",  // Panasonic
             "02 01 05 00 00 00 00 00 03 07",                      // a payload of 5
             "02 01 04 00 00 00 00 02 06",                         // no ETX
         }) {
        const Bytes b = Hex(sHex).at(0);
        PtzFrameText t;
        EXPECT_FALSE(DecodeControllerLink(b.data(), b.size(), &t)) << sHex;
    }
}

}  // namespace
