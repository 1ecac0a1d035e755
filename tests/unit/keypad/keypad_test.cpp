// Keypad input: port, receive ring and key delivery; the Keypad-1 and WTX-1200A protocols.
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/msg.h>
#include <unistd.h>

#include <numeric>
#include <random>
#include <tuple>

#include <gtest/gtest.h>

#include "core/ptz_cntl.h"
#include "keypad/keypad_data.h"
#include "lib/ipc/MessageQueue.h"
#include "ptz/ptz_model.h"
#include "tests/support/fake_clock.h"
#include "tests/support/pty_pair.h"
#include "tests/support/test_share.h"

namespace {
using Bytes = std::vector<uint8_t>;
using Msg = std::array<uint32_t, 4>;   // mailbox, code, p1, p2 of a message
using Ptz = std::array<uint32_t, 5>;   // channel, code, p1, p2, p3 of a PTZ command
const Bytes kPlay = {0xA1, 0x00, 0x23, 0x00, 0xAF};   // WTX-1200A "PLAY", keypad 0

// Key events: pressed (k > 0) or released (k < 0); 0 stands for none.
std::vector<Msg> Keys(std::initializer_list<int> keys) {
    std::vector<Msg> out;
    for (int k : keys)
        if (k != 0) out.push_back({kKeyMailbox, kMsgKeyEvent, static_cast<uint32_t>(k > 0 ? k : -k | 0x80), 0});
    return out;
}
std::vector<Msg> Click(int k) { return Keys({k, -k}); }

std::vector<Msg> TakeMessages() {
    std::vector<Msg> out;
    MailboxMessage m;
    while (msgrcv(msgget(IpcKey(kRecorderIpcId), IPC_CREAT | 0600), &m, kMailboxBodySize, 0, IPC_NOWAIT) > 0)
        out.push_back({static_cast<uint32_t>(m.mtype), m.nCode, m.nParam1, m.nParam2});
    return out;
}

// Keypad-1 frames of keypad 1, closed by their check byte: the low 8 bits of the sum before it.
Bytes Sealed(Bytes b) {
    b.push_back(static_cast<uint8_t>(std::accumulate(b.begin(), b.end(), 0)));
    return b;
}
Bytes Short(int cmd, int data) { return Sealed({0xAA, 1, uint8_t(cmd), uint8_t(data)}); }
Bytes Long(int ch, int button, int pan, int tilt = 0) {
    return Sealed({0xAA, 1, 0x80, uint8_t(ch), uint8_t(button), uint8_t(pan), uint8_t(tilt)});
}

// What one Keypad-1 frame caused: the PTZ commands accepted, the messages sent, the result.
using Effect = std::tuple<std::vector<Ptz>, std::vector<Msg>, int>;
Effect Handle(const Bytes& f) {
    for (auto& c : ptShare->atPtzLastCmd) c.nCmd = 0xDEAD;
    const int ret = ProcCmd_Malvoren(f.data(), static_cast<int>(f.size()));
    std::vector<Ptz> ptz;
    for (uint32_t ch = 0; ch < kMaxChannels; ++ch)
        if (const SharePtzLastCmd& c = ptShare->atPtzLastCmd[ch]; c.nCmd != 0xDEAD)
            ptz.push_back({ch, c.nCmd, c.nParam1, c.nParam2, c.nParam3});
    return {ptz, TakeMessages(), ret};
}

// Fresh shared block with key delivery and mailbox 4 on and no camera; keypad id 0 (any Keypad-1
// id, WTX id 0); the keypad port is a pseudo-terminal slave with model 4 active, and the test
// writes to fdIn as the keypad.
class KeypadTest : public testing::Test {
protected:
    PtyPair pty;
    int fdIn = pty.master;
    void SetUp() override {
        ResetTestShare();
        ptShare->nPtzModelCount = kPTZModelCount;
        ptShare->nKeypadModelCount = kKeypadModelCount;
        ptShare->dwKeyFlags = kKeyFlagToRecorder | kKeyFlagMailbox4;
        PTZInitChannels();
        TakeMessages();   // creates the recorder's queue
        fdKeypadUart = pty.slave;
        ASSERT_EQ(KeypadDeviceInit(4), 0u);
    }
    // Writes bytes as the keypad, waits until the port holds them, and runs the receiver until
    // nothing waits; returns what it delivered.
    std::vector<Msg> Send(const Bytes& b) {
        int n = 0;
        ioctl(fdKeypadUart, FIONREAD, &n);
        const size_t want = n + b.size();
        EXPECT_EQ(write(fdIn, b.data(), b.size()), static_cast<ssize_t>(b.size()));
        for (int i = 0; i < 1000 && ioctl(fdKeypadUart, FIONREAD, &n) == 0 && size_t(n) < want; ++i) usleep(1000);
        for (int i = 0; i < 100 && ReceiveKeypadData() == 0;) ++i;
        return TakeMessages();
    }
};

// A frame arriving in pieces is delivered once, when complete, from every ring position; the
// debug switch shows each chunk a model is offered.
TEST_F(KeypadTest, FrameIsDeliveredWholeFromEveryRingPosition) {
    for (int start = 0; start < kKeypadRingSize; ++start) {
        gBufWritePos = gBufReadPos = start;
        EXPECT_TRUE(Send({0xA1, 0x00, 0x23, 0x00}).empty()) << start;
        EXPECT_EQ(Send({0xAF}), Click(Key_Play)) << start;
        const int end = (start + 5) % kKeypadRingSize;
        EXPECT_EQ(std::tuple(gBufReadPos, gBufWritePos, gBufOverlap), std::tuple(end, end, uint8_t(0))) << start;
    }
    fakeclock::Set(12345);
    tGlobal.nLoopCount = 307;
    ptShare->bKeypadDebug = 1;
    testing::internal::CaptureStdout();
    EXPECT_EQ(Send(kPlay), Click(Key_Play));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "KPD [23.45/07] (5) a1 00 23 00 af \n");
}

