// Observation points of the keypad tests: the recorder's mailbox queue, the PTZ core's record of
// accepted commands, and a pseudo-terminal installed as the keypad port.
#pragma once
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/msg.h>
#include <unistd.h>

#include <array>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "core/ptz_cntl.h"
#include "keypad/keypad_data.h"
#include "lib/ipc/MessageQueue.h"
#include "ptz/ptz_model.h"
#include "tests/support/pty_pair.h"
#include "tests/support/test_share.h"

// A message seen on the queue: destination mailbox, code, p1, p2 (p3..p5 must be 0).
using Msg = std::array<uint32_t, 4>;
inline Msg Press(uint32_t k) { return {kKeyMailbox, kMsgKeyEvent, k, 0}; }
inline Msg Release(uint32_t k) { return {kKeyMailbox, kMsgKeyEvent, k | 0x80, 0}; }
inline std::vector<Msg> Click(uint32_t k) { return {Press(k), Release(k)}; }

// Messages taken off the queue, not yet looked at. The queue is emptied while the receiver runs,
// so that a receiver that delivers without end fails the test instead of blocking the sender.
inline std::vector<Msg> g_atTaken;
inline void DrainQueue() {
    MailboxMessage m;
    while (msgrcv(msgget(IpcKey(kRecorderIpcId), IPC_CREAT | 0600), &m, kMailboxBodySize, 0, IPC_NOWAIT) ==
           kMailboxBodySize) {
        EXPECT_EQ(m.nFrom, static_cast<uint32_t>(kOwnMailbox));
        EXPECT_EQ(m.nParam3 | m.nParam4 | m.nParam5, 0u);
        g_atTaken.push_back({static_cast<uint32_t>(m.mtype), m.nCode, m.nParam1, m.nParam2});
    }
}
inline std::vector<Msg> TakeMessages() {
    DrainQueue();
    return std::exchange(g_atTaken, {});
}

// A command the PTZ core accepted from the keypad: channel, code, p1, p2, p3.
using Ptz = std::array<uint32_t, 5>;
template <class F> std::vector<Ptz> PtzCalls(F f) {
    for (auto& c : ptShare->atPtzLastCmd) c.nCmd = 0xDEAD;
    f();
    std::vector<Ptz> out;
    for (uint32_t ch = 0; ch < kMaxChannels; ++ch) {
        const SharePtzLastCmd& c = ptShare->atPtzLastCmd[ch];
        if (c.nCmd == 0xDEAD) continue;
        EXPECT_EQ(c.nSource, static_cast<uint32_t>(kOwnMailbox));
        out.push_back({ch, c.nCmd, c.nParam1, c.nParam2, c.nParam3});
    }
    return out;
}
constexpr uint32_t kJoystickModel = 14;   // Pelco-D: proportional control
constexpr uint32_t kPlainModel = 4;       // Samsung SCC-641: none

// Fresh shared block with key delivery and mailbox 4 enabled, no camera on any channel, and the
// key and PTZ repeat memories put to a state no test uses.
class KeypadTest : public testing::Test {
protected:
    void SetUp() override {
        ResetTestShare();
        ptShare->nPtzModelCount = kPTZModelCount;
        ptShare->nKeypadModelCount = kKeypadModelCount;
        ptShare->dwKeyFlags = kKeyFlagToRecorder | kKeyFlagMailbox4;
        PTZInitChannels();
        tGlobal.nKeypadSystemId = 0;
        SendKeyToMicom(0, 0);
        SendKeyToPTZ(15, 0xFF, 0, 0, 0, 0);
        TakeMessages();
    }
};

// The keypad port is a pseudo-terminal slave; the test plays the keypad on the master.
class KeypadPortTest : public KeypadTest {
protected:
    PtyPair pty;
    void SetUp() override {
        KeypadTest::SetUp();
        ASSERT_GE(pty.slave, 0);
        fcntl(pty.slave, F_SETFL, O_RDONLY | O_NONBLOCK);
        fdKeypadUart = pty.slave;
        gBufWritePos = gBufReadPos = 0;
        gBufOverlap = 0;
    }
    void TearDown() override { fdKeypadUart = -1; }
    int Pending() const {
        int n = 0;
        ioctl(pty.slave, FIONREAD, &n);
        return n;
    }
    // Writes bytes as the keypad and waits until the port holds them.
    void Feed(const std::vector<uint8_t>& b) {
        const int before = Pending();
        ASSERT_EQ(write(pty.master, b.data(), b.size()), static_cast<ssize_t>(b.size()));
        for (int i = 0; i < 1000 && Pending() < before + static_cast<int>(b.size()); ++i) usleep(1000);
    }
    // Runs the receiver until nothing waits or a framer waits for more bytes; one that does not
    // settle fails the test.
    void Pump() {
        for (int i = 0; i < 2000; ++i) {
            const std::array<int, 4> before = {gBufWritePos, gBufReadPos, gBufOverlap, Pending()};
            const uint32_t r = ReceiveKeypadData();
            DrainQueue();
            if (r != 0 || before == std::array<int, 4>{gBufWritePos, gBufReadPos, gBufOverlap, Pending()}) return;
        }
        ADD_FAILURE() << "the receiver did not settle";
    }
};
