// Process-wide state of ptz_cntl and the entry of its main program.
#pragma once
#include <cstdint>

#include "core/share_block.h"
#include "ptz/drivers/pm_common.h"
#include "ptz/ptz_data.h"

constexpr int kOwnMailbox = 128;      // this process
constexpr int kMainAppMailbox = 1;    // the recorder's main application
constexpr int kKeyMailbox = 2;        // the recorder's key-handling process

// Codes received on mailbox 128.
constexpr uint32_t kMsgStop = 1;
constexpr uint32_t kMsgAlive = 2;
constexpr uint32_t kMsgPtzCommand = 0x800001;
constexpr uint32_t kMsgKeypadId = 0x80000a;
constexpr uint32_t kMsgKeypadModel = 0x80000b;
constexpr uint32_t kMsgPosModel = 0x80000c;
constexpr uint32_t kMsgKtt = 0x800014;
// Codes sent to mailbox 1.
constexpr uint32_t kMsgStarted = 0x10002;
constexpr uint32_t kMsgEnded = 0x10003;
constexpr uint32_t kMsgAliveAnswer = 0x10004;

struct ProcessGlobals {
    uint8_t bRunning;             // non-zero while the main loop runs
    int32_t nProcessNo;           // from the command line, echoed in the 0x1000x messages
    uint32_t nLoopCount;          // passes of the main loop
    uint32_t nKeypadSystemId;     // keypad id the keypad protocols accept, 0 = any
    PTZChannelState atChannel[kMaxChannels];
    PTZSendQueue atQueue[kMaxChannels];
};
extern ProcessGlobals tGlobal;

int PtzCntlMain(int argc, char** argv);
