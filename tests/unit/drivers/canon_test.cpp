#include "tests/unit/drivers/driver_harness.h"

constexpr uint32_t kCanon = 16;

// One frame as hex text: FF, the two address digits, 00, the command, the argument characters, EF.
static std::string F(const char* sAddress, uint8_t yCmd, const std::string& sArgs) {
    std::string s;
    for (char c : "\xFF" + std::string(sAddress) + '\0' + static_cast<char>(yCmd) + sArgs + '\xEF')
        s += {' ', "0123456789ABCDEF"[(c >> 4) & 15], "0123456789ABCDEF"[c & 15]};
    return s;
}

// Pan speed, tilt speed, then a third frame.
static std::string Speeds(const char* sAddress, const char* sPan, const char* sTilt, uint8_t yCmd,
                          const std::string& sArgs) {
    return F(sAddress, 0x50, sPan) + " | " + F(sAddress, 0x51, sTilt) + " | " +
           F(sAddress, yCmd, sArgs);
}

TEST(CanonVcc4, GoldenFrames) {
    ExpectGolden(kCanon, {
        // literal frames: address 0 with level 0 (speed 8); of 147 only two digits travel
        {PTZCmd_Up, 0, 0, "FF 30 30 00 51 30 30 38 EF | FF 30 30 00 60 30 31 EF", PTZCmd_Up},
        {PTZCmd_FocusAuto, 0, 147, "FF 34 37 00 A1 30 EF", kNone},
        // moves: speed frames of the moving axes, then the direction; only zoom, moves and iris
        // steps keep their code
        {PTZCmd_UpLeft, 8, 12, Speeds("12", "320", "320", 0x60, "21"), PTZCmd_UpLeft},
        {PTZCmd_Left, 8, 12, F("12", 0x50, "320") + " | " + F("12", 0x60, "20"), PTZCmd_Left},
        {PTZCmd_Right, 2, 12, F("12", 0x50, "06B") + " | " + F("12", 0x60, "10"), PTZCmd_Right},
        {PTZCmd_Down, 3, 12, F("12", 0x51, "0CE") + " | " + F("12", 0x60, "02"), PTZCmd_Down},
        {PTZCmd_DownStop, 0, 12, F("12", 0x60, "00"), kNone},
        {PTZCmd_ZoomTele, 0, 12, F("12", 0xA2, "2"), PTZCmd_ZoomTele},
        {PTZCmd_ZoomTeleStop, 0, 12, F("12", 0xA2, "0"), kNone},
        {PTZCmd_FocusNear, 0, 12, F("12", 0xA1, "2"), kNone},
        {PTZCmd_FocusNearStop, 0, 12, F("12", 0xA1, "1"), kNone},
        {PTZCmd_IrisAuto, 0, 12, F("12", 0xA5, "2"), kNone},
        {PTZCmd_IrisAutoOff, 0, 12, F("12", 0xA5, "3"), kNone},
        // camera power (0x90) and the second auxiliary (0x8F, always to address 00)
        {PTZCmd_CameraOn, 0, 12, F("12", 0x90, "0") + " | " + F("00", 0x8F, "1"), kNone},
        {PTZCmd_CameraOff, 0, 12, F("12", 0x90, "1") + " | " + F("00", 0x8F, "0"), kNone},
        // presets 1-9
        {PTZCmd_PresetSet, 9, 12, F("12", 0x89, "9"), kNone},
        {PTZCmd_PresetGo, 1, 12, Speeds("12", "320", "258", 0x8A, "1"), kNone},
        {PTZCmd_PresetSet, 0, 12, "", kNone},
        {PTZCmd_PresetGo, 10, 12, "", kNone},
        {PTZCmd_PresetTour, 10, 12, "", kNone},
        // unsupported: nothing, and unlike the other drivers the code is not kept
        {7, 0, 12, "", kNone},
    });
}

// The iris level (58 at start) steps by one inside 2-16, so the first open sends 58 unchanged;
// automatic iris on or off sets 10; a held key steps once.
TEST(CanonVcc4, IrisLevelSteps) {
    DriverHarness h(kCanon, 1);
    auto iris = [&](uint32_t cmd) {
        h.Send(PTZCmd_FocusAuto);   // another code in between, so the step is no repeat
        const Frames f = h.Send(cmd);
        return f.size() == 1 ? std::string(f[0].begin() + 5, f[0].end() - 1) : std::string();
    };
    EXPECT_EQ(iris(PTZCmd_IrisOpen), "93A");
    EXPECT_EQ(iris(PTZCmd_IrisClose), "939");
    iris(PTZCmd_IrisAuto);
    for (const char* want : {"90B", "90C", "90D", "90E", "90F", "910", "910"})
        EXPECT_EQ(iris(PTZCmd_IrisOpen), want);
    iris(PTZCmd_IrisAutoOff);
    for (int i = 0; i < 8; ++i) iris(PTZCmd_IrisClose);
    EXPECT_EQ(iris(PTZCmd_IrisClose), "902");
    EXPECT_EQ(h.Send(PTZCmd_IrisOpen), Hex(F("01", 0xA5, "903")));
    EXPECT_TRUE(h.Send(PTZCmd_IrisOpen).empty());
}

