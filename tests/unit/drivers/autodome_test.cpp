#include <gtest/gtest.h>

#include "ptz/drivers/pm_drivers.h"
#include "tests/unit/drivers/driver_harness.h"

namespace {

// Lens frame (bytes 4-6 given) or preset frame (bytes 4-5 given) for address 1, check added here.
Bytes Frame(const Bytes& body) {
    const bool lens = body.size() == 3;
    Bytes b = {static_cast<uint8_t>(lens ? 0x87 : 0x86), 0, 0, static_cast<uint8_t>(lens ? 5 : 7)};
    for (uint8_t y : body) b.push_back(y);
    uint32_t sum = 0;
    for (uint8_t y : b) sum += y;
    b.push_back(sum & 0x7F);
    return b;
}

DriverHarness Bosch(uint32_t address = 1) {
    return DriverHarness(BuildCmd_AutoDome, CheckStatus_AutoDome, address);
}

TEST(AutoDome, FrameOfEachSupportedCode) {
    struct Case { uint32_t cmd; int32_t p1; Bytes body; bool keeps; };
    const Case cases[] = {
        {PTZCmd_FocusNear, 0, {0x00, 0x00, 0x40}, true},
        {PTZCmd_FocusFar, 0, {0x00, 0x01, 0x00}, true},
        {PTZCmd_ZoomWide, 8, {0x70, 0x00, 0x10}, true},
        {PTZCmd_ZoomTele, 5, {0x30, 0x00, 0x20}, true},
        {PTZCmd_UpLeft, 8, {0x0F, 0x78, 0x0A}, true},
        {PTZCmd_Up, 8, {0x0F, 0x00, 0x08}, true},
        {PTZCmd_UpRight, 4, {0x05, 0x28, 0x09}, true},
        {PTZCmd_Left, 8, {0x00, 0x78, 0x02}, true},
        {PTZCmd_Right, 3, {0x00, 0x18, 0x01}, true},
        {PTZCmd_DownLeft, 8, {0x0F, 0x78, 0x06}, true},
        {PTZCmd_Down, 2, {0x01, 0x00, 0x04}, true},
        {PTZCmd_DownRight, 8, {0x0F, 0x78, 0x05}, true},
        {PTZCmd_IrisOpen, 0, {0x00, 0x04, 0x00}, true},   // a repeated iris step is suppressed
        {PTZCmd_IrisClose, 0, {0x00, 0x02, 0x00}, true},
        {PTZCmd_PresetSet, 5, {0x04, 0x05}, false},
        {PTZCmd_PresetGo, 63, {0x05, 0x3F}, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.cmd);
        DriverHarness h = Bosch();
        EXPECT_EQ(h.Send(c.cmd, c.p1), std::vector<Bytes>{Frame(c.body)});
        EXPECT_EQ(h.State().nLastCmd, c.keeps ? c.cmd : kPTZCmdNone);
    }
}

TEST(AutoDome, LiteralFrameAndSplitAddress) {
    EXPECT_EQ(Bosch(1).Send(PTZCmd_Left, 8),
              (std::vector<Bytes>{{0x87, 0x00, 0x00, 0x05, 0x00, 0x78, 0x02, 0x06}}));
    struct Case { uint32_t address; uint8_t high, low; };
    for (const Case& c : {Case{1, 0, 0}, Case{128, 0x00, 0x7F}, Case{129, 0x01, 0x00},
                          Case{16384, 0x7F, 0x7F}, Case{16385, 0x00, 0x00}}) {
        const Bytes f = Bosch(c.address).Send(PTZCmd_PresetGo, 1).at(0);
        EXPECT_EQ(f[1], c.high) << c.address;
        EXPECT_EQ(f[2], c.low) << c.address;
    }
}

TEST(AutoDome, SpeedScales) {
    const uint8_t pan[] = {0, 0, 1, 3, 5, 7, 9, 11, 15};
    const uint8_t zoom[] = {0, 0, 0, 1, 2, 3, 4, 5, 7};
    for (int32_t level = 0; level <= 8; ++level) {
        EXPECT_EQ(Bosch().Send(PTZCmd_Right, level).at(0)[5], pan[level] << 3) << level;
        EXPECT_EQ(Bosch().Send(PTZCmd_Down, level).at(0)[4], pan[level]) << level;
        EXPECT_EQ(Bosch().Send(PTZCmd_ZoomWide, level).at(0)[4], zoom[level] << 4) << level;
    }
}

// Only the start byte may have bit 7 set, whatever the code, level or address.
TEST(AutoDome, DataBytesStaySevenBit) {
    for (uint32_t cmd = 0; cmd < 128; ++cmd) {
        for (int32_t level : {0, 1, 8, 9, 10, 17, 63}) {
            for (const Bytes& f : Bosch(0x3FFF).Send(cmd, level))
                for (size_t i = 1; i < f.size(); ++i) ASSERT_LT(f[i], 0x80) << cmd << " " << level;
        }
    }
}

TEST(AutoDome, StopsAndWhichOnesDisarm) {
    for (uint32_t cmd : {35, 37, 59, 60, 41, 43, 44, 45, 46, 47, 49, 50, 51, 52}) {
        const bool disarms = cmd != 35 && cmd != 37 && cmd != 59 && cmd != 60;
        DriverHarness h = Bosch();
        h.Send(PTZCmd_ZoomTele, 0);
        EXPECT_EQ(h.Send(cmd), std::vector<Bytes>{Frame({0, 0, 0})}) << cmd;
        EXPECT_EQ(h.State().nLastCmd, kPTZCmdNone);
        EXPECT_EQ(h.State().bStatusActive, disarms ? 0 : 1) << cmd;
        EXPECT_TRUE(h.RunMs(1000).empty()) << cmd;   // the poller finds no zoom and stops
        EXPECT_EQ(h.State().bStatusActive, 0);
    }
}

TEST(AutoDome, UnsupportedCodesAndBadNumbers) {
    for (uint32_t cmd : {0, 1, 2, 4, 16, 29, 32, 48, 53, 61, 64, 65, 72, 74, 81, 90, 96, 113}) {
        DriverHarness h = Bosch();
        EXPECT_TRUE(h.Send(cmd).empty()) << cmd;
        EXPECT_EQ(h.State().nLastCmd, cmd);
    }
    for (uint32_t cmd : {PTZCmd_PresetSet, PTZCmd_PresetGo, PTZCmd_PresetTour}) {
        for (int32_t n : {0, 64, -1}) {
            DriverHarness h = Bosch();
            EXPECT_TRUE(h.Send(cmd, n).empty()) << cmd << " " << n;
            EXPECT_EQ(h.State().nLastCmd, kPTZCmdNone);
            EXPECT_EQ(h.State().bStatusActive, 0);
        }
    }
}

// A level-0 zoom or move starts at speed 0, steps up after 0.3 s and again after 0.8 s, then stays
// armed until another command takes over. A given level arms nothing.
TEST(AutoDome, RampsOfZoomAndMoves) {
    struct Case { uint32_t cmd; size_t byte; uint8_t middle, top; };
    const Case cases[] = {
        {PTZCmd_ZoomTele, 4, 0x70, 0x70},   // 15 on the 3-bit zoom field is 7 again
        {PTZCmd_ZoomWide, 4, 0x70, 0x70},
        {PTZCmd_Left, 5, 0x38, 0x78},
        {PTZCmd_Up, 4, 0x07, 0x0F},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.cmd);
        DriverHarness h = Bosch();
        const Bytes first = h.Send(c.cmd, 0).at(0);
        EXPECT_EQ(first[c.byte], 0);
        EXPECT_TRUE(h.RunMs(290).empty());
        const std::vector<Bytes> middle = h.RunMs(10);
        ASSERT_EQ(middle.size(), 1u);
        EXPECT_EQ(middle[0][c.byte], c.middle);
        EXPECT_EQ(middle[0][6], first[6]);
        EXPECT_TRUE(h.RunMs(490).empty());
        const std::vector<Bytes> top = h.RunMs(10);
        ASSERT_EQ(top.size(), 1u);
        EXPECT_EQ(top[0][c.byte], c.top);
        EXPECT_EQ(top[0][7], Frame(Bytes(top[0].begin() + 4, top[0].begin() + 7))[7]);
        EXPECT_TRUE(h.RunMs(3000).empty());
        EXPECT_EQ(h.State().bStatusActive, 1);
    }
    DriverHarness h = Bosch();
    h.Send(PTZCmd_ZoomTele, 3);
    EXPECT_EQ(h.State().bStatusActive, 0);
}

TEST(AutoDome, TourCyclesEveryThreeSeconds) {
    DriverHarness h = Bosch();
    EXPECT_TRUE(h.Send(PTZCmd_PresetTour, 3).empty());
    std::vector<uint8_t> presets;
    for (int step = 0; step < 4; ++step) {
        EXPECT_TRUE(h.RunMs(2990).empty());
        const std::vector<Bytes> f = h.RunMs(10);
        ASSERT_EQ(f.size(), 1u);
        EXPECT_EQ(f[0][4], 0x05);   // go
        presets.push_back(f[0][5]);
    }
    EXPECT_EQ(presets, (std::vector<uint8_t>{1, 2, 3, 1}));
    EXPECT_TRUE(h.Send(PTZCmd_PresetTourStop).empty());
    EXPECT_TRUE(h.RunMs(6000).empty());

    // A tour without presets, left behind by another model's driver, disarms instead of stepping.
    h.State().nPrevCmd = PTZCmd_PresetTour;
    h.State().nTourCount = 0;
    h.State().bStatusActive = 1;
    EXPECT_TRUE(h.RunMs(4000).empty());
    EXPECT_EQ(h.State().bStatusActive, 0);
}

}  // namespace
