// The KTT link: the port on /dev/ttyS4 (echo, model line settings, close) and the event queue
// (what is queued and logged, overflow, the next-event rule, the power-off announcement).
#include <sys/mount.h>
#include <unistd.h>

#include <deque>

#include <gtest/gtest.h>

#include "core/ptz_cntl.h"
#include "ktt/ktt_data.h"
#include "lib/ipc/MessageQueue.h"
#include "tests/support/fake_clock.h"
#include "tests/support/pty_pair.h"
#include "tests/support/test_share.h"
#include "tests/unit/log/log_test_util.h"

namespace {
// The link port, a pseudo-terminal bound at /dev/ttyS4: bytes no model takes come straight back,
// unless the PTZ line owns ttyS0, a burst longer than one read taking two turns. The line follows
// the model (raw one-byte reads, or canonical lines), and so does the PTZ port unless the PTZ line
// owns ttyS0; the bound is the keypad model count, and an index past the KTT table is refused
// too, leaving the line and the active model as they were. Closing restores the line found at
// open; a closed port refuses everything.
TEST(KttPort, EchoModelLineAndClose) {
    PtyPair pty, ptz;
    ResetTestShare()->nKeypadModelCount = 7;
    ASSERT_EQ(mount(ptsname(pty.master), "/dev/ttyS4", nullptr, MS_BIND, nullptr), 0);
    ASSERT_EQ(KttDeviceOpen(), 0u);
    std::vector<uint8_t> burst(100);
    for (size_t i = 0; i < burst.size(); ++i) burst[i] = static_cast<uint8_t>(i);
    for (uint32_t assign : {0u, kPortAssignPtzOnS0}) {
        ptShare->nPortAssign = assign;
        ASSERT_EQ(write(pty.master, burst.data(), burst.size()), 100);
        for (int i = 0; i < 50 && KttDevicePoll() != 0;) ++i;
        for (uint32_t result : {0u, 0u, 1u}) EXPECT_EQ(ReceiveKttData(), result);
        EXPECT_EQ(pty.Drain(), assign == 0 ? burst : std::vector<uint8_t>{});
    }
    fdPTZUart = ptz.slave;
    auto speed = [](int fd) { struct termios t; tcgetattr(fd, &t); return cfgetospeed(&t); };
    const speed_t before = speed(pty.slave);
    // model, keypad model count, port assignment, result, KTT and PTZ line speed, canonical, status
    struct Step { uint32_t model, count, assign, result; speed_t speed, ptzSpeed; bool canonical; uint32_t status; };
    const Step steps[] = {
        {3, 7, 0, 0, B9600, B9600, true, 0},     {1, 7, kPortAssignPtzOnS0, 0, B115200, B9600, false, 0},
        {2, 7, 0, 0, B57600, B57600, true, 0},   {4, 7, 0, 1, B57600, B57600, true, 0},
        {3, 3, 0, 1, B57600, B57600, true, 0},   {0, 7, 0, 0, B57600, B57600, true, 1},
    };
    for (const Step& s : steps) {
        ptShare->nKeypadModelCount = s.count;
        ptShare->nPortAssign = s.assign;
        const uint32_t result = KttDeviceInit(s.model);
        struct termios t;
        tcgetattr(pty.slave, &t);
        EXPECT_EQ(std::tuple(result, cfgetospeed(&t), speed(ptz.slave), t.c_cflag & (CSIZE | CREAD | CLOCAL),
                             (t.c_lflag & ICANON) != 0, t.c_cc[VMIN], CheckKttStatus()),
                  std::tuple(s.result, s.speed, s.ptzSpeed, tcflag_t(CS8 | CREAD | CLOCAL), s.canonical,
                             cc_t(s.canonical ? 0 : 1), s.status))
            << s.model;
    }
    fdPTZUart = -1;
    ASSERT_EQ(KttDeviceClose(), 0u);
    EXPECT_EQ(speed(pty.slave), before);
    EXPECT_EQ(std::tuple(KttDeviceInit(1), ReceiveKttData(), KttDeviceClose()), std::tuple(1u, 1u, 1u));
    umount2("/dev/ttyS4", MNT_DETACH);
    ASSERT_EQ(unlink("/dev/ttyS4"), 0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(KttDeviceOpen(), 1u);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Err (ptz_cntl  /ktt_data:76) Can't open keypad port\n");
}

// Log files and semaphores as for the log tests, a shared block in custom mode 4, an empty queue,
// the clock at kNow.
class KttQueue : public logtest::LogTest {
protected:
    static constexpr uint32_t kNow = 1700000000;
    void SetUp() override {
        LogTest::SetUp();
        fakeclock::SetWall(kNow);
        ResetTestShare()->nVariant = kVariantKtt;
        ptShare->nKttEventEnable = 1;
    }
    // Takes every event there is, reporting each as delivered: code, time, target.
    static std::vector<std::tuple<uint32_t, uint32_t, int32_t>> Drain() {
        std::vector<std::tuple<uint32_t, uint32_t, int32_t>> taken;
        for (KttEvent e; taken.size() < 1000 && KttNextEvent(&e) == 0; KttEventResult(true))
            taken.emplace_back(e.dwCode, e.tTime, e.nTarget);
        return taken;
    }
};

// Reporting path 2 (FSK) takes any class, 4 (DTMF) only class D4, 0 none; other values queue.
// Classes 3 and 9 are not logged; the top byte of a code plays no part. (Outside custom mode 4
// a link message is logged only.)
TEST_F(KttQueue, WhatIsQueuedAndLogged) {
    struct Case { uint32_t variant, path, code; int32_t target; bool queued, logged; };
    const Case cases[] = {
        {4, 1, 0x101234, 1, true, true},   {4, 7, 0x111234, 3, true, true},    {3, 1, 0x121234, 1, false, true},
        {4, 0, 0x131234, 1, false, true},  {4, 1, 0x141234, 5, false, true},   {4, 4, 0xD41200, 3, true, true},
        {4, 4, 0xD01200, 3, false, true},  {4, 2, 0xD01300, 1, true, true},    {4, 1, 0x030100, 1, true, false},
        {4, 1, 0x090100, 2, true, false},  {4, 1, 0xFF0A1234, 4, true, true},  {3, 0, 0x090200, 5, false, false},
    };
    std::vector<std::tuple<uint32_t, uint32_t, int32_t>> queued;
    std::vector<std::array<uint32_t, 3>> logged, onDisk;   // type, class, sub-code
    for (uint32_t i = 0; i < std::size(cases); ++i) {
        const Case& c = cases[i];
        ptShare->nVariant = c.variant;
        ptShare->nKttEventEnable = c.path;
        PutKTTEventMulti(c.code, i, c.target);
        if (c.queued) queued.emplace_back(c.code, i, c.target);
        if (c.logged) logged.push_back({kKttLogType, (c.code >> 16) & 0xFF, (c.code >> 8) & 0xFF});
    }
    ptShare->nVariant = kVariantKtt;
    ptShare->nKttEventEnable = 1;
    KTTMessage(0x108, 0x1234, 2);   // the link's message entry: class and sub-code are the low bytes, stamped now
    queued.emplace_back(0x083400, kNow, 2);
    logged.push_back({kKttLogType, 8, 0x34});
    EXPECT_EQ(Drain(), queued);
    for (const LogRecord& r : logtest::ReadRecords(kLogDiskDir)) onDisk.push_back({r.nType, r.nParam[0], r.nParam[1]});
    EXPECT_EQ(onDisk, logged);
}

// Overflow keeps the 63 newest. Long runs of filling and emptying (the counters are pulled back
// once the read counter passes 64) match a plain model of the queue.
TEST_F(KttQueue, OverflowAndLongRun) {
    std::deque<uint32_t> model;
    KttEvent e;
    for (uint32_t round = 0, next = 0; round < 400; ++round) {
        for (uint32_t i = 0; i < (round == 0 ? 70 : 1 + (round * 13) % 50); ++i, ++next) {
            PutKTTEventMulti(0x030000, next, 1);
            model.push_back(next);
            if (model.size() > 63) model.pop_front();
        }
        for (uint32_t i = 0; i < 1 + (round * 7) % 45 && !model.empty(); ++i, model.pop_front()) {
            ASSERT_EQ(KttNextEvent(&e), 0u);
            ASSERT_EQ(e.tTime, model.front()) << "round " << round;
            KttEventResult(true);
        }
    }
    EXPECT_EQ(Drain().size(), model.size());
}

// The current event is offered until it is delivered or has failed more than three times; once
// the queue has drained a waiting power-off is announced to the recorder, once.
TEST_F(KttQueue, NextEventRuleAndPowerOff) {
    ASSERT_EQ(CreateMsgQ(kRecorderIpcId), 0);
    for (uint32_t n = 1; n <= 3; ++n) PutKTTEventMulti(0x030000 | n << 8, n, 3);
    KttWaitPowerOff();
    KttEvent e;
    uint32_t body[MBW_COUNT];
    std::vector<uint32_t> offered;
    for (int i = 0; i < 8 && KttNextEvent(&e) == 0; ++i) {
        offered.push_back(e.tTime);
        EXPECT_EQ(ReceiveMsgQ(kRecorderIpcId, kMainAppMailbox, body), -1) << "not while events remain";
        KttEventResult(i == 5 || i == 6);   // fail 4 times, fail once, deliver, deliver
    }
    EXPECT_EQ(offered, (std::vector<uint32_t>{1, 1, 1, 1, 2, 2, 3}));
    ASSERT_EQ(ReceiveMsgQ(kRecorderIpcId, kMainAppMailbox, body), 32);
    EXPECT_EQ(std::tuple(body[MBW_FROM], body[MBW_CODE], body[MBW_P1]), std::tuple(128u, kMsgKttDrained, 0u));
    EXPECT_EQ(KttNextEvent(&e), 1u);
    EXPECT_EQ(ReceiveMsgQ(kRecorderIpcId, kMainAppMailbox, body), -1) << "announced once";
}
}  // namespace