// Bytes read without a model are kept for the next one. A read ending at the ring's end is
// followed by a second read whose result is added as it stands: a failing one (-1, here an empty
// non-blocking pipe) leaves the write position at 23, so the next read overwrites that byte.
TEST_F(KeypadTest, RingKeepsBytesAndCountsAFailedSecondRead) {
    ASSERT_EQ(KeypadDeviceInit(0), 0u);
    EXPECT_TRUE(Send({0xA1, 0x00, 0x23}).empty());
    ASSERT_EQ(KeypadDeviceInit(4), 0u);
    EXPECT_EQ(Send({0x00, 0xAF}), Click(Key_Play));
    int fds[2];
    ASSERT_EQ(pipe2(fds, O_NONBLOCK), 0);
    std::tie(fdKeypadUart, fdIn) = std::pair(fds[0], fds[1]);
    gBufWritePos = gBufReadPos = 19;
    EXPECT_TRUE(Send(kPlay).empty());
    EXPECT_EQ(gBufWritePos, 23);
    EXPECT_TRUE(Send(kPlay).empty());   // its first byte lands on the frame's end: both are lost
    EXPECT_EQ(Send(kPlay), Click(Key_Play));
}

// The port is ttyS0 when the PTZ line is assigned there, else ttyS1; its line follows the model
// (an index beyond the table is refused whatever the published count says), and closing restores
// the line found at open.
TEST_F(KeypadTest, PortFollowsAssignmentAndModel) {
    PtyPair s[2];
    auto speed = [](int fd) { struct termios t; tcgetattr(fd, &t); return cfgetospeed(&t); };
    ptShare->nKeypadModelCount = 9;
    for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(mount(ptsname(s[i].master), i == 0 ? "/dev/ttyS0" : "/dev/ttyS1", nullptr, MS_BIND, nullptr), 0);
        ptShare->nPortAssign = i == 0 ? kPortAssignPtzOnS0 : 0;
        const speed_t old = speed(s[i].slave);
        ASSERT_EQ(KeypadDeviceOpen(), 0u);
        ASSERT_EQ(KeypadDeviceInit(i == 0 ? 6 : 2), 0u);
        EXPECT_EQ(KeypadDeviceInit(7), 1u);
        EXPECT_EQ(speed(s[i].slave), static_cast<speed_t>(i == 0 ? B2400 : B4800)) << i;
        EXPECT_EQ(KeypadDeviceClose(), 0u);
        EXPECT_EQ(speed(s[i].slave), old) << i;
    }
    umount2("/dev/ttyS1", 0);
    ASSERT_EQ(unlink("/dev/ttyS1"), 0);
    ptShare->nKeypadModel = 7;
    testing::internal::CaptureStderr();
    EXPECT_EQ(KeypadDeviceOpen(), 1u);
    KeypadPublishModels();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Err (ptz_cntl  /keypad_data:76) Can't open keypad port\nInfo(ptz_cntl  ) # of Keypad model = 7\n");
    EXPECT_EQ(std::pair(ptShare->nKeypadModelCount, ptShare->nKeypadModel), std::pair(7u, 0u));
    EXPECT_STREQ(ptShare->asKeypadModelName[6], "WONWOO - 2400 BPS");
}

