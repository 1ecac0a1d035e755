#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "ptz/drivers/pm_drivers.h"
#include "tests/unit/drivers/driver_harness.h"

namespace {

using Frames = std::vector<Bytes>;

// One frame to the two-digit address: FF, digits, 00, command, argument characters, EF.
Bytes F(const char* address, uint8_t cmd, const std::string& args) {
    Bytes b = {0xFF, static_cast<uint8_t>(address[0]), static_cast<uint8_t>(address[1]), 0x00, cmd};
    for (char c : args) b.push_back(static_cast<uint8_t>(c));
    b.push_back(0xEF);
    return b;
}

// Pan speed, tilt speed and direction of a diagonal to address 12.
Frames Diagonal(const char* speed, const char* dir) {
    return {F("12", 0x50, speed), F("12", 0x51, speed), F("12", 0x60, dir)};
}

DriverHarness Canon(uint32_t address = 12) {
    return DriverHarness(BuildCmd_CanonVCC4, CheckStatus_CanonVCC4, address);
}

TEST(CanonVcc4, FramesOfEachSupportedCode) {
    struct Case { uint32_t cmd; int32_t p1; Frames frames; bool keeps; };
    std::vector<Case> cases = {
        {PTZCmd_FocusNear, 0, {F("12", 0xA1, "2")}, false},
        {PTZCmd_FocusFar, 0, {F("12", 0xA1, "3")}, false},
        {PTZCmd_ZoomWide, 0, {F("12", 0xA2, "1")}, true},
        {PTZCmd_ZoomTele, 0, {F("12", 0xA2, "2")}, true},
        {PTZCmd_UpLeft, 8, Diagonal("320", "21"), true},
        {PTZCmd_Up, 8, {F("12", 0x51, "320"), F("12", 0x60, "01")}, true},
        {PTZCmd_UpRight, 8, Diagonal("320", "11"), true},
        {PTZCmd_Left, 8, {F("12", 0x50, "320"), F("12", 0x60, "20")}, true},
        {PTZCmd_CameraOn, 0, {F("12", 0x90, "0"), F("00", 0x8F, "1")}, false},
        {PTZCmd_Right, 2, {F("12", 0x50, "06B"), F("12", 0x60, "10")}, true},
        {PTZCmd_DownLeft, 8, Diagonal("320", "22"), true},
        {PTZCmd_Down, 3, {F("12", 0x51, "0CE"), F("12", 0x60, "02")}, true},
        {PTZCmd_DownRight, 8, Diagonal("320", "12"), true},
        {PTZCmd_PresetSet, 4, {F("12", 0x89, "4")}, false},
        {PTZCmd_IrisAuto, 0, {F("12", 0xA5, "2")}, false},
        {PTZCmd_FocusNearStop, 0, {F("12", 0xA1, "1")}, false},
        {PTZCmd_FocusFarStop, 0, {F("12", 0xA1, "1")}, false},
        {PTZCmd_ZoomWideStop, 0, {F("12", 0xA2, "0")}, false},
        {PTZCmd_ZoomTeleStop, 0, {F("12", 0xA2, "0")}, false},
        {PTZCmd_CameraOff, 0, {F("12", 0x90, "1"), F("00", 0x8F, "0")}, false},
        {PTZCmd_IrisOpenStop, 0, {F("12", 0xA5, "3")}, false},
        {PTZCmd_IrisCloseStop, 0, {F("12", 0xA5, "3")}, false},
        {PTZCmd_IrisAutoOff, 0, {F("12", 0xA5, "3")}, false},
        {PTZCmd_FocusAuto, 0, {F("12", 0xA1, "0")}, false},
        {PTZCmd_AuxOn1, 0, {F("12", 0x90, "0")}, false},
        {PTZCmd_AuxOn2, 0, {F("00", 0x8F, "1")}, false},
        {PTZCmd_PresetGo, 3,
         {F("12", 0x50, "320"), F("12", 0x51, "258"), F("12", 0x8A, "3")}, false},
        {PTZCmd_FocusAutoOff, 0, {F("12", 0xA1, "1")}, false},
        {PTZCmd_AuxOff1, 0, {F("12", 0x90, "1")}, false},
        {PTZCmd_AuxOff2, 0, {F("00", 0x8F, "0")}, false},
    };
    for (uint32_t cmd : {44, 45, 46, 47, 49, 50, 51, 52})
        cases.push_back({cmd, 0, {F("12", 0x60, "00")}, false});
    for (const Case& c : cases) {
        SCOPED_TRACE(c.cmd);
        DriverHarness h = Canon(12);
        EXPECT_EQ(h.Send(c.cmd, c.p1), c.frames);
        EXPECT_EQ(h.Count(), static_cast<int32_t>(c.frames.size()));
        EXPECT_EQ(h.State().nLastCmd, c.keeps ? c.cmd : kPTZCmdNone);
    }
}

TEST(CanonVcc4, LiteralFrames) {
    DriverHarness h = Canon(0);
    EXPECT_EQ(h.Send(PTZCmd_Up, 0),
              (Frames{{0xFF, 0x30, 0x30, 0x00, 0x51, 0x30, 0x30, 0x38, 0xEF},
                      {0xFF, 0x30, 0x30, 0x00, 0x60, 0x30, 0x31, 0xEF}}));
    EXPECT_EQ(h.State().bStatusActive, 1);
    EXPECT_EQ(Canon(12).Send(PTZCmd_PresetGo, 3).at(2),
              (Bytes{0xFF, 0x31, 0x32, 0x00, 0x8A, 0x33, 0xEF}));
    EXPECT_EQ(Canon(147).Send(PTZCmd_FocusAuto).at(0)[1], '4');  // only two digits travel
}

// Each frame clears its whole slot: nothing of an earlier frame is left behind the terminator.
TEST(CanonVcc4, FrameClearsItsSlot) {
    PTZPacket packets[kPTZPacketsPerCall];
    std::memset(packets, 0xAA, sizeof packets);
    PTZChannelState state{};
    state.nCmd = PTZCmd_CameraOn;
    state.nLastCmd = kPTZCmdNone;
    ASSERT_EQ(BuildCmd_CanonVCC4(12, packets, &state, 0), 2);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(packets[i].nLength, 7u);
        EXPECT_EQ(packets[i].nModel, 0u);
        for (size_t b = 7; b < sizeof packets[i].abData; ++b)
            EXPECT_EQ(packets[i].abData[b], 0) << b;
    }
}

