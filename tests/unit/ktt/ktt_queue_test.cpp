// The KTT event queue: which events are queued and logged, overflow, the choice of the next
// event to report, the power-off announcement, and the link's message entry.
#include <ctime>
#include <deque>

#include "ktt/ktt_data.h"
#include "core/ptz_cntl.h"
#include "lib/ipc/MessageQueue.h"
#include "tests/support/fake_clock.h"
#include "tests/support/test_share.h"
#include "tests/unit/log/log_test_util.h"

namespace {
using namespace logtest;

// Log and semaphore set as for the log tests, a shared block in custom mode 4, an empty queue.
class KttQueue : public LogTest {
protected:
    void SetUp() override {
        LogTest::SetUp();
        fakeclock::UseReal();   // the mailbox stamps and log times come from the kernel's clock
        share = ResetTestShare();
        share->nVariant = kVariantKtt;
        share->nKttEventEnable = 1;
        Drain();
    }
    // Takes every event there is, reporting each as delivered.
    std::vector<KttEvent> Drain() {
        std::vector<KttEvent> taken;
        KttEvent e;
        while (KttNextEvent(&e) == 0 && taken.size() < 1000) {
            taken.push_back(e);
            KttEventResult(true);
        }
        return taken;
    }
    // (class, sub-code) of each type-100 record on disk.
    std::vector<std::pair<uint32_t, uint32_t>> Logged() {
        std::vector<std::pair<uint32_t, uint32_t>> out;
        for (const LogRecord& r : ReadRecords(kLogDiskDir)) {
            EXPECT_EQ(r.nType, kKttLogType);
            out.emplace_back(r.nParam[0], r.nParam[1]);
        }
        return out;
    }
    ShareBlock* share = nullptr;
};

struct PutCase {
    const char* name;
    uint32_t variant;
    uint32_t enable;
    uint32_t code;
    int32_t target;
    bool queued;
    bool logged;
};

TEST_F(KttQueue, WhatIsQueuedAndLogged) {
    const PutCase cases[] = {
        {"queue only", 4, 1, 0x101234, 1, true, true},
        {"other path value", 4, 7, 0x101234, 3, true, true},
        {"not custom mode 4", 3, 1, 0x101234, 1, false, true},
        {"reporting off", 4, 0, 0x101234, 1, false, true},
        {"target never", 4, 1, 0x101234, 5, false, true},
        {"dtmf takes class d4", 4, 4, 0xD41200, 3, true, true},
        {"dtmf drops class d0", 4, 4, 0xD01200, 3, false, true},
        {"fsk takes any class", 4, 2, 0xD01200, 1, true, true},
        {"class 3 not logged", 4, 1, 0x030100, 1, true, false},
        {"class 9 not logged", 4, 1, 0x090100, 2, true, false},
        {"class 9 neither", 3, 0, 0x090100, 5, false, false},
        {"top byte ignored", 4, 1, 0xFF0A1234, 4, true, true},
    };
    for (const PutCase& c : cases) {
        SCOPED_TRACE(c.name);
        for (const std::string& name : ListDir(kLogDiskDir)) unlink((std::string(kLogDiskDir) + "/" + name).c_str());
        share->nVariant = c.variant;
        share->nKttEventEnable = c.enable;
        PutKTTEventMulti(c.code, 1234567, c.target);

        std::vector<KttEvent> taken = Drain();
        ASSERT_EQ(taken.size(), c.queued ? 1u : 0u);
        if (c.queued) {
            EXPECT_EQ(taken[0].dwCode, c.code);
            EXPECT_EQ(taken[0].tTime, 1234567u);
            EXPECT_EQ(taken[0].nTarget, c.target);
        }
        std::vector<std::pair<uint32_t, uint32_t>> want;
        if (c.logged) want.emplace_back((c.code >> 16) & 0xFF, (c.code >> 8) & 0xFF);
        EXPECT_EQ(Logged(), want);
    }
}

// Overflow keeps the 63 newest; long runs of filling and emptying (the counters are pulled back
// once the read counter passes 64) match a plain model of the queue.
TEST_F(KttQueue, OverflowAndLongRun) {
    for (uint32_t i = 0; i < 70; ++i) PutKTTEventMulti(0x030000, i, 1);
    std::vector<KttEvent> taken = Drain();
    ASSERT_EQ(taken.size(), 63u);
    for (uint32_t k = 0; k < 63; ++k) EXPECT_EQ(taken[k].tTime, k + 7);

    std::deque<uint32_t> model;
    KttEvent e;
    for (uint32_t round = 0, next = 0; round < 400; ++round) {
        for (uint32_t i = 0; i < 1 + (round * 13) % 50; ++i, ++next) {
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
    for (KttEvent rest : Drain()) {
        ASSERT_FALSE(model.empty());
        EXPECT_EQ(rest.tTime, model.front());
        model.pop_front();
    }
    EXPECT_TRUE(model.empty());
}

// The current event is offered until it is delivered or has failed more than three times; once
// the queue has drained a waiting power-off is announced to the recorder, once.
TEST_F(KttQueue, NextEventRuleAndPowerOff) {
    RemoveMsgQ(kRecorderIpcId);
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
    EXPECT_EQ(std::vector<uint32_t>(body + MBW_CODE, body + MBW_COUNT),
              (std::vector<uint32_t>{kMsgKttDrained, 0, 0, 0, 0, 0}));
    EXPECT_EQ(body[MBW_FROM], 128u);
    EXPECT_EQ(KttNextEvent(&e), 1u);
    EXPECT_EQ(ReceiveMsgQ(kRecorderIpcId, kMainAppMailbox, body), -1) << "announced once";
    RemoveMsgQ(kRecorderIpcId);
}

TEST_F(KttQueue, MessageQueuesOneEvent) {
    uint32_t before = static_cast<uint32_t>(std::time(nullptr));
    KTTMessage(8, 0x1234, 2);
    std::vector<KttEvent> taken = Drain();
    ASSERT_EQ(taken.size(), 1u);
    EXPECT_EQ(taken[0].dwCode, 0x083400u);
    EXPECT_EQ(taken[0].nTarget, 2);
    EXPECT_GE(taken[0].tTime, before);
    EXPECT_EQ(Logged(), (std::vector<std::pair<uint32_t, uint32_t>>{{8, 0x34}}));
}

}  // namespace