// After any burst of line noise (sync, end and id bytes mixed in) frames are recognised again,
// at the latest from the fourth one on.
TEST_F(KeypadTest, ProtocolsRecoverFromNoise) {
    std::mt19937 rng(7);
    for (const auto& [model, frame, syncs] :
         {std::tuple{1u, Short(2, 0), Bytes{0xAA, 0x80, 1}}, std::tuple{5u, kPlay, Bytes{0xA1, 0xAF, 0}}}) {
        ASSERT_EQ(KeypadDeviceInit(model), 0u);
        for (int burst = 0; burst < 20; ++burst) {
            Bytes noise(1 + rng() % 60);
            for (uint8_t& b : noise) b = static_cast<uint8_t>(rng() % 3 == 0 ? syncs[rng() % 3] : rng());
            for (const Bytes& b : {noise, frame, frame, frame}) Send(b);
            EXPECT_EQ(Send(frame), Click(Key_Play)) << model << " burst " << burst;
        }
    }
}

// Both framers: whether a chunk holds a frame for this keypad, and how much of it is consumed.
TEST(KeypadFraming, AcceptsResynchronisesOrDiscards) {
    const KeypadCheckCmdFn k = CheckCmd_Malvoren, w = CheckCmd_WTX;
    // framer, bytes, our id, result, bytes consumed; a bad check, or seven bytes, wait for more,
    // eight bytes that are no long frame (two short frames, say) are dropped
    const std::tuple<KeypadCheckCmdFn, Bytes, uint32_t, int, int> rows[] = {
        {k, {0x55, 0xAA, 1, 2, 0xAD}, 0, 0, 1}, {k, {0xAA}, 1, 0, 0}, {k, Short(2, 0), 0, 5, 5},
        {k, Short(2, 0), 1, 5, 5}, {k, Short(2, 0), 2, 0, 5}, {k, Long(1, 128, 0), 2, 0, 8}, {k, {0xAA, 1, 2}, 0, 0, 0},
        {k, {0xAA, 1, 2, 0, 0xAC}, 0, 0, 0}, {k, {0xAA, 1, 2, 0, 0xAD, 0xAA, 1}, 0, 0, 0},
        {k, {0xAA, 1, 0x80, 1, 0x80, 0, 0, 0x2D}, 0, 0, 8}, {k, {0xAA, 1, 2, 0, 0xAD, 0xAA, 1, 2}, 0, 0, 8},
        {k, Long(16, 128, 0x20, 0x90), 1, 8, 8}, {k, Sealed({0xAA, 1, 0x81, 1, 128, 0, 0}), 0, 0, 8},
        {w, {0xAF, 0xA1, 1, 0x23, 0, 0xAF}, 1, 0, 1}, {w, {0xA1, 1, 0x23, 0}, 1, 0, 0},
        {w, {0xA1, 1, 0x23, 0, 0xAF, 0xA1}, 1, 5, 5}, {w, {0xA1, 1, 0x23, 0, 0xAF}, 0, 0, 5},
        {w, {0xA1, 0, 0x23, 0, 0xAF}, 0, 5, 5}, {w, {0xA1, 2, 0x23, 0, 0xAF}, 1, 0, 5},
        {w, {0xA1, 0, 0x23, 0, 0xAE}, 0, 0, 5},
    };
    for (const auto& [fn, bytes, id, ret, consumed] : rows) {
        tGlobal.nKeypadSystemId = id;
        int n = static_cast<int>(bytes.size());
        const int r = fn(bytes.data(), &n);
        EXPECT_EQ(std::pair(r, n), std::pair(ret, consumed)) << testing::PrintToString(bytes) << " id " << id;
    }
}