// A level-0 move sends the middle speeds after 0.3 s and the top speeds after 0.8 s, speed frames
// only; a late poll still takes the middle step first.
TEST(CanonVcc4, MoveRamp) {
    const Frames middle = Hex(F("05", 0x50, "0FA") + " | " + F("05", 0x51, "096"));
    const Frames top = Hex(F("05", 0x50, "320") + " | " + F("05", 0x51, "258"));
    DriverHarness late(kCanon, 5);
    late.Send(PTZCmd_UpRight, 0);
    fakeclock::AdvanceMs(2000);
    EXPECT_EQ(late.Poll(), middle);
    EXPECT_EQ(late.Poll(), top);
    DriverHarness h(kCanon, 5);
    h.Send(PTZCmd_UpRight, 0);
    EXPECT_TRUE(h.RunMs(290).empty());
    EXPECT_EQ(h.RunMs(10), middle);
    EXPECT_TRUE(h.RunMs(490).empty());
    EXPECT_EQ(h.RunMs(2010), top);
}

// Zoom arms whatever its level and speeds up once: wide after 800 ms, tele after 800 raw ticks.
TEST(CanonVcc4, ZoomStepsOnce) {
    DriverHarness h(kCanon, 3);
    h.Send(PTZCmd_ZoomWide, 5);
    EXPECT_TRUE(h.RunMs(790).empty());
    EXPECT_EQ(h.RunMs(10), Hex(F("03", 0xA2, "3")));
    EXPECT_TRUE(h.RunMs(10000).empty());
    h.Send(PTZCmd_ZoomTele, 0);
    fakeclock::AdvanceTicks(799);   // 8 s at 100 Hz, not 800 ms
    EXPECT_TRUE(h.Poll().empty());
    fakeclock::AdvanceTicks(1);
    EXPECT_EQ(h.Poll(), Hex(F("03", 0xA2, "4")));
    EXPECT_TRUE(h.RunMs(10000).empty());
    h.Send(PTZCmd_ZoomTeleStop);
    EXPECT_EQ(h.State().bStatusActive, 0);
}

// A tour goes to preset 1 at its start (speeds 500/400), then every 3 s to the next preset at the
// go-to speeds, cycling; its stop or any other command ends it.
TEST(CanonVcc4, Tour) {
    const struct { int32_t count; std::string order; uint32_t end; } kCases[] = {
        {3, "23123", PTZCmd_PresetTourStop}, {1, "111", PTZCmd_CameraOn}};
    for (const auto& c : kCases) {
        DriverHarness h(kCanon, 2);
        EXPECT_EQ(h.Send(PTZCmd_PresetTour, c.count), Hex(Speeds("02", "1F4", "190", 0x8A, "1")));
        for (char preset : c.order) {
            EXPECT_TRUE(h.RunMs(2990).empty());
            EXPECT_EQ(h.RunMs(10), Hex(Speeds("02", "320", "258", 0x8A, std::string(1, preset))));
        }
        h.Send(c.end);
        EXPECT_TRUE(h.RunMs(5000).empty());
        EXPECT_EQ(h.State().bStatusActive, 0);
    }
}

// A tour of 20 presets started while the channel was a Pelco-D camera goes on, once the channel
// becomes a Canon, through the Canon's own presets 1-9 only (found by the drivers' fuzz target:
// a preset character past '9').
TEST(CanonVcc4, TourInheritedFromAModelWithMorePresets) {
    DriverHarness h(14, 2);
    h.Send(PTZCmd_PresetTour, 20);
    h.RunMs(3000 * 4);
    ptShare->atPtz[0].nPtzModel = kCanon;
    std::string order;
    for (const Bytes& f : h.RunMs(3000 * 10))
        if (f.size() == 7 && f[4] == 0x8A) order += static_cast<char>(f[5]);
    EXPECT_EQ(order, "5678912345");
}
