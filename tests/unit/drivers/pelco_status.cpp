// Behaviour the three Pelco drivers share: repeat suppression, the speed ramp of level-0 moves and
// the preset tour, driven over time with the fake clock.
#include <algorithm>
#include <cstdint>
#include <utility>

#include "ptz/drivers/pm_drivers.h"
#include "tests/unit/drivers/driver_harness.h"

namespace {

// In all three frame formats byte 4 is the pan speed and byte 5 the tilt speed or preset number.
constexpr size_t kPan = 4;
constexpr size_t kTilt = 5;

struct Driver {
    const char* sName;
    PTZBuildCmdFn build;
    PTZCheckStatusFn status;
    uint8_t (*check)(const Bytes&);     // the protocol's check byte over a whole frame
    uint8_t bArmedAfterEmptyTour;
};

uint8_t SumCheck(const Bytes& b) { return static_cast<uint8_t>(b[1] + b[2] + b[3] + b[4] + b[5]); }
uint8_t XorAll(const Bytes& b) { return b[0] ^ b[1] ^ b[2] ^ b[3] ^ b[4] ^ b[5] ^ b[6]; }
uint8_t XorInner(const Bytes& b) { return b[1] ^ b[2] ^ b[3] ^ b[4] ^ b[5]; }

const Driver kDrivers[] = {
    {"PelcoD", BuildCmd_PelcoD, CheckStatus_PelcoD, SumCheck, 0},
    {"PelcoP", BuildCmd_PelcoP, CheckStatus_PelcoP, XorAll, 1},
    {"ExtPelcoP", BuildCmd_ExtPelcoP, CheckStatus_ExtPelcoP, XorInner, 0},
};

void PrintTo(const Driver& d, std::ostream* os) { *os << d.sName; }

class PelcoFamily : public testing::TestWithParam<Driver> {};

TEST_P(PelcoFamily, RepeatSuppression) {
    const Driver& d = GetParam();
    const struct { std::vector<uint32_t> cmds; size_t nFrames; } kSequences[] = {
        {{PTZCmd_Left, PTZCmd_Left}, 1},
        {{PTZCmd_Left, PTZCmd_LeftStop, PTZCmd_Left}, 3},
        {{PTZCmd_Left, PTZCmd_Right, PTZCmd_Left}, 3},
        {{PTZCmd_ZoomTele, PTZCmd_ZoomTele, PTZCmd_ZoomTeleStop, PTZCmd_ZoomTeleStop}, 3},
        {{PTZCmd_PresetGo, PTZCmd_PresetGo, PTZCmd_PresetGo}, 3},
        {{7, 7, PTZCmd_Up, PTZCmd_Up}, 1},
    };
    for (const auto& s : kSequences) {
        DriverHarness h(d.build, d.status, 1);
        size_t n = 0;
        for (uint32_t c : s.cmds) n += h.Send(c, 2).size();
        EXPECT_EQ(n, s.nFrames) << "sequence starting " << s.cmds[0];
    }
}

// Level 0: speed 4 at once, 24 after 0.3 s and 56 after 0.8 s, both from the move's own frame;
// then nothing until the stop, after which the poller disarms. Also across the counter's wrap.
TEST_P(PelcoFamily, SpeedRamp) {
    const Driver& d = GetParam();
    const struct { uint32_t nCmd; bool bPan, bTilt; } kMoves[] = {
        {PTZCmd_UpRight, true, true}, {PTZCmd_Left, true, false}, {PTZCmd_Down, false, true}};
    for (uint32_t tStart : {1000u, 0xFFFFFFE0u}) {
        for (const auto& m : kMoves) {
            SCOPED_TRACE(testing::Message() << "move " << m.nCmd << " start " << tStart);
            DriverHarness h(d.build, d.status, 1, tStart);
            std::vector<Bytes> f = h.Send(m.nCmd, 0);
            ASSERT_EQ(f.size(), 1u);
            EXPECT_EQ(h.State().bStatusActive, 1);
            std::vector<Bytes> steps[3] = {f, {}, {}};
            EXPECT_TRUE(h.RunMs(290).empty());
            steps[1] = h.RunMs(10);
            EXPECT_TRUE(h.RunMs(490).empty());
            steps[2] = h.RunMs(10);
            const uint8_t kSpeeds[3] = {4, 24, 56};
            for (int i = 0; i < 3; ++i) {
                ASSERT_EQ(steps[i].size(), 1u) << "step " << i;
                const Bytes& b = steps[i][0];
                EXPECT_EQ(b[kPan], m.bPan ? kSpeeds[i] : 0) << "step " << i;
                EXPECT_EQ(b[kTilt], m.bTilt ? kSpeeds[i] : 0) << "step " << i;
                EXPECT_EQ(b.back(), d.check(b)) << "step " << i;
                EXPECT_TRUE(std::equal(b.begin(), b.begin() + kPan, f[0].begin())) << "step " << i;
            }
            EXPECT_TRUE(h.RunMs(3000).empty());
            EXPECT_EQ(h.State().bStatusActive, 1);
            EXPECT_EQ(h.Send(m.nCmd + 32).size(), 1u);
            EXPECT_TRUE(h.RunMs(10).empty());
            EXPECT_EQ(h.State().bStatusActive, 0);
        }
    }
}

TEST_P(PelcoFamily, GivenSpeedArmsNoRamp) {
    const Driver& d = GetParam();
    for (int32_t level = 1; level <= 8; ++level) {
        DriverHarness h(d.build, d.status, 1);
        h.Send(PTZCmd_DownLeft, level);
        EXPECT_EQ(h.State().bStatusActive, 0) << level;
        EXPECT_TRUE(h.RunMs(1000).empty()) << level;
    }
}

// Speed levels from the mailbox are not range-checked: any level still gives exactly one frame.
TEST_P(PelcoFamily, WildSpeedLevels) {
    const Driver& d = GetParam();
    for (int32_t level : {9, 1000, INT32_MAX, INT32_MIN, -1}) {
        DriverHarness h(d.build, d.status, 1);
        const std::vector<Bytes> f = h.Send(PTZCmd_UpLeft, level);
        ASSERT_EQ(f.size(), 1u) << level;
        EXPECT_EQ(f[0][kPan], f[0][kTilt]) << level;
        EXPECT_EQ(f[0].back(), d.check(f[0])) << level;
    }
}

// A tour of 3 presets visits 1, 2, 3, 1 every 3 s with the driver's own go-to-preset frames,
// until its stop or until another command takes over.
TEST_P(PelcoFamily, TourCycles) {
    const Driver& d = GetParam();
    for (bool bStopByTourStop : {true, false}) {
        DriverHarness h(d.build, d.status, 4);
        EXPECT_TRUE(h.Send(PTZCmd_PresetTour, 3).empty());
        std::vector<std::pair<uint32_t, Bytes>> seen;
        for (uint32_t ms = 10; ms <= 12000; ms += 10) {
            fakeclock::AdvanceMs(10);
            for (Bytes& b : h.Poll()) seen.emplace_back(ms, b);
        }
        ASSERT_EQ(seen.size(), 4u);
        const int kPresets[4] = {1, 2, 3, 1};
        for (size_t i = 0; i < 4; ++i) {
            EXPECT_EQ(seen[i].first, 3000u * (i + 1)) << i;
            DriverHarness fresh(d.build, d.status, 4);
            EXPECT_EQ(std::vector<Bytes>{seen[i].second}, fresh.Send(PTZCmd_PresetGo, kPresets[i]))
                << i;
        }
        if (bStopByTourStop) {
            EXPECT_TRUE(h.Send(PTZCmd_PresetTourStop).empty());
        } else {
            EXPECT_EQ(h.Send(PTZCmd_ZoomWide).size(), 1u);
        }
        EXPECT_TRUE(h.RunMs(10000).empty());
        EXPECT_EQ(h.State().bStatusActive, 0);
    }
}

// A tour of no presets never sends or faults; Pelco-P keeps polling, the others disarm. The
// extended driver refuses the count, but the refused start still becomes the previous command
// while the poller is armed by the ramp.
TEST_P(PelcoFamily, EmptyTour) {
    const Driver& d = GetParam();
    DriverHarness h(d.build, d.status, 1);
    h.Send(PTZCmd_Left, 0);
    EXPECT_TRUE(h.Send(PTZCmd_PresetTour, 0).empty());
    EXPECT_EQ(h.State().bStatusActive, 1);
    EXPECT_TRUE(h.RunMs(10000).empty());
    EXPECT_EQ(h.State().bStatusActive, d.bArmedAfterEmptyTour);
}

INSTANTIATE_TEST_SUITE_P(Drivers, PelcoFamily, testing::ValuesIn(kDrivers),
                         [](const testing::TestParamInfo<Driver>& i) { return i.param.sName; });

}  // namespace
