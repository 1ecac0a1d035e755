// Splitting a line's byte stream into frames, noise and cut frames however the bytes arrive;
// telling which protocol a capture speaks; hex text as installers paste it.
#include <string>
#include <vector>

#include "tests/unit/drivers/driver_harness.h"
#include "tools/sim/ptz_line.h"

namespace {

std::vector<const PtzProtocol*> Named(std::initializer_list<const char*> names) {
    std::vector<const PtzProtocol*> out;
    for (const char* s : names) out.push_back(ProtocolNamed(s));
    return out;
}

Bytes Stream(const std::string& sHex) { return sHex.empty() ? Bytes{} : Hex(sHex).at(0); }

// "@0 Pelco-D pan left 63", "@7 noise 55 AA", "@9 cut Pelco-D FF 01", "... [bad]".
std::string Show(const PtzPiece& p) {
    std::string s = "@" + std::to_string(p.nOffset) + " ";
    switch (p.eKind) {
    case PtzPieceKind::Frame:
        s += std::string(p.ptProtocol->sName) + " " + p.tText.sWords;
        if (p.tText.bBadCheck) s += " [bad]";
        break;
    case PtzPieceKind::Noise:
        s += "noise " + Ascii(std::string(p.abData.begin(), p.abData.end()));
        break;
    case PtzPieceKind::Cut:
        s += "cut " + std::string(p.ptProtocol->sName) + " " +
             Ascii(std::string(p.abData.begin(), p.abData.end()));
        break;
    }
    return s;
}

// The stream fed in the given cuts (offsets where a read ends), then flushed.
std::vector<std::string> Split(const std::vector<const PtzProtocol*>& protocols, const Bytes& b,
                               const std::vector<size_t>& cuts) {
    PtzSplitter splitter(protocols);
    std::vector<PtzPiece> pieces;
    size_t nFrom = 0;
    for (size_t nTo : cuts) {
        splitter.Feed(b.data() + nFrom, nTo - nFrom, &pieces);
        nFrom = nTo;
    }
    splitter.Feed(b.data() + nFrom, b.size() - nFrom, &pieces);
    splitter.Flush(&pieces);
    std::vector<std::string> out;
    for (const PtzPiece& p : pieces) out.push_back(Show(p));
    return out;
}

// Each stream gives the same pieces in one read, byte by byte, and cut in two reads anywhere: a
// frame's first part is kept until its rest arrives.
TEST(PtzSplitter, PiecesOfAStreamHoweverItArrives) {
    const struct {
        const char* sWhat;
        std::vector<const PtzProtocol*> protocols;
        const char* sHex;
        std::vector<std::string> want;
    } kCases[] = {
        {"noise between frames", Named({"Pelco-D"}),
         "FF 01 00 04 3F 00 44 55 AA FF 01 00 07 00 05 0D",
         {"@0 Pelco-D pan left 63", "@7 noise 55 AA", "@9 Pelco-D go to preset 5"}},
        {"a bad check, and reading goes on", Named({"Controller link"}),
         "02 01 04 00 07 00 05 03 05 02 01 04 00 00 00 00 03 06",
         {"@0 Controller link go to preset 5 [bad]", "@9 Controller link stop"}},
        {"a stray start byte before a frame", Named({"Pelco-D"}),
         "FF FF 01 00 04 3F 00 44",
         {"@0 noise FF", "@1 Pelco-D pan left 63"}},
        {"a frame's rest lost, the next frame whole", Named({"Controller link"}),
         "02 01 04 00 04 3F 00 03 3D 02 01 04 00 02 01 04 00 00 00 00 03 06",
         {"@0 Controller link pan left 63", "@9 cut Controller link 02 01 04 00",
          "@13 Controller link stop"}},
        {"the capture ends inside a frame", Named({"Pelco-D"}),
         "FF 01 00 04 3F 00 44 55 FF 01 00",
         {"@0 Pelco-D pan left 63", "@7 noise 55", "@8 cut Pelco-D FF 01 00"}},
        {"two protocols on one line", Named({"Pelco-D", "Controller link"}),
         "02 27 04 00 07 00 05 03 22 FF 01 00 07 00 05 0D",
         {"@0 Controller link go to preset 5", "@9 Pelco-D go to preset 5"}},
        {"a good check over a shorter frame without a check",
         Named({"Canon VC-C4", "Pelco-D"}), "FF 30 31 00 60 EF B0",
         {"@0 Pelco-D focus near and auto pan off"}},
        {"nothing but noise", Named({"Pelco-D", "Pelco-P"}),
         "01 02 03", {"@0 noise 01 02 03"}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.sWhat);
        const Bytes b = Stream(c.sHex);
        EXPECT_EQ(Split(c.protocols, b, {}), c.want);
        std::vector<size_t> every;
        for (size_t i = 1; i < b.size(); ++i) every.push_back(i);
        EXPECT_EQ(Split(c.protocols, b, every), c.want) << "byte by byte";
        for (size_t i = 1; i < b.size(); ++i)
            EXPECT_EQ(Split(c.protocols, b, {i}), c.want) << "cut at " << i;
    }
}

// The frames a model's driver builds for a few commands, end to end.
using Commands = std::vector<std::pair<uint32_t, int32_t>>;

Bytes Built(uint32_t nModel, const Commands& cmds) {
    DriverHarness h(nModel, 3);
    Bytes out;
    for (const auto& [nCmd, p1] : cmds)
        for (const Bytes& f : h.Send(nCmd, p1)) out.insert(out.end(), f.begin(), f.end());
    return out;
}

TEST(PtzGuess, NamesTheProtocolACaptureSpeaks) {
    const Commands cmds = {{PTZCmd_Left, 8}, {PTZCmd_LeftStop, 0}, {PTZCmd_PresetGo, 5},
                           {PTZCmd_ZoomTele, 0}, {PTZCmd_MenuOn, 0}};
    const Bytes noise = Stream("55 02 AA FF 00");
    for (uint32_t nModel : {14u, 19u, 22u, 4u, 27u, 16u, 39u}) {
        SCOPED_TRACE(nModel);
        Bytes b = noise;
        const Bytes frames = Built(nModel, cmds);
        b.insert(b.end(), frames.begin(), frames.end());
        b.insert(b.end(), noise.begin(), noise.end());
        const std::vector<PtzProtocolScore> ranking = RankPtzProtocols(b.data(), b.size());
        ASSERT_FALSE(ranking.empty());
        EXPECT_EQ(ranking[0].ptProtocol, ProtocolOfModel(nModel));
        EXPECT_EQ(ranking[0].nGoodBytes, frames.size());
    }
}

TEST(HexText, ParsesWhatInstallersPaste) {
    const struct { const char* sText; const char* sBytes; const char* sError; } kCases[] = {
        {"FF 01 00 04", "FF 01 00 04", ""},
        {"0xff,0x01, 0X2a", "FF 01 2A", ""},
        {"FF0100\n04 3F\r\n", "FF 01 00 04 3F", ""},
        {"5 0x5 a", "05 05 0A", ""},
        {"# capture of channel 3\nFF 01 # the address\n02", "FF 01 02", ""},
        {"", "", ""},
        {"FF GG", "", "bad hex \"GG\" on line 1"},
        {"FF\n\nABC", "", "odd number of hex digits in \"ABC\" on line 3"},
        {"0x", "", "bad hex \"0x\" on line 1"},
        {"FF;01", "", "bad hex \"FF;01\" on line 1"},
    };
    for (const auto& c : kCases) {
        std::vector<uint8_t> got;
        std::string sError;
        const bool bOk = ParseHexText(c.sText, &got, &sError);
        EXPECT_EQ(bOk, *c.sError == '\0') << c.sText;
        EXPECT_EQ(sError, c.sError) << c.sText;
        EXPECT_EQ(got, bOk ? Stream(c.sBytes) : Bytes{}) << c.sText;
    }
}

}  // namespace
