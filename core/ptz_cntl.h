// Process-wide state of ptz_cntl and the entry of its main program.
#pragma once
#include <cstdint>

#include "core/share_block.h"
#include "ptz/drivers/pm_common.h"
#include "ptz/ptz_data.h"

constexpr int kOwnMailbox = 128;      // this process
constexpr int kMainAppMailbox = 1;    // the recorder's main application
constexpr int kKeyMailbox = 2;        // the recorder's key-handling process

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
