// WTX-1200A: framing, keys with and without second function, joystick and jog directions.
#include "tests/unit/keypad/keypad_test_util.h"

namespace {
using Bytes = std::vector<uint8_t>;
Bytes Frame(uint8_t code, uint8_t mod, uint8_t id = 1) { return {0xA1, id, code, mod, 0xAF}; }

TEST(WtxFraming, AcceptsOnlyOurIdAndEndByte) {
    struct Row { const char* name; Bytes bytes; uint32_t id; uint8_t ret; int consumed; };
    const Row rows[] = {
        {"noise", {0xAF, 0xA1, 1, 0x23, 0, 0xAF}, 1, 0, 1}, {"partial", {0xA1, 1, 0x23, 0}, 1, 0, 0},
        {"frame", Frame(0x23, 0), 1, 5, 5},                 {"frame and more", {0xA1, 1, 0x23, 0, 0xAF, 0xA1}, 1, 5, 5},
        {"id 0 is no wildcard", Frame(0x23, 0), 0, 0, 5},   {"id 0 matches id 0", Frame(0x23, 0, 0), 0, 5, 5},
        {"other id", Frame(0x23, 0, 2), 1, 0, 5},           {"bad end byte", {0xA1, 1, 0x23, 0, 0xAE}, 1, 0, 5},
    };
    for (const Row& r : rows) {
        tGlobal.nKeypadSystemId = r.id;
        int n = static_cast<int>(r.bytes.size());
        EXPECT_EQ(CheckCmd_WTX(r.bytes.data(), &n), r.ret) << r.name;
        EXPECT_EQ(n, r.consumed) << r.name;
    }
    tGlobal.nKeypadSystemId = 0;
}

TEST_F(KeypadTest, WtxKeysAndSecondFunctions) {
    struct Row { uint8_t code, mod; std::vector<Msg> sent; };
    std::vector<Row> rows = {
        {17, 0, Click(34)}, {18, 0, Click(23)}, {19, 0, Click(24)}, {20, 0, Click(5)},  {21, 0, Click(6)},
        {32, 0, Click(14)}, {33, 0, Click(25)}, {34, 0, Click(17)}, {35, 0, Click(31)}, {36, 0, Click(33)},
        {37, 0, Click(59)}, {38, 0, Click(58)}, {39, 0, Click(90)}, {40, 0, Click(91)}, {41, 0, Click(13)},
        {35, 1, Click(31)}, {0, 0, {}},         {11, 0, {}},        {42, 0, {}},        {127, 0, {}},
        {18, 3, Click(3)},  {19, 3, Click(4)},  {21, 3, Click(95)}, {34, 3, Click(32)}, {17, 3, {}},
        {11, 3, {}},        {35, 2, {}},        {140, 2, {}},       {34, 2, {{kKeyMailbox, kMsgDisplayAlt, 0, 0}}},
    };
    const uint8_t second[] = {52, 53, 54, 55, 56, 57, 115, 116, 117, 51};
    for (uint8_t c = 1; c <= 10; ++c) {
        rows.push_back({c, 0, Click(kNumberKeys[c - 1])});
        rows.push_back({c, 3, Click(second[c - 1])});
    }
    for (const Row& r : rows) {
        EXPECT_EQ(ProcCmd_WTX(Frame(r.code, r.mod).data(), 5), 0);
        EXPECT_EQ(TakeMessages(), r.sent) << int(r.code) << "/" << int(r.mod);
    }
}

TEST_F(KeypadTest, WtxDirectionHeldIsReportedOnce) {
    struct Step { uint8_t code, mod; std::vector<Msg> sent; };
    const Step steps[] = {
        {128, 0xA0, {Press(21)}}, {128, 0xF0, {}},          {128, 0x00, {Release(21)}}, {128, 0xA0, {Press(21)}},
        {128, 0x20, {Release(21), Press(15)}},              {128, 0xA2, {}}, {128, 0xAA, {}}, {128, 0x22, {}},
        {128, 0x10, {}},          {128, 0x90, {}},          {128, 0x01, {}}, {128, 0x02, {}},
        {128, 0x03, {Release(15), Press(16)}},              {128, 0x0A, {Release(16), Press(22)}},
        {128, 0x08, {}},          {128, 0x00, {Release(22)}}, {128, 0x00, {}},
        {132, 0, {Press(26)}},    {135, 0, {}},             {136, 0, {}},    {139, 0, {}},
        {140, 0, {Release(26), Press(27)}},                 {143, 0, {}},    {129, 0, {}}, {131, 0, {}},
        {128, 0x00, {Release(27)}},
    };
    ProcCmd_WTX(Frame(128, 0).data(), 5);   // centred, whatever an earlier test held
    TakeMessages();
    for (const Step& s : steps) {
        ProcCmd_WTX(Frame(s.code, s.mod).data(), 5);
        EXPECT_EQ(TakeMessages(), s.sent) << int(s.code) << "/" << std::hex << int(s.mod);
    }
}

// Through the port: a frame for another keypad, truncated frames and noise are consumed, and
// valid frames are recognised again.
TEST_F(KeypadPortTest, WtxDropsForeignAndBrokenFrames) {
    tGlobal.nKeypadSystemId = 1;
    ASSERT_EQ(KeypadDeviceInit(5), 0u);
    for (const Bytes& s : {Frame(0x23, 0, 2), {0xA1, 1, 0x23}, {0xA1, 1, 0x23, 0, 0x00}, {0x13, 0xAF, 0xA1, 0xA1}}) {
        Feed(s);
        Pump();
        EXPECT_TRUE(TakeMessages().empty());
        bool bSeen = false;   // a truncated frame takes the start of the next one with it
        for (int tries = 0; tries < 3 && !bSeen; ++tries) {
            Feed(Frame(0x23, 0));
            Pump();
            bSeen = TakeMessages() == Click(Key_Play);
        }
        EXPECT_TRUE(bSeen);
        Feed(Frame(0x23, 0));
        Pump();
        EXPECT_EQ(TakeMessages(), Click(Key_Play));
    }
}
}  // namespace
