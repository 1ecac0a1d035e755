#include <gtest/gtest.h>

#include <string>

#include "ptz/drivers/pm_drivers.h"
#include "tests/unit/drivers/driver_harness.h"
#include "tools/sim/ptz_decode.h"

namespace {

using Decoder = bool (*)(const uint8_t*, size_t, PtzFrameText*);

struct Driver {
    const char* sName;
    PTZBuildCmdFn build;
    PTZCheckStatusFn status;
    Decoder decode;
};
const Driver kSamsung = {"SCC-641", BuildCmd_SCC641, nullptr, DecodeSCC641};
const Driver kBosch = {"AutoDome", BuildCmd_AutoDome, CheckStatus_AutoDome, DecodeAutoDome};
const Driver kCanon = {"VC-C4", BuildCmd_CanonVCC4, CheckStatus_CanonVCC4, DecodeCanonVCC4};

// The words of every frame one command produces, joined by " / "; a frame to another address than
// the channel's is marked with it.
std::string Words(const Driver& d, uint32_t address, uint32_t cmd, int32_t p1) {
    DriverHarness h(d.build, d.status, address);
    std::string s;
    for (const Bytes& f : h.Send(cmd, p1)) {
        PtzFrameText t;
        if (!d.decode(f.data(), f.size(), &t)) return "(not decoded)";
        EXPECT_EQ(t.nLength, f.size());
        EXPECT_FALSE(t.bBadCheck);
        s += (s.empty() ? "" : " / ") + t.sWords;
        if (t.nAddress != address) s += " [addr " + std::to_string(t.nAddress) + "]";
    }
    return s;
}

TEST(DecodeCams, WordsOfBuiltFrames) {
    struct Case { const Driver& d; uint32_t address; uint32_t cmd; int32_t p1; const char* words; };
    const Case cases[] = {
        {kSamsung, 1, PTZCmd_Left, 8, "pan left 64"},
        {kSamsung, 200, PTZCmd_Up, 3, "tilt up 16"},
        {kSamsung, 1, PTZCmd_DownRight, 0, "move down right 5"},
        {kSamsung, 1, PTZCmd_LeftStop, 0, "stop"},
        {kSamsung, 1, PTZCmd_ZoomTele, 0, "zoom tele"},
        {kSamsung, 1, PTZCmd_FocusAuto, 0, "auto focus on"},
        {kSamsung, 1, PTZCmd_PresetGo, 5, "go to preset 5"},
        {kSamsung, 1, PTZCmd_RunPattern, 2, "run pattern 2"},
        {kSamsung, 1, PTZCmd_MenuOn, 0, "menu on"},
        {kSamsung, 1, PTZCmd_AutoPan, 0, "auto pan on"},
        {kBosch, 1, PTZCmd_Left, 8, "pan left 15"},
        {kBosch, 129, PTZCmd_Down, 5, "tilt down 7"},
        {kBosch, 16384, PTZCmd_UpRight, 8, "move up right 15"},
        {kBosch, 1, PTZCmd_ZoomTele, 8, "zoom tele speed 7"},
        {kBosch, 1, PTZCmd_IrisOpen, 0, "iris open"},
        {kBosch, 1, PTZCmd_ZoomTeleStop, 0, "stop"},
        {kBosch, 300, PTZCmd_PresetGo, 5, "go to preset 5"},
        {kBosch, 1, PTZCmd_PresetSet, 63, "set preset 63"},
        {kCanon, 12, PTZCmd_Left, 8, "pan speed 800 / pan left"},
        {kCanon, 3, PTZCmd_UpLeft, 0, "pan speed 8 / tilt speed 8 / move up left"},
        {kCanon, 99, PTZCmd_Down, 2, "tilt speed 107 / tilt down"},
        {kCanon, 1, PTZCmd_DownStop, 0, "stop"},
        {kCanon, 1, PTZCmd_ZoomTele, 0, "zoom tele"},
        {kCanon, 1, PTZCmd_IrisOpen, 0, "iris level 0x3A"},
        {kCanon, 1, PTZCmd_IrisAuto, 0, "auto iris on"},
        {kCanon, 45, PTZCmd_PresetGo, 5, "pan speed 800 / tilt speed 600 / go to preset 5"},
        {kCanon, 45, PTZCmd_PresetTour, 4, "pan speed 500 / tilt speed 400 / go to preset 1"},
        {kCanon, 1, PTZCmd_CameraOff, 0, "camera off / aux 2 off [addr 0]"},
        {kCanon, 147, PTZCmd_AuxOn2, 0, "aux 2 on [addr 0]"},
        {kCanon, 147, PTZCmd_AuxOn1, 0, "camera on [addr 47]"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.d.sName) + " " + std::to_string(c.cmd));
        EXPECT_EQ(Words(c.d, c.address, c.cmd, c.p1), c.words);
    }
}

