#include <gtest/gtest.h>

#include "ptz/drivers/pm_drivers.h"
#include "tests/unit/drivers/driver_harness.h"

namespace {

DriverHarness Samsung(uint32_t address = 1) {
    return DriverHarness(BuildCmd_SCC641, nullptr, address);
}

// Group, command and data bytes of each code (address 0x12; check computed here) and whether the
// code stays in force. Every stop, those of the unsupported keys 4-10 included, is the same frame.
TEST(Scc641, FrameOfEachSupportedCode) {
    struct Case { uint32_t cmd; int32_t p1; Bytes body; bool keeps; };
    const Bytes stop = {0x01, 0, 0, 0, 0};
    std::vector<Case> cases = {
        {PTZCmd_AutoPan, 0, {0x03, 0x1A, 0x01, 0xFF, 0xFF}, true},
        {PTZCmd_FocusNear, 0, {0x01, 0x02, 0x00, 0, 0}, false},
        {PTZCmd_FocusFar, 0, {0x01, 0x01, 0x00, 0, 0}, false},
        {PTZCmd_ZoomWide, 0, {0x01, 0x40, 0x00, 0, 0}, true},
        {PTZCmd_ZoomTele, 0, {0x01, 0x20, 0x00, 0, 0}, true},
        {PTZCmd_UpLeft, 8, {0x01, 0x00, 0x05, 64, 64}, true},
        {PTZCmd_Up, 8, {0x01, 0x00, 0x04, 64, 64}, true},
        {PTZCmd_UpRight, 3, {0x01, 0x00, 0x06, 16, 16}, true},
        {PTZCmd_Left, 8, {0x01, 0x00, 0x01, 64, 64}, true},
        {PTZCmd_Right, 1, {0x01, 0x00, 0x02, 1, 1}, true},
        {PTZCmd_DownLeft, 8, {0x01, 0x00, 0x09, 64, 64}, true},
        {PTZCmd_Down, 6, {0x01, 0x00, 0x08, 40, 40}, true},
        {PTZCmd_DownRight, 8, {0x01, 0x00, 0x0A, 64, 64}, true},
        {PTZCmd_PresetSet, 7, {0x03, 0x50, 7, 0xFF, 0xFF}, false},
        {PTZCmd_IrisOpen, 0, {0x01, 0x08, 0x00, 0, 0}, false},
        {PTZCmd_IrisClose, 0, {0x01, 0x10, 0x00, 0, 0}, false},
        {PTZCmd_AutoPanOff, 0, {0x03, 0x1A, 0x00, 0xFF, 0xFF}, true},
        {PTZCmd_FocusAuto, 0, {0x01, 0x04, 0x00, 0, 0}, false},
        {PTZCmd_MenuOn, 0, {0x03, 0x17, 0x01, 0xFF, 0xFF}, true},
        {PTZCmd_MenuEnter, 0, {0x03, 0x18, 0xFF, 0xFF, 0xFF}, true},
        {PTZCmd_RunPattern, 12, {0x03, 0x1B, 12, 0x01, 0xFF}, false},
        {PTZCmd_PresetGo, 99, {0x03, 0x19, 99, 0xFF, 0xFF}, false},
        {PTZCmd_MenuOff, 0, {0x03, 0x17, 0x00, 0xFF, 0xFF}, true},
    };
    for (uint32_t cmd : {35, 36, 37, 38, 40, 41, 42, 43, 44, 45, 46, 47, 49, 50, 51, 52, 54, 96})
        cases.push_back({cmd, 0, stop, false});
    for (const Case& c : cases) {
        SCOPED_TRACE(c.cmd);
        Bytes want = {0xA0, 0xFE, 0x12};
        uint32_t sum = 0xFE + 0x12;
        for (uint8_t y : c.body) {
            want.push_back(y);
            sum += y;
        }
        want.push_back(static_cast<uint8_t>(0xFF - sum % 256));
        DriverHarness h = Samsung(0x12);
        EXPECT_EQ(h.Send(c.cmd, c.p1), std::vector<Bytes>{want});
        EXPECT_EQ(h.State().nLastCmd, c.keeps ? c.cmd : kPTZCmdNone);
    }
}

TEST(Scc641, LiteralFramesAndAddress) {
    EXPECT_EQ(Samsung(1).Send(PTZCmd_LeftStop),
              (std::vector<Bytes>{{0xA0, 0xFE, 0x01, 0x01, 0, 0, 0, 0, 0xFF}}));
    EXPECT_EQ(Samsung(1).Send(PTZCmd_PresetGo, 5),
              (std::vector<Bytes>{{0xA0, 0xFE, 0x01, 0x03, 0x19, 0x05, 0xFF, 0xFF, 0xE1}}));
    EXPECT_EQ(Samsung(0x1FF).Send(PTZCmd_PresetGo, 5).at(0)[2], 0xFF);   // low 8 bits travel
}

TEST(Scc641, SpeedLevelsAndRampArming) {
    const uint8_t speeds[] = {5, 1, 8, 16, 24, 32, 40, 48, 64};
    for (int32_t level = 0; level <= 8; ++level) {
        DriverHarness h = Samsung();
        const Bytes f = h.Send(PTZCmd_Left, level).at(0);
        EXPECT_EQ(f[6], speeds[level]) << level;
        EXPECT_EQ(f[7], speeds[level]) << level;
        // Armed as by every driver, although nothing ever polls this model.
        EXPECT_EQ(h.State().bStatusActive, level == 0 ? 1 : 0) << level;
    }
}

TEST(Scc641, UnsupportedCodesAndBadNumbers) {
    for (uint32_t cmd : {1, 2, 4, 7, 16, 29, 33, 48, 53, 59, 60, 61, 65, 81, 90, 97, 105, 300}) {
        DriverHarness h = Samsung();
        EXPECT_TRUE(h.Send(cmd).empty()) << cmd;
        EXPECT_EQ(h.State().nLastCmd, cmd);   // suppressed if repeated
    }
    for (uint32_t cmd : {PTZCmd_PresetSet, PTZCmd_PresetGo, PTZCmd_RunPattern, PTZCmd_PresetTour}) {
        for (int32_t n : {0, 100, -1, 256}) {
            DriverHarness h = Samsung();
            EXPECT_TRUE(h.Send(cmd, n).empty()) << cmd << " " << n;
            EXPECT_EQ(h.State().nLastCmd, kPTZCmdNone);
            EXPECT_EQ(h.State().bStatusActive, 0);
        }
    }
}

TEST(Scc641, TourIsStoredAndItsStopSendsAStop) {
    DriverHarness h = Samsung();
    EXPECT_TRUE(h.Send(PTZCmd_PresetTour, 4).empty());
    EXPECT_EQ(h.State().nTourCount, 4u);
    EXPECT_EQ(h.State().bStatusActive, 1);
    EXPECT_EQ(h.Send(PTZCmd_PresetTourStop).size(), 1u);
    EXPECT_EQ(h.State().bStatusActive, 0);
}

}  // namespace
