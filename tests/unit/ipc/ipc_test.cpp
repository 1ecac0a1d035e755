// Mailboxes, shared memory segments and semaphore sets on the sandbox's own IPC namespace.
#include <gtest/gtest.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/sem.h>
#include <sys/shm.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <string>

#include "lib/ipc/MessageQueue.h"
#include "lib/ipc/Semaphore.h"
#include "lib/ipc/SharedMem.h"
#include "tests/support/fake_clock.h"

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

namespace {

struct RawMessage {
    long mtype;
    unsigned char body[64];
};

class Ipc : public testing::Test {
protected:
    void SetUp() override { RemoveObjects(); }
    void TearDown() override {
        RemoveObjects();
        fakeclock::UseReal();
    }
    static void RemoveObjects() {
        for (int n : {47, 65}) {
            RemoveMsgQ(n);
            RemoveMem(n);
            RemoveSems(n);
        }
    }
    static msgqnum_t Waiting(int n) {
        struct msqid_ds ds;
        msgctl(msgget(IpcKey(n), 0), IPC_STAT, &ds);
        return ds.msg_qnum;
    }
    static void SendRaw(int n, long type, size_t size) {
        RawMessage m{type, {}};
        for (size_t i = 0; i < sizeof m.body; ++i) m.body[i] = static_cast<unsigned char>(i);
        ASSERT_EQ(0, msgsnd(msgget(IpcKey(n), 0), &m, size, 0));
    }
    static int SemValue(int n, int sem) { return semctl(semget(IpcKey(n), 0, 0), sem, GETVAL); }
};

TEST_F(Ipc, KeyRuleAndMailboxes) {
    EXPECT_EQ(IpcKey(47), IpcKey(0x12F));   // only the low 8 bits count
    ASSERT_EQ(0, CreateMsgQ(47));
    ASSERT_GE(msgget(static_cast<key_t>(0x2F55AA55), 0), 0);
    fakeclock::SetUptime(4242);
    CaptureStderr();
    ASSERT_EQ(0, SendMsgQ(47, 1, 128, 0x10001, 9, 0, 0, 0, 0));
    ASSERT_EQ(0, SendMsgQ(47, 128, 1, 0x800001, 2, 3, 4, 5, 0xFFFFFFFF));
    uint32_t out[MBW_COUNT] = {};
    ASSERT_EQ(32, ReceiveMsgQ(47, 128, out));
    const uint32_t expected[MBW_COUNT] = {1, 4242, 0x800001, 2, 3, 4, 5, 0xFFFFFFFF};
    EXPECT_EQ(0, std::memcmp(expected, out, sizeof out));
    EXPECT_EQ(-1, ReceiveMsgQ(47, 128, out));   // mailbox 1's message stays
    ASSERT_EQ(32, ReceiveAnyMsgQ(47, out));
    EXPECT_EQ(128u, out[MBW_FROM]);
    EXPECT_EQ(-1, ReceiveAnyMsgQ(47, out));
    EXPECT_EQ("", GetCapturedStderr());

    // On the queue: exactly 32 body bytes, little-endian words.
    const uint32_t params[5] = {0x11223344, 6, 7, 8, 9};
    ASSERT_EQ(0, SendMsgQC(47, 5, 0x01020304, 0xA0B0C0D0, params));
    RawMessage raw;
    ASSERT_EQ(32, msgrcv(msgget(IpcKey(47), 0), &raw, sizeof raw.body, 0, IPC_NOWAIT));
    EXPECT_EQ(5, raw.mtype);
    const unsigned char head[16] = {4, 3, 2, 1, 0x92, 0x10, 0, 0, 0xD0, 0xC0, 0xB0, 0xA0, 0x44, 0x33, 0x22, 0x11};
    EXPECT_EQ(0, std::memcmp(head, raw.body, sizeof head));
    EXPECT_EQ(9, raw.body[28]);
}

TEST_F(Ipc, MailboxErrors) {
    const uint32_t params[5] = {};
    uint32_t out[MBW_COUNT];
    CaptureStderr();
    EXPECT_EQ(-1, SendMsgQ(47, 1, 128, 1, 0, 0, 0, 0, 0));
    EXPECT_EQ(-1, SendMsgQC(47, 1, 128, 1, params));
    EXPECT_EQ(-1, ReceiveMsgQ(47, 128, out));
    EXPECT_GT(0, RemoveMsgQ(47));
    EXPECT_EQ("Err (libmsgq   /MessageQueue:118) Send: Unable to get mailbox id. (msgget)\n"
              "Err (libmsgq   /MessageQueue:159) Send: Unable to get mailbox id. (msgget)\n"
              "Err (libmsgq   /MessageQueue:224) Recv/RecvAny: Unable to get mailbox id. (msgget)\n",
              GetCapturedStderr());
    EXPECT_LT(msgget(IpcKey(47), 0), 0);   // senders never create the queue

    ASSERT_EQ(0, CreateMsgQ(47));
    for (int to : {0, -1, INT_MIN}) {
        CaptureStderr();
        EXPECT_EQ(-1, SendMsgQ(47, to, 128, 1, 0, 0, 0, 0, 0));
        EXPECT_EQ(-1, SendMsgQC(47, to, 128, 1, params));
        EXPECT_EQ("Err (libmsgq   /MessageQueue:111) Send: Invalid message destination\n"
                  "Err (libmsgq   /MessageQueue:152) Send: Invalid message destination\n",
                  GetCapturedStderr());
        EXPECT_EQ(0u, Waiting(47));
    }
    CaptureStderr();
    EXPECT_EQ(-1, ReceiveMsgQ(47, 0, out));
    EXPECT_EQ("Err (libmsgq   /MessageQueue:193) Receive: Invalid message type\n", GetCapturedStderr());
}

TEST_F(Ipc, LongMessageIsCutShortMessageIsLost) {
    ASSERT_EQ(0, CreateMsgQ(47));
    SendRaw(47, 128, 40);
    uint32_t out[MBW_COUNT] = {};
    ASSERT_EQ(32, ReceiveMsgQ(47, 128, out));
    EXPECT_EQ(0x03020100u, out[MBW_FROM]);
    EXPECT_EQ(0x1F1E1D1Cu, out[MBW_P5]);
    SendRaw(47, 128, 16);
    EXPECT_EQ(-1, ReceiveMsgQ(47, 128, out));
    EXPECT_EQ(0u, Waiting(47));
}

TEST_F(Ipc, FailedSendNamesTheQueueAsACharacter) {
    ASSERT_EQ(0, CreateMsgQ(47));
    int queue = msgget(IpcKey(47), 0);
    struct msqid_ds ds;
    ASSERT_EQ(0, msgctl(queue, IPC_STAT, &ds));
    ds.msg_qbytes = 32;   // room for one message: the next send blocks until the queue goes
    ASSERT_EQ(0, msgctl(queue, IPC_SET, &ds));
    ASSERT_EQ(0, SendMsgQ(47, 1, 128, 1, 0, 0, 0, 0, 0));
    pid_t child = fork();
    if (child == 0) {
        usleep(100000);
        _exit(msgctl(queue, IPC_RMID, nullptr));
    }
    CaptureStderr();
    EXPECT_EQ(-1, SendMsgQ(47, 1, 128, 2, 0, 0, 0, 0, 0));
    EXPECT_EQ("Err (libmsgq   /MessageQueue:135) Send: Unable to send message to mailbox /\n", GetCapturedStderr());
    waitpid(child, nullptr, 0);
}

TEST_F(Ipc, SharedMemClearsAttachMemKeeps) {
    auto* first = static_cast<unsigned char*>(SharedMem(64, 47));
    ASSERT_NE(nullptr, first);
    std::memset(first, 0xAB, 64);
    auto* second = static_cast<unsigned char*>(AttachMem(47));
    ASSERT_NE(nullptr, second);
    EXPECT_EQ(0xAB, second[63]);
    ASSERT_NE(nullptr, SharedMem(64, 47));
    for (int i = 0; i < 64; ++i) ASSERT_EQ(0, second[i]) << i;
    EXPECT_EQ(0, DetachMem(first));
    EXPECT_EQ(0, RemoveMem(47));
    CaptureStderr();
    EXPECT_GT(0, RemoveMem(47));
    EXPECT_EQ(nullptr, AttachMem(47));
    EXPECT_EQ(-1, DetachMem(first));
    EXPECT_EQ("Err (libshmem  /SharedMem:107) AttachMem: Unable to get memory segment id. (shmget)\n"
              "Err (libshmem  /SharedMem:167) DetachMem: Unable to detach memory segment. (shmdt)\n",
              GetCapturedStderr());
}

TEST_F(Ipc, SemaphoreSets) {
    const int32_t values[2] = {0x10000, 0};   // cut to 16 bits
    ASSERT_EQ(0, Semaphores(values, 2, 47));
    CaptureStderr();
    EXPECT_EQ(-1, Semaphores(values, 2, 47));
    EXPECT_EQ(-1, DownWithFlag(1, IPC_NOWAIT, 47));
    EXPECT_EQ(-1, _Down(0, 47, IPC_NOWAIT));
    EXPECT_EQ(0, UpWithFlag(1, 0, 47));
    EXPECT_EQ(0, _Up(1, 47, 0));
    EXPECT_EQ(0, _Down(1, 47, IPC_NOWAIT));
    EXPECT_EQ(-1, Up(5, 47));
    EXPECT_EQ(-1, Down(0, 65));
    EXPECT_EQ(-1, Up(0, 65));
    EXPECT_GT(0, RemoveSems(65));
    EXPECT_EQ("Err (libsem    /Semaphore:49) Semaphores: Unable to get semaphore id. (semget)\n"
              "Err (libsem    /Semaphore:130) Down: Can't perform down on semaphore 1\n"
              "Err (libsem    /Semaphore:130) Down: Can't perform down on semaphore 0\n"
              "Err (libsem    /Semaphore:178) Up: Can't perform up on semaphore 5\n"
              "Err (libsem    /Semaphore:117) Down: Unable to get semaphore id. (semget)\n"
              "Err (libsem    /Semaphore:165) Up: Unable to get semaphore id. (semget)\n",
              GetCapturedStderr());
    EXPECT_EQ(1, SemValue(47, 1));
    EXPECT_EQ(0, RemoveSems(47));
}

TEST_F(Ipc, DownBlocksAnotherProcessUntilUp) {
    const int32_t values[2] = {1, 0};
    ASSERT_EQ(0, Semaphores(values, 2, 47));
    pid_t child = fork();
    if (child == 0) _exit(Down(1, 47) == 0 ? 0 : 1);
    usleep(150000);
    EXPECT_EQ(0, waitpid(child, nullptr, WNOHANG));   // still waiting
    EXPECT_EQ(0, Up(1, 47));
    int status = -1;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(0, status);
    EXPECT_EQ(0, SemValue(47, 1));
}

}  // namespace
