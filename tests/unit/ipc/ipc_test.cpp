// Mailboxes, shared memory segments and semaphore sets on the sandbox's own IPC namespace.
#include <gtest/gtest.h>
#include <sys/msg.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <cstring>

#include "lib/ipc/MessageQueue.h"
#include "lib/ipc/Semaphore.h"
#include "lib/ipc/SharedMem.h"
#include "tests/support/fake_clock.h"

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

namespace {

class Ipc : public testing::Test {
protected:
    void SetUp() override { RemoveMsgQ(47), RemoveMem(47), RemoveSems(47); }
    static int Queue() { return msgget(static_cast<key_t>(0x2F55AA55), 0); }   // the recorder's key of 47
};

// Key, routing by mailbox, and the body words: 32 little-endian bytes on the queue, the
// sender's uptime as stamp, a longer message cut to them, a shorter one taken off and lost.
TEST_F(Ipc, MailboxesAndBody) {
    ASSERT_EQ(0, CreateMsgQ(47));
    fakeclock::SetUptime(0x1092);
    const uint32_t params[5] = {0x11223344, 6, 7, 8, 0xFFFFFFFF};
    ASSERT_EQ(0, SendMsgQ(47, 1, 128, 0x10001, 9, 0, 0, 0, 0));
    ASSERT_EQ(0, SendMsgQC(47, 128, 1, 0x800001, params));
    uint32_t out[MBW_COUNT] = {};
    ASSERT_EQ(32, ReceiveMsgQ(47, 128, out));
    const uint32_t expected[MBW_COUNT] = {1, 0x1092, 0x800001, 0x11223344, 6, 7, 8, 0xFFFFFFFF};
    EXPECT_EQ(0, std::memcmp(expected, out, sizeof out));
    EXPECT_EQ(-1, ReceiveMsgQ(47, 128, out));   // mailbox 1's message stays
    ASSERT_EQ(32, ReceiveAnyMsgQ(47, out));
    EXPECT_EQ(128u, out[MBW_FROM]);

    struct { long mtype; unsigned char body[64]; } raw{128, {}};
    for (size_t i = 0; i < sizeof raw.body; ++i) raw.body[i] = static_cast<unsigned char>(i);
    ASSERT_EQ(0, msgsnd(Queue(), &raw, 40, 0));
    ASSERT_EQ(0, msgsnd(Queue(), &raw, 16, 0));
    ASSERT_EQ(32, ReceiveMsgQ(47, 128, out));
    for (uint32_t i = 0; i < MBW_COUNT; ++i) EXPECT_EQ(0x03020100u + 0x04040404u * i, out[i]) << i;
    EXPECT_EQ(-1, ReceiveMsgQ(47, 128, out));
    EXPECT_EQ(-1, msgrcv(Queue(), &raw, sizeof raw.body, 0, IPC_NOWAIT));
}

// A missing queue fails every call (no sender creates it); a bad destination or mailbox fails
// before the queue is touched.
TEST_F(Ipc, MailboxErrors) {
    const uint32_t params[5] = {};
    uint32_t out[MBW_COUNT];
    CaptureStderr();
    EXPECT_EQ(-1, SendMsgQ(47, 1, 128, 1, 0, 0, 0, 0, 0));
    EXPECT_EQ(-1, ReceiveMsgQ(47, 128, out));
    EXPECT_GT(0, RemoveMsgQ(47));
    EXPECT_EQ("Err (libmsgq   /MessageQueue:118) Send: Unable to get mailbox id. (msgget)\n"
              "Err (libmsgq   /MessageQueue:224) Recv/RecvAny: Unable to get mailbox id. (msgget)\n",
              GetCapturedStderr());
    EXPECT_LT(Queue(), 0);

    ASSERT_EQ(0, CreateMsgQ(47));
    ASSERT_EQ(0, SendMsgQ(47, 1, 128, 1, 0, 0, 0, 0, 0));
    for (int to : {0, -1, INT_MIN}) {
        CaptureStderr();
        EXPECT_EQ(-1, SendMsgQ(47, to, 128, 1, 0, 0, 0, 0, 0));
        EXPECT_EQ(-1, SendMsgQC(47, to, 128, 1, params));
        EXPECT_EQ(-1, ReceiveMsgQ(47, to, out));
        EXPECT_EQ("Err (libmsgq   /MessageQueue:111) Send: Invalid message destination\n"
                  "Err (libmsgq   /MessageQueue:152) Send: Invalid message destination\n"
                  "Err (libmsgq   /MessageQueue:193) Receive: Invalid message type\n",
                  GetCapturedStderr()) << to;
    }
    EXPECT_EQ(32, ReceiveAnyMsgQ(47, out));
}

// SharedMem zero-fills even an existing segment; AttachMem keeps its contents.
TEST_F(Ipc, SharedMemClearsAttachMemKeeps) {
    auto* first = static_cast<unsigned char*>(SharedMem(64, 47));
    ASSERT_NE(nullptr, first);
    std::memset(first, 0xAB, 64);
    auto* second = static_cast<unsigned char*>(AttachMem(47));
    ASSERT_NE(nullptr, second);
    EXPECT_EQ(0xAB, second[63]);
    ASSERT_NE(nullptr, SharedMem(64, 47));
    for (int i = 0; i < 64; ++i) ASSERT_EQ(0, second[i]) << i;
    EXPECT_EQ(0, RemoveMem(47));
    CaptureStderr();
    EXPECT_GT(0, RemoveMem(47));
    EXPECT_EQ(nullptr, AttachMem(47));
    EXPECT_EQ("Err (libshmem  /SharedMem:107) AttachMem: Unable to get memory segment id. (shmget)\n",
              GetCapturedStderr());
}

// Down on a zero semaphore waits, in another process, until an Up. Creation is exclusive, values
// are 16 bits, failed steps name the semaphore, removing a missing set is silent.
TEST_F(Ipc, Semaphores) {
    const int32_t values[2] = {0x10000, 0};
    ASSERT_EQ(0, Semaphores(values, 2, 47));
    pid_t child = fork();
    if (child == 0) _exit(Down(1, 47) == 0 ? 0 : 1);
    usleep(150000);
    EXPECT_EQ(0, waitpid(child, nullptr, WNOHANG));   // still waiting
    ASSERT_EQ(0, _Up(1, 47, 0));
    int status = -1;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(0, status);
    CaptureStderr();
    EXPECT_EQ(-1, Semaphores(values, 2, 47));
    EXPECT_EQ(-1, DownWithFlag(1, IPC_NOWAIT, 47));   // the child took the Up
    EXPECT_EQ(-1, _Down(0, 47, IPC_NOWAIT));
    EXPECT_EQ(-1, Up(5, 47));
    EXPECT_EQ(0, RemoveSems(47));
    EXPECT_GT(0, RemoveSems(47));
    EXPECT_EQ(-1, Down(0, 47));
    EXPECT_EQ(-1, Up(0, 47));
    EXPECT_EQ("Err (libsem    /Semaphore:49) Semaphores: Unable to get semaphore id. (semget)\n"
              "Err (libsem    /Semaphore:130) Down: Can't perform down on semaphore 1\n"
              "Err (libsem    /Semaphore:130) Down: Can't perform down on semaphore 0\n"
              "Err (libsem    /Semaphore:178) Up: Can't perform up on semaphore 5\n"
              "Err (libsem    /Semaphore:117) Down: Unable to get semaphore id. (semget)\n"
              "Err (libsem    /Semaphore:165) Up: Unable to get semaphore id. (semget)\n",
              GetCapturedStderr());
}

}  // namespace
