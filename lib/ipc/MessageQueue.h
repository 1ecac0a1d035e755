// Mailboxes: one System V message queue per identifier, one mailbox per message type.
// Mailbox 1 is the recorder's main application, 2 its key-handling process, 128 this process.
#pragma once
#include <cstdint>

#include "lib/ipc/IpcKey.h"

// Body of one mailbox message as it travels on the queue (after the message type).
struct MailboxMessage {
    long     mtype;     // destination mailbox, > 0 (the kernel's message-type word)
    uint32_t nFrom;     // sender's mailbox number
    uint32_t nStamp;    // sender's uptime in seconds at sending
    uint32_t nCode;     // message code
    uint32_t nParam1;
    uint32_t nParam2;
    uint32_t nParam3;
    uint32_t nParam4;
    uint32_t nParam5;
};
constexpr int kMailboxBodySize = 32;   // everything after mtype
static_assert(sizeof(MailboxMessage) - sizeof(long) == kMailboxBodySize);

// Index of each word in the 8-word body handed to a receiver.
enum MailboxWord { MBW_FROM = 0, MBW_STAMP, MBW_CODE, MBW_P1, MBW_P2, MBW_P3, MBW_P4, MBW_P5, MBW_COUNT };

int CreateMsgQ(int n);
int RemoveMsgQ(int n);
int SendMsgQ(int n, int to, uint32_t from, uint32_t code, uint32_t p1, uint32_t p2, uint32_t p3,
             uint32_t p4, uint32_t p5);
int SendMsgQC(int n, int to, uint32_t from, uint32_t code, const uint32_t params[5]);
// out receives the 8 body words (MailboxWord order). 32 when a whole message was taken, else -1.
int ReceiveMsgQ(int n, long mailbox, uint32_t out[MBW_COUNT]);
int _ReceiveMsgQ(int n, long mailbox, uint32_t out[MBW_COUNT]);
int ReceiveAnyMsgQ(int n, uint32_t out[MBW_COUNT]);