// Keypad-1 front-panel keys (short frames) and camera buttons (long frames on channel byte 5).
TEST_F(KeypadTest, Keypad1KeysAndButtons) {
    ptShare->atPtz[4].nPtzModel = 14;   // a Pelco-D camera
    ptShare->nSwitchOutputs = 4;
    const Effect none, refused{{}, {}, 1};
    auto ptz = [](uint32_t c, uint32_t p) { return Effect{{{4, c, p, 0, 0}}, {}, 0}; };
    auto msg = [](uint32_t code, uint32_t p1, uint32_t p2) { return Effect{{}, {{2, code, p1, p2}}, 0}; };
    auto click = [](int k) { return Effect{{}, Click(k), 0}; };
    // frame, menu state, effect; button 37 pulses the channel on mailbox 4
    std::vector<std::tuple<Bytes, uint32_t, Effect>> rows = {
        {Short(7, 0), 0, click(13)}, {Short(7, 1), 0, none}, {Short(9, 0), 0, none}, {Short(12, 0), 0, click(17)},
        {Short(12, 99), 0, click(116)}, {Short(12, 5), 0, none}, {Short(12, 1), 0, msg(0x2002D, 0, 0)},
        {Short(12, 16), 0, msg(0x2002D, 9, 0)}, {Short(32, 0), 0, none}, {Short(32, 0), 0x2010, click(36)},
        {Short(41, 0), 0x10, click(51)}, {Short(50, 0), 0, refused}, {Short(50, 17), 0, refused},
        {Short(58, 0), 0, msg(0x20046, 0, 0)}, {Short(58, 16), 0, msg(0x20046, 1, 15)}, {Short(58, 17), 0, none},
        {Short(140, 0), 0, msg(0x2002E, 0, 0)}, {Short(42, 0), 0, refused}, {Short(144, 0), 0, refused},
        {Long(5, 24, 0), 0, ptz(16, 0)}, {Long(5, 24, 3), 0, msg(0x2001B, 2, 1)}, {Long(5, 24, 103), 0, ptz(67, 0)},
        {Long(5, 24, 50), 0, none}, {Long(5, 25, 0), 0, ptz(48, 0)}, {Long(5, 25, 4), 0, msg(0x2001B, 3, 0)},
        {Long(5, 25, 106), 0, ptz(102, 0)}, {Long(5, 39, 0), 0, click(14)}, {Long(5, 40, 0), 0, none},
        {Long(5, 21, 0), 0, refused}, {Long(0, 33, 0), 0, refused}, {Long(17, 33, 0), 0, refused},
        {Long(5, 37, 0), 0, {{}, {{4, 0x40024, 4, 1}, {4, 0x40024, 4, 0}}, 0}},
    };
    // {short command, key}, the data byte playing no part; {button, PTZ code}, buttons below 32
    // passing their number on
    const int keys[][2] = {{1, 2}, {2, 31}, {3, 59}, {4, 58}, {5, 33}, {6, 34}, {8, 23}, {10, 12}, {11, 95}, {26, 24},
                           {53, 4}, {54, 3}, {55, 117}, {56, 5}, {57, 14}, {143, 14}, {131, 90}, {132, 91}, {133, 32}};
    const int buttons[][2] = {{17, 80}, {18, 22}, {19, 74}, {20, 90}, {23, 21}, {32, 21}, {33, 80}, {34, 74}, {35, 90},
                              {36, 72}, {38, 73}};
    for (const auto& [cmd, key] : keys) rows.push_back({Short(cmd, 9), 0, click(key)});
    for (const auto& [b, code] : buttons) rows.push_back({Long(5, b, 9), 0, ptz(code, b < 32 ? 9 : 0)});
    for (int n = 1; n <= 16; ++n) rows.push_back({Short(50, n), 0, click(kNumberKeys[n - 1])});
    for (const auto& [frame, menu, want] : rows) {
        ptShare->dwKeypadMenuState = menu;
        EXPECT_EQ(Handle(frame), want) << testing::PrintToString(frame);
    }
    ptShare->nSwitchOutputs = 120;   // numbered outputs come before the auxiliaries
    EXPECT_EQ(Handle(Long(5, 24, 101)), msg(0x2001B, 100, 1));
    ptShare->dwKeyFlags = kKeyFlagToRecorder;   // the channel pulse needs mailbox 4
    EXPECT_EQ(Handle(Long(5, 37, 0)), none);
    ptShare->dwKeyFlags = 0;   // delivery off: neither keys nor messages
    EXPECT_EQ(std::pair(Handle(Short(140, 0)), Handle(Short(2, 0))), std::pair(none, none));
}

