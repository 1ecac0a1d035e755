// Mailboxes on the recorder's System V message queue.
//
// Queue record (after the kernel's message-type word), 32-bit little-endian words:
//   offset  0  nFrom     sender's mailbox
//   offset  4  nStamp    sender's uptime in seconds
//   offset  8  nCode     message code
//   offset 12  nParam1 .. offset 28 nParam5
#include "lib/ipc/MessageQueue.h"

#include <sys/ipc.h>
#include <sys/msg.h>

#include <cstddef>

#include "lib/ipc/CleanUp.h"
#include "lib/ipc/Clock.h"
#include "lib/ipc/MsgLine.h"

namespace {

constexpr MsgSource kSource{kTagMsgq, "MessageQueue"};

// The buffer handed to msgsnd/msgrcv: the type word, then the body bytes.
struct QueueBuffer {
    long mtype;
    unsigned char mtext[kMailboxBodySize];
};
static_assert(offsetof(QueueBuffer, mtext) == offsetof(MailboxMessage, nFrom));
static_assert(offsetof(MailboxMessage, nStamp) - offsetof(MailboxMessage, nFrom) == 4 * MBW_STAMP);
static_assert(offsetof(MailboxMessage, nCode) - offsetof(MailboxMessage, nFrom) == 4 * MBW_CODE);
static_assert(offsetof(MailboxMessage, nParam1) - offsetof(MailboxMessage, nFrom) == 4 * MBW_P1);
static_assert(offsetof(MailboxMessage, nParam5) - offsetof(MailboxMessage, nFrom) == 4 * MBW_P5);
static_assert(4 * MBW_COUNT == kMailboxBodySize);

void PutWord(unsigned char* p, uint32_t v) {
    p[0] = static_cast<unsigned char>(v);
    p[1] = static_cast<unsigned char>(v >> 8);
    p[2] = static_cast<unsigned char>(v >> 16);
    p[3] = static_cast<unsigned char>(v >> 24);
}

uint32_t GetWord(const unsigned char* p) {
    return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 |
           static_cast<uint32_t>(p[2]) << 16 | static_cast<uint32_t>(p[3]) << 24;
}

// Source lines reported by the two send entries.
struct SendLines {
    int nDestination;
    int nLookup;
    int nSend;
};

int Send(int n, int to, uint32_t from, uint32_t code, const uint32_t params[5], const SendLines& lines) {
    if (to <= 0) {
        ErrLine(kSource, lines.nDestination, "Send: Invalid message destination");
        CleanUp();
        return -1;
    }
    int queue = msgget(IpcKey(n), 0);
    if (queue < 0) {
        ErrLine(kSource, lines.nLookup, "Send: Unable to get mailbox id. (msgget)");
        CleanUp();
        return -1;
    }
    QueueBuffer buffer;
    buffer.mtype = to;
    PutWord(buffer.mtext + 4 * MBW_FROM, from);
    PutWord(buffer.mtext + 4 * MBW_STAMP, GetUptime());
    PutWord(buffer.mtext + 4 * MBW_CODE, code);
    for (int i = 0; i < 5; ++i) PutWord(buffer.mtext + 4 * (MBW_P1 + i), params[i]);
    if (msgsnd(queue, &buffer, kMailboxBodySize, 0) != 0) {
        ErrLine(kSource, lines.nSend, "Send: Unable to send message to mailbox %c", n);
        CleanUp();
        return -1;
    }
    return 0;
}

}  // namespace

int CreateMsgQ(int n) {
    if (msgget(IpcKey(n), IPC_CREAT | 0777) < 0) {
        ErrLine(kSource, 68, "MailBox: Unable to get mailbox id. (msgget)");
        CleanUp();
        return -1;
    }
    return 0;
}

int RemoveMsgQ(int n) {
    int queue = msgget(IpcKey(n), 0);
    if (queue < 0) return queue;
    int result = msgctl(queue, IPC_RMID, nullptr);
    if (result != 0)
        ErrLine(kSource, 91, "RemoveBox: Unable to remove mailbox. (msgctl)");
    return result;
}

int SendMsgQ(int n, int to, uint32_t from, uint32_t code, uint32_t p1, uint32_t p2, uint32_t p3,
             uint32_t p4, uint32_t p5) {
    const uint32_t params[5] = {p1, p2, p3, p4, p5};
    return Send(n, to, from, code, params, SendLines{111, 118, 135});
}

int SendMsgQC(int n, int to, uint32_t from, uint32_t code, const uint32_t params[5]) {
    return Send(n, to, from, code, params, SendLines{152, 159, 172});
}

int ReceiveMsgQ(int n, long mailbox, uint32_t out[MBW_COUNT]) {
    if (mailbox < 1) {
        ErrLine(kSource, 193, "Receive: Invalid message type");
        CleanUp();
        return -1;
    }
    return _ReceiveMsgQ(n, mailbox, out);
}

// A message shorter than the body is taken off the queue and lost; out is then left as it was.
int _ReceiveMsgQ(int n, long mailbox, uint32_t out[MBW_COUNT]) {
    int queue = msgget(IpcKey(n), 0);
    if (queue < 0) {
        ErrLine(kSource, 224, "Recv/RecvAny: Unable to get mailbox id. (msgget)");
        CleanUp();
        return -1;
    }
    QueueBuffer buffer;
    ssize_t size = msgrcv(queue, &buffer, kMailboxBodySize, mailbox, IPC_NOWAIT | MSG_NOERROR);
    if (size != kMailboxBodySize) return -1;
    for (int i = 0; i < MBW_COUNT; ++i) out[i] = GetWord(buffer.mtext + 4 * i);
    return kMailboxBodySize;
}

int ReceiveAnyMsgQ(int n, uint32_t out[MBW_COUNT]) { return _ReceiveMsgQ(n, 0, out); }
