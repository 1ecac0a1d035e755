// Keypad-1: framing, front-panel keys, camera buttons, joystick and lens buttons.
#include <random>

#include "tests/unit/keypad/keypad_test_util.h"

namespace {
using Bytes = std::vector<uint8_t>;
Bytes Sealed(Bytes b) {
    uint8_t s = 0;
    for (uint8_t x : b) s = static_cast<uint8_t>(s + x);
    b.push_back(s);
    return b;
}
Bytes Short(uint8_t cmd, uint8_t data, uint8_t id = 1) { return Sealed({0xAA, id, cmd, data}); }
Bytes Long(uint8_t ch, uint8_t button, uint8_t pan, uint8_t tilt) {
    return Sealed({0xAA, 1, 0x80, ch, button, pan, tilt});
}

TEST(Keypad1Framing, AcceptsResynchronisesOrDiscards) {
    Bytes badShort = Short(2, 0), badLong = Long(1, 128, 0, 0), notLong = Sealed({0xAA, 1, 0x81, 1, 128, 0, 0});
    badShort[4] ^= 1;
    badLong[7] ^= 1;
    Bytes two = Short(2, 0), waiting = Short(2, 0);
    two.insert(two.end(), {0xAA, 0x01, 0x02});             // two short frames read together
    waiting.insert(waiting.end(), {0xAA, 0x01});
    struct Row { const char* name; Bytes bytes; uint32_t id; uint8_t ret; int consumed; };
    const Row rows[] = {
        {"noise", {0x55, 0xAA, 1, 2, 0xAD}, 0, 0, 1},  {"lone sync", {0xAA}, 1, 0, 0},
        {"short, any id", Short(2, 0), 0, 5, 5},       {"short, our id", Short(2, 0), 1, 5, 5},
        {"short, other id", Short(2, 0), 2, 0, 5},     {"long, other id", Long(1, 128, 0, 0), 2, 0, 8},
        {"partial", {0xAA, 1, 2}, 0, 0, 0},            {"bad short check waits", badShort, 0, 0, 0},
        {"seven bytes wait", waiting, 0, 0, 0},        {"long", Long(16, 128, 0x20, 0x90), 1, 8, 8},
        {"bad long check", badLong, 0, 0, 8},          {"no long mark", notLong, 0, 0, 8},
        {"two short frames", two, 0, 0, 8},
    };
    for (const Row& r : rows) {
        tGlobal.nKeypadSystemId = r.id;
        int n = static_cast<int>(r.bytes.size());
        EXPECT_EQ(CheckCmd_Malvoren(r.bytes.data(), &n), r.ret) << r.name;
        EXPECT_EQ(n, r.consumed) << r.name;
    }
    tGlobal.nKeypadSystemId = 0;
}

std::vector<Msg> ToKeyProcess(uint32_t code, uint32_t p1, uint32_t p2) { return {{kKeyMailbox, code, p1, p2}}; }

TEST_F(KeypadTest, Keypad1ShortFramesGiveKeysAndMessages) {
    struct Row { uint8_t cmd, data; uint32_t menu; uint8_t ret; std::vector<Msg> sent; };
    std::vector<Row> rows = {
        {1, 9, 0, 0, Click(2)},    {2, 0, 0, 0, Click(31)},    {3, 0, 0, 0, Click(59)},  {4, 0, 0, 0, Click(58)},
        {5, 0, 0, 0, Click(33)},   {6, 0, 0, 0, Click(34)},    {7, 0, 0, 0, Click(13)},  {7, 1, 0, 0, {}},
        {8, 0, 0, 0, Click(23)},   {9, 0, 0, 0, {}},           {10, 0, 0, 0, Click(12)}, {11, 0, 0, 0, Click(95)},
        {12, 0, 0, 0, Click(17)},  {12, 99, 0, 0, Click(116)}, {12, 5, 0, 0, {}},        {26, 0, 0, 0, Click(24)},
        {32, 0, 0, 0, {}},         {32, 0, 0x2010, 0, Click(36)}, {41, 0, 0x10, 0, Click(51)},
        {50, 0, 0, 1, {}},         {50, 17, 0, 1, {}},         {53, 0, 0, 0, Click(4)},  {54, 0, 0, 0, Click(3)},
        {55, 0, 0, 0, Click(117)}, {56, 0, 0, 0, Click(5)},    {57, 0, 0, 0, Click(14)}, {143, 0, 0, 0, Click(14)},
        {58, 0, 0, 0, ToKeyProcess(0x20046, 0, 0)},  {58, 1, 0, 0, ToKeyProcess(0x20046, 1, 0)},
        {58, 16, 0, 0, ToKeyProcess(0x20046, 1, 15)}, {58, 17, 0, 0, {}}, {140, 0, 0, 0, ToKeyProcess(0x2002E, 0, 0)},
        {131, 0, 0, 0, Click(90)}, {132, 0, 0, 0, Click(91)},  {133, 0, 0, 0, Click(32)}, {0, 0, 0, 1, {}},
        {13, 0, 0, 1, {}},         {42, 0, 0, 1, {}},          {142, 0, 0, 1, {}},       {144, 0, 0, 1, {}},
    };
    const uint8_t layouts[] = {1, 4, 6, 7, 8, 9, 10, 12, 13, 16};
    for (uint32_t i = 0; i < 10; ++i) rows.push_back({12, layouts[i], 0, 0, ToKeyProcess(0x2002D, i, 0)});
    for (uint8_t n = 1; n <= 16; ++n) rows.push_back({50, n, 0, 0, Click(kNumberKeys[n - 1])});
    for (const Row& r : rows) {
        ptShare->dwKeypadMenuState = r.menu;
        EXPECT_EQ(ProcCmd_Malvoren(Short(r.cmd, r.data).data(), 5), r.ret) << int(r.cmd) << "/" << int(r.data);
        EXPECT_EQ(TakeMessages(), r.sent) << int(r.cmd) << "/" << int(r.data);
    }
    ptShare->dwKeyFlags = 0;
    ProcCmd_Malvoren(Short(140, 0).data(), 5);
    ProcCmd_Malvoren(Short(2, 0).data(), 5);
    EXPECT_TRUE(TakeMessages().empty());
}

TEST_F(KeypadTest, Keypad1CameraButtons) {
    ptShare->atPtz[4].nPtzModel = kJoystickModel;
    ptShare->nSwitchOutputs = 4;
    struct Row { uint8_t button, n; std::vector<Ptz> ptz; std::vector<Msg> sent; uint8_t ret = 0; };
    auto cmd = [](uint32_t c, uint32_t p) { return std::vector<Ptz>{{4, c, p, 0, 0}}; };
    const std::vector<Msg> pulse = {{4, 0x40024, 4, 1}, {4, 0x40024, 4, 0}};
    const Row rows[] = {
        {17, 9, cmd(80, 9), {}},   {18, 4, cmd(22, 4), {}},    {19, 2, cmd(74, 2), {}},   {20, 3, cmd(90, 3), {}},
        {23, 7, cmd(21, 7), {}},   {24, 0, cmd(16, 0), {}},    {24, 3, {}, ToKeyProcess(0x2001B, 2, 1)},
        {24, 103, cmd(67, 0), {}}, {24, 50, {}, {}},           {25, 0, cmd(48, 0), {}},
        {25, 4, {}, ToKeyProcess(0x2001B, 3, 0)},              {25, 106, cmd(102, 0), {}}, {25, 5, {}, {}},
        {32, 9, cmd(21, 0), {}},   {33, 9, cmd(80, 0), {}},    {34, 0, cmd(74, 0), {}},   {35, 0, cmd(90, 0), {}},
        {36, 0, cmd(72, 0), {}},   {37, 0, {}, pulse},         {38, 0, cmd(73, 0), {}},   {39, 0, {}, Click(14)},
        {44, 0, {}, Click(25)},    {40, 0, {}, {}},            {60, 0, {}, {}},           {21, 0, {}, {}, 1},
        {160, 0, {}, {}, 1},
    };
    for (const Row& r : rows) {
        uint8_t ret = 0;
        EXPECT_EQ(PtzCalls([&] { ret = ProcCmd_Malvoren(Long(5, r.button, r.n, 0).data(), 8); }), r.ptz)
            << int(r.button) << "/" << int(r.n);
        EXPECT_EQ(ret, r.ret) << int(r.button);
        EXPECT_EQ(TakeMessages(), r.sent) << int(r.button) << "/" << int(r.n);
    }
    ptShare->nSwitchOutputs = 120;   // numbered outputs come before the auxiliaries
    ProcCmd_Malvoren(Long(5, 24, 101, 0).data(), 8);
    EXPECT_EQ(TakeMessages(), ToKeyProcess(0x2001B, 100, 1));
    ptShare->dwKeyFlags = kKeyFlagToRecorder;
    ProcCmd_Malvoren(Long(5, 37, 0, 0).data(), 8);
    EXPECT_TRUE(TakeMessages().empty());
    for (uint8_t ch : {0, 17}) EXPECT_EQ(ProcCmd_Malvoren(Long(ch, 33, 0, 0).data(), 8), 1) << int(ch);
}

// Joystick scenarios on channel 3 (frame channel byte 3): each step is a long frame and what it
// must cause. PTZ commands are listed as {code, p1, p2, p3}.
struct Move { uint8_t button, pan, tilt; std::vector<std::array<uint32_t, 4>> ptz; std::vector<Msg> sent; };
struct Scenario { const char* name; uint32_t model, menu; std::vector<Move> moves; };

TEST_F(KeypadTest, Keypad1Joystick) {
    std::vector<Scenario> scenarios = {
        {"no proportional control", kPlainModel, 0,
         {{128, 0x20, 0, {{17}}, {}}, {128, 0x20, 0, {}, {}}, {128, 0, 0, {{49}}, {}}, {128, 0xC0, 0, {{15}}, {}},
          {128, 0, 0x01, {{19}}, {}}, {128, 0, 0xDF, {{13}}, {}}, {128, 0x3F, 0x81, {{14}}, {}},
          {128, 0x3F, 0x81, {{14}}, {}}, {128, 0x81, 0x81, {{12}}, {}}, {128, 1, 1, {{20}}, {}},
          {128, 0x81, 1, {{18}}, {}}, {128, 0, 0, {{50}}, {}}, {128, 0x40, 0, {}, {}}, {128, 0, 0xE0, {}, {}},
          {128, 0x80, 0x20, {}, {}}, {144, 0, 0, {{11}}, {}}, {151, 0, 0, {}, {}}, {152, 0, 0, {{9}}, {}},
          {128, 0, 0, {{41}}, {}}}},
        {"proportional control", kJoystickModel, 0x4010,   // menu state blocked: camera mode
         {{128, 0x85, 0x10, {{81, 0x85, 0x10}}, {}}, {128, 0x85, 0x10, {}, {}},
          {128, 0x85, 0x11, {{81, 0x85, 0x11}}, {}}, {128, 0x40, 0xF0, {{81, 0x40, 0xF0}}, {}},
          {147, 0, 0, {{81, 0, 0, 0xB0}}, {}}, {154, 0x20, 0, {{81, 0x20, 0, 0x20}}, {}}, {128, 0, 0, {{113}}, {}}}},
        {"menu mode", kJoystickModel, 0x10,
         {{128, 0x20, 0, {}, {Press(21)}}, {128, 0x21, 0, {}, {}}, {128, 0, 0, {}, {Release(21)}},
          {128, 0x20, 0, {}, {Press(21)}}, {128, 0xA0, 0, {}, {Press(15)}}, {128, 0, 0x20, {}, {Press(22)}},
          {128, 0, 0xA0, {}, {Press(16)}}, {128, 0x20, 0x20, {}, {}}, {129, 0, 0, {}, {}},
          {144, 0, 0, {}, {Press(27)}}, {150, 0, 0, {}, {}}, {152, 0, 0, {}, {Press(26)}},
          {128, 0, 0, {}, {Release(26)}}, {128, 0, 0, {}, {}}}},
    };
    const uint8_t lens[][2] = {{129, 27}, {130, 28}, {132, 5}, {136, 3}, {161, 29}, {162, 29}, {164, 64}, {168, 64}};
    for (const auto& l : lens)   // a lens button starts once and stops on release
        scenarios.push_back({"lens", kJoystickModel, 0,
                             {{l[0], 0, 0, {{l[1]}}, {}}, {l[0], 0, 0, {}, {}}, {128, 0, 0, {{l[1] + 32u}}, {}}}});
    for (const Scenario& s : scenarios) {
        for (uint32_t menu : {0u, 0x10u}) {   // let go of whatever was held, on a channel without camera
            ptShare->dwKeypadMenuState = menu;
            ProcCmd_Malvoren(Long(16, 128, 0, 0).data(), 8);
        }
        TakeMessages();
        ptShare->atPtz[2].nPtzModel = s.model;
        ptShare->dwKeypadMenuState = s.menu;
        for (size_t i = 0; i < s.moves.size(); ++i) {
            const Move& m = s.moves[i];
            std::vector<Ptz> want;
            for (const auto& c : m.ptz) want.push_back({2, c[0], c[1], c[2], c[3]});
            EXPECT_EQ(PtzCalls([&] { EXPECT_EQ(ProcCmd_Malvoren(Long(3, m.button, m.pan, m.tilt).data(), 8), 0); }), want)
                << s.name << " step " << i;
            EXPECT_EQ(TakeMessages(), m.sent) << s.name << " step " << i;
        }
    }
    ptShare->bPtzLock2 = 1;
    EXPECT_TRUE(PtzCalls([] { ProcCmd_Malvoren(Long(3, 128, 0x20, 0).data(), 8); }).empty());
}

// Through the port: after any burst of line noise valid frames are recognised again.
TEST_F(KeypadPortTest, Keypad1RecoversFromNoise) {
    ASSERT_EQ(KeypadDeviceInit(1), 0u);
    std::mt19937 rng(7);
    for (int burst = 0; burst < 20; ++burst) {
        Bytes noise(1 + rng() % 60);
        for (uint8_t& b : noise) b = static_cast<uint8_t>(rng() % 4 == 0 ? 0xAA : rng());
        Feed(noise);
        Pump();
        TakeMessages();
        bool bSeen = false;   // the noise may swallow up to two frames that follow it
        for (int tries = 0; tries < 3 && !bSeen; ++tries) {
            Feed(Short(2, 0));
            Pump();
            bSeen = TakeMessages() == Click(31);
        }
        EXPECT_TRUE(bSeen) << "burst " << burst;
        Feed(Short(2, 0));
        Pump();
        EXPECT_EQ(TakeMessages(), Click(31)) << "burst " << burst;
    }
}
}  // namespace