TEST(CanonVcc4, MoveSpeedPerLevel) {
    const char* speeds[] = {"008", "008", "06B", "0CE", "131", "194", "1F7", "25A", "320"};
    for (int32_t level = 0; level <= 8; ++level) {
        DriverHarness h = Canon(1);
        EXPECT_EQ(h.Send(PTZCmd_Right, level).at(0), F("01", 0x50, speeds[level])) << level;
        EXPECT_EQ(h.State().bStatusActive, level == 0 ? 1 : 0) << level;
    }
}

// Unsupported codes never stick in nLastCmd: a repeat is judged afresh.
TEST(CanonVcc4, UnsupportedAndOutOfRangeSendNothing) {
    struct Case { uint32_t cmd; int32_t p1; };
    const Case cases[] = {{0, 0}, {1, 0}, {2, 0}, {4, 0}, {7, 0}, {32, 0}, {53, 0}, {72, 0},
                          {74, 3}, {81, 0}, {90, 0}, {99, 0}, {113, 0}, {500, 0},
                          {PTZCmd_PresetSet, 0}, {PTZCmd_PresetSet, 10}, {PTZCmd_PresetGo, 10},
                          {PTZCmd_PresetGo, -1}, {PTZCmd_PresetTour, 0}, {PTZCmd_PresetTour, 10}};
    for (const Case& c : cases) {
        DriverHarness h = Canon();
        EXPECT_TRUE(h.Send(c.cmd, c.p1).empty()) << c.cmd << " " << c.p1;
        EXPECT_EQ(h.State().nLastCmd, kPTZCmdNone) << c.cmd;
        EXPECT_EQ(h.State().bStatusActive, 0) << c.cmd;
    }
}

TEST(CanonVcc4, IrisLevelSteps) {
    DriverHarness h = Canon(1);
    auto iris = [&](uint32_t cmd) {
        h.Send(PTZCmd_FocusAuto);   // another code in between, so the step is not a repeat
        const Frames f = h.Send(cmd);
        return f.size() == 1 ? std::string(f[0].begin() + 5, f[0].end() - 1) : std::string();
    };
    EXPECT_EQ(iris(PTZCmd_IrisOpen), "93A");    // 58 is not below 16: sent unchanged
    EXPECT_EQ(h.State().nIrisLevel, 58u);
    EXPECT_EQ(iris(PTZCmd_IrisClose), "939");   // 57
    EXPECT_EQ(h.State().nIrisLevel, 57u);
    iris(PTZCmd_IrisAuto);
    EXPECT_EQ(h.State().nIrisLevel, 10u);
    const char* up[] = {"90B", "90C", "90D", "90E", "90F", "910", "910"};
    for (const char* want : up) EXPECT_EQ(iris(PTZCmd_IrisOpen), want);
    iris(PTZCmd_IrisAutoOff);
    EXPECT_EQ(h.State().nIrisLevel, 10u);
    for (int i = 0; i < 8; ++i) iris(PTZCmd_IrisClose);
    EXPECT_EQ(iris(PTZCmd_IrisClose), "902");
    EXPECT_EQ(h.State().nIrisLevel, 2u);
    // A held key steps once: the repeat is suppressed.
    EXPECT_EQ(h.Send(PTZCmd_IrisOpen).size(), 1u);
    EXPECT_TRUE(h.Send(PTZCmd_IrisOpen).empty());
    EXPECT_EQ(h.State().nIrisLevel, 3u);
}