// Keypad-1 joystick scenarios on channel byte 3 (channel 2), one step per long frame:
// {button, pan, tilt, key pressed (> 0) or released (< 0), PTZ code, p1, p2, p3}.
TEST_F(KeypadTest, Keypad1Joystick) {
    std::vector<std::tuple<uint32_t, uint32_t, std::vector<std::array<int, 8>>>> scenarios = {
        {4, 0,   // Samsung SCC-641, no proportional control: single-speed moves, diagonals repeat
         {{128, 0x20, 0, 0, 17}, {128, 0x20, 0}, {128, 0, 0, 0, 49}, {128, 0xC0, 0, 0, 15}, {128, 0, 0x01, 0, 19},
          {128, 0, 0xDF, 0, 13}, {128, 0x3F, 0x81, 0, 14}, {128, 0x3F, 0x81, 0, 14}, {128, 0x81, 0x81, 0, 12},
          {128, 1, 1, 0, 20}, {128, 0x81, 1, 0, 18}, {128, 0, 0, 0, 50}, {128, 0x40, 0}, {128, 0, 0xE0},
          {128, 0x80, 0x20}, {144, 0, 0, 0, 11}, {151, 0, 0}, {152, 0, 0, 0, 9}, {128, 0, 0, 0, 41}}},
        {14, 0x4010,   // Pelco-D, proportional control; menu state blocked: camera mode
         {{128, 0x85, 0x10, 0, 81, 0x85, 0x10}, {128, 0x85, 0x10}, {128, 0x85, 0x11, 0, 81, 0x85, 0x11},
          {128, 0x40, 0xF0, 0, 81, 0x40, 0xF0}, {147, 0x40, 0xF0, 0, 81, 0x40, 0xF0, 0xB0},
          {154, 0x20, 0, 0, 81, 0x20, 0, 0x20}, {128, 0, 0, 0, 113}}},
        {14, 0x10,   // menu mode: arrow keys, INC and DEC
         {{128, 0x20, 0, 21}, {128, 0x21, 0}, {128, 0, 0, -21}, {128, 0x20, 0, 21}, {128, 0xA0, 0, 15},
          {128, 0, 0x20, 22}, {128, 0, 0xA0, 16}, {128, 0x20, 0x20}, {129, 0, 0}, {144, 0, 0, 27}, {150, 0, 0},
          {152, 0, 0, 26}, {128, 0, 0, -26}, {128, 0, 0}}},
        {14, 0,   // lens buttons start once and stop on release
         {{129, 0, 0, 0, 27}, {129, 0, 0}, {128, 0, 0, 0, 59}, {161, 0, 0, 0, 29}, {128, 0, 0, 0, 61},
          {168, 0, 0, 0, 64}, {128, 0, 0, 0, 96}}},
    };
    for (const auto& [model, menu, steps] : scenarios) {
        ptShare->atPtz[2].nPtzModel = model;
        ptShare->dwKeypadMenuState = menu;
        for (const auto& [button, pan, tilt, key, code, p1, p2, p3] : steps) {
            std::vector<Ptz> ptz;
            if (code != 0) ptz.push_back({2, uint32_t(code), uint32_t(p1), uint32_t(p2), uint32_t(p3)});
            EXPECT_EQ(Handle(Long(3, button, pan, tilt)), Effect(ptz, Keys({key}), 0))
                << menu << ": " << button << "/" << pan << "/" << tilt;
        }
    }
    ptShare->bPtzLock2 = 1;   // either PTZ lock stops the keypad's PTZ commands
    EXPECT_EQ(Handle(Long(3, 17, 1)), Effect{});
    std::tie(ptShare->bPtzLock1, ptShare->bPtzLock2) = std::pair(1, 0);
    EXPECT_EQ(Handle(Long(3, 17, 1)), Effect{});
}