// One flipped bit in any byte covered by the check is reported; Canon frames carry no check.
TEST(DecodeCams, BadCheckIsMarked) {
    for (const Driver* d : {&kSamsung, &kBosch}) {
        DriverHarness h(d->build, d->status, 1);
        const Bytes good = h.Send(PTZCmd_PresetGo, 5).at(0);
        for (size_t i = 2; i < good.size(); ++i) {
            Bytes bad = good;
            bad[i] ^= 0x01;
            PtzFrameText t;
            ASSERT_TRUE(d->decode(bad.data(), bad.size(), &t)) << d->sName << " byte " << i;
            EXPECT_TRUE(t.bBadCheck) << d->sName << " byte " << i;
        }
    }
}

TEST(DecodeCams, RejectsTruncatedAndForeignBytes) {
    const std::vector<std::pair<Decoder, Bytes>> cases = {
        {DecodeSCC641, {0xA0, 0xFE, 0x01, 0x01, 0, 0, 0, 0}},            // one byte short
        {DecodeSCC641, {0xA0, 0x00, 0x00, 0x07, 0x00, 0x01, 0xAF, 0x09, 0x00}},   // Pelco-P
        {DecodeAutoDome, {0x87, 0x00, 0x00, 0x05, 0x00, 0x78, 0x02}},    // one byte short
        {DecodeAutoDome, {0x86, 0x00, 0x00, 0x07, 0x85, 0x05, 0x11}},    // bit 7 inside
        {DecodeAutoDome, {0xFF, 0x01, 0x00, 0x04, 0x3F, 0x00, 0x44, 0x00}},   // Pelco-D
        {DecodeCanonVCC4, {0xFF, 0x30, 0x31, 0x00, 0xA1, 0x32}},         // no terminator yet
        {DecodeCanonVCC4, {0xFF, 0x01, 0x00, 0x04, 0x3F, 0x00, 0x44}},   // Pelco-D
        {DecodeCanonVCC4, {0xFF, 0x30, 0x31, 0x00, 0xA1, 0x01, 0xEF}},   // argument not ASCII
        {DecodeCanonVCC4, {}},
    };
    for (size_t i = 0; i < cases.size(); ++i) {
        PtzFrameText t;
        EXPECT_FALSE(cases[i].first(cases[i].second.data(), cases[i].second.size(), &t)) << i;
    }
}

// Line noise, mostly shaped like the start of a frame: a decoder never claims more bytes than it
// was given.
TEST(DecodeCams, NoiseNeverOverruns) {
    uint32_t seed = 12345;
    auto next = [&seed] { return (seed = seed * 1103515245u + 12345u) >> 16; };
    const Decoder decoders[] = {DecodeSCC641, DecodeAutoDome, DecodeCanonVCC4};
    int decoded[3] = {};
    for (int round = 0; round < 30000; ++round) {
        Bytes b(next() % 40);
        for (uint8_t& y : b) y = static_cast<uint8_t>(next());
        if (b.size() >= 5) {
            switch (next() % 3) {
            case 0:
                b[0] = 0xA0;
                b[1] = 0xFE;
                break;
            case 1:
                b[0] = static_cast<uint8_t>(0x86 + next() % 2);
                for (size_t i = 1; i < b.size(); ++i) b[i] &= (next() % 16) ? 0x7F : 0xFF;
                break;
            case 2:
                b[0] = 0xFF;
                b[1] = static_cast<uint8_t>('0' + next() % 10);
                b[2] = static_cast<uint8_t>('0' + next() % 10);
                b[3] = 0;
                for (size_t i = 4; i < b.size(); ++i)
                    b[i] = static_cast<uint8_t>(0x20 + next() % 0x5F);
                b[4 + next() % (b.size() - 4)] = 0xEF;
                break;
            }
        }
        for (int d = 0; d < 3; ++d) {
            PtzFrameText t;
            if (decoders[d](b.data(), b.size(), &t)) {
                ASSERT_GT(t.nLength, 0u);
                ASSERT_LE(t.nLength, b.size());
                ++decoded[d];
            }
        }
    }
    for (int d = 0; d < 3; ++d) EXPECT_GT(decoded[d], 100) << d;
}

}  // namespace