// Level-0 moves send the middle speeds after 300 ms and the top speeds after 800 ms, speed frames
// only; a late poll still takes the middle step first.
TEST(CanonVcc4, MoveRamp) {
    struct Case { uint32_t cmd; Frames middle, top; };
    const Case cases[] = {
        {PTZCmd_Left, {F("05", 0x50, "0FA")}, {F("05", 0x50, "320")}},
        {PTZCmd_Down, {F("05", 0x51, "096")}, {F("05", 0x51, "258")}},
        {PTZCmd_UpRight, {F("05", 0x50, "0FA"), F("05", 0x51, "096")},
         {F("05", 0x50, "320"), F("05", 0x51, "258")}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.cmd);
        DriverHarness h = Canon(5);
        h.Send(c.cmd, 0);
        EXPECT_TRUE(h.RunMs(290).empty());
        EXPECT_EQ(h.RunMs(10), c.middle);
        EXPECT_TRUE(h.RunMs(490).empty());
        EXPECT_EQ(h.RunMs(10), c.top);
        EXPECT_TRUE(h.RunMs(2000).empty());
        h.Send(c.cmd + 32);   // its stop disarms at once
        EXPECT_EQ(h.State().bStatusActive, 0);

        DriverHarness late = Canon(5);
        late.Send(c.cmd, 0);
        fakeclock::AdvanceMs(2000);
        EXPECT_EQ(late.Poll(), c.middle);
        EXPECT_EQ(late.Poll(), c.top);
    }
}

// Zoom arms whatever its level; wide speeds up after 800 ms, tele only after 800 raw ticks.
TEST(CanonVcc4, ZoomStepsOnce) {
    DriverHarness h = Canon(3);
    h.Send(PTZCmd_ZoomWide, 5);
    ASSERT_EQ(h.State().bStatusActive, 1);
    EXPECT_TRUE(h.RunMs(790).empty());
    EXPECT_EQ(h.RunMs(10), Frames{F("03", 0xA2, "3")});
    EXPECT_TRUE(h.RunMs(10000).empty());
    EXPECT_EQ(h.State().bStatusActive, 1);

    h.Send(PTZCmd_ZoomTele, 0);
    EXPECT_TRUE(h.RunMs(800).empty());          // 80 ticks: far from due
    fakeclock::AdvanceTicks(800 - 80 - 1);
    EXPECT_TRUE(h.Poll().empty());
    fakeclock::AdvanceTicks(1);
    EXPECT_EQ(h.Poll(), Frames{F("03", 0xA2, "4")});
    EXPECT_TRUE(h.RunMs(10000).empty());

    EXPECT_EQ(h.Send(PTZCmd_ZoomTeleStop), Frames{F("03", 0xA2, "0")});
    EXPECT_EQ(h.State().bStatusActive, 0);
}

TEST(CanonVcc4, TourStartsAtOneAndCycles) {
    struct Case { int32_t count; std::string order; };
    for (const Case& c : {Case{3, "23123"}, Case{1, "111"}}) {
        SCOPED_TRACE(c.count);
        DriverHarness h = Canon(2);
        EXPECT_EQ(h.Send(PTZCmd_PresetTour, c.count),
                  (Frames{F("02", 0x50, "1F4"), F("02", 0x51, "190"), F("02", 0x8A, "1")}));
        EXPECT_EQ(h.State().bStatusActive, 1);
        std::string order;
        for (size_t i = 0; i < c.order.size(); ++i) {
            EXPECT_TRUE(h.RunMs(2990).empty());
            const Frames f = h.RunMs(10);
            ASSERT_EQ(f.size(), 3u);
            EXPECT_EQ(f[0], F("02", 0x50, "320"));
            EXPECT_EQ(f[1], F("02", 0x51, "258"));
            order += static_cast<char>(f[2][5]);
        }
        EXPECT_EQ(order, c.order);
        EXPECT_TRUE(h.Send(PTZCmd_PresetTourStop).empty());
        EXPECT_EQ(h.State().bStatusActive, 0);
    }
}

TEST(CanonVcc4, OtherCommandEndsTourAndRamp) {
    for (uint32_t start : {PTZCmd_PresetTour, PTZCmd_Up}) {
        DriverHarness h = Canon(2);
        h.Send(start, start == PTZCmd_PresetTour ? 4 : 0);
        h.Send(PTZCmd_CameraOn);
        EXPECT_TRUE(h.RunMs(5000).empty()) << start;
        EXPECT_EQ(h.State().bStatusActive, 0) << start;
    }
}

}  // namespace