// WTX-1200A: keys click, second functions by modifier; a held direction (joystick or jog ring) is
// pressed once, a change releases the old key first, and a position without direction changes
// nothing. Steps: {code, modifier, key events}.
TEST_F(KeypadTest, WtxKeysAndDirections) {
    std::vector<std::array<int, 4>> steps = {
        {35, 1, 31, -31}, {0, 0}, {11, 0}, {42, 0}, {127, 0}, {17, 3}, {11, 3}, {35, 2}, {140, 2}, {128, 0xA0, 21},
        {128, 0xF0}, {128, 0x00, -21}, {128, 0xA0, 21}, {128, 0x20, -21, 15}, {128, 0xA2}, {128, 0xAA}, {128, 0x22},
        {128, 0x10}, {128, 0x90}, {128, 0x01}, {128, 0x02}, {128, 0x03, -15, 16}, {128, 0x0A, -16, 22}, {128, 0x08},
        {128, 0x00, -22}, {128, 0x00}, {132, 0, 26}, {135, 0}, {136, 0}, {139, 0}, {140, 0, -26, 27}, {143, 0},
        {129, 0}, {131, 0}, {128, 0x00, -27},
    };
    // {code, key} without and with the second-function modifier
    const int plain[][2] = {{1, 36}, {2, 37}, {3, 41}, {4, 42}, {5, 43}, {6, 44}, {7, 45}, {8, 46}, {9, 47}, {10, 51},
                            {17, 34}, {18, 23}, {19, 24}, {20, 5}, {21, 6}, {32, 14}, {33, 25}, {34, 17}, {35, 31},
                            {36, 33}, {37, 59}, {38, 58}, {39, 90}, {40, 91}, {41, 13}};
    const int second[][2] = {{1, 52}, {2, 53}, {3, 54}, {4, 55}, {5, 56}, {6, 57}, {7, 115}, {8, 116}, {9, 117},
                             {10, 51}, {18, 3}, {19, 4}, {21, 95}, {34, 32}};
    for (const auto& [code, key] : plain) steps.push_back({code, 0, key, -key});
    for (const auto& [code, key] : second) steps.push_back({code, 3, key, -key});
    for (const auto& [code, mod, a, b] : steps) {
        EXPECT_EQ(ProcCmd_WTX(Bytes{0xA1, 1, uint8_t(code), uint8_t(mod), 0xAF}.data(), 5), 0);
        EXPECT_EQ(TakeMessages(), Keys({a, b})) << code << "/" << mod;
    }
    ProcCmd_WTX(Bytes{0xA1, 1, 34, 2, 0xAF}.data(), 5);   // second function of DISPLAY
    EXPECT_EQ(TakeMessages(), (std::vector<Msg>{{kKeyMailbox, kMsgDisplayAlt, 0, 0}}));
}
}  // namespace
