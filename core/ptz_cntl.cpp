// Process entry of ptz_cntl: start-up, the single-threaded polling loop, and shutdown.
//
// The monitor process starts us as `ptz_cntl <process number>`. We attach the recorder's shared
// block, publish our model tables there, open the serial devices, replay each camera's last
// command, announce ourselves on mailbox 1 and poll until told to stop or orphaned.
#include "core/ptz_cntl.h"

#include <sched.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "core/share_block.h"
#include "lib/ipc/MessageQueue.h"
#include "lib/ipc/SharedMem.h"
#include "lib/log/log.h"
#include "lib/proc/processpipe.h"
#include "ptz/ptz_data.h"

namespace {
// Codes received on mailbox 128.
constexpr uint32_t kMsgStop = 1;
constexpr uint32_t kMsgAlive = 2;
constexpr uint32_t kMsgPtzCommand = 0x800001;
// Codes sent to mailbox 1.
constexpr uint32_t kMsgStarted = 0x10002;
constexpr uint32_t kMsgEnded = 0x10003;
constexpr uint32_t kMsgAliveAnswer = 0x10004;

constexpr useconds_t kPassSleepUs = 10000;

void SendToMain(uint32_t code, uint32_t p2) {
    SendMsgQ(kRecorderIpcId, kMainAppMailbox, kOwnMailbox, code,
             static_cast<uint32_t>(tGlobal.nProcessNo), p2, 0, 0, 0);
}

// Start-up; any failure ends the process with status 1 at once, without clean-up.
bool StartUp(int argc, char** argv) {
    if (CheckProcessOverlap(argv[0]) != 0) return false;
    if (CheckProcessArgument(argc, argv) != 0) return false;
    std::fprintf(stderr, "Info(ptz_cntl  ) PTZ_CNTL Process Start.\n");
    tGlobal.nProcessNo = static_cast<int32_t>(std::strtol(argv[1], nullptr, 10));

    ptShare = static_cast<ShareBlock*>(AttachMem(kRecorderIpcId));
    if (ptShare == nullptr) return false;
    LeaveUpLog(&ptShare->tUpHistory);

    PTZInitChannels();
    PTZPublishModels();

    if (PTZUartDeviceOpen() != 0) return false;

    tGlobal.nKeypadSystemId = ptShare->nKeypadSystemIdCfg;
    tGlobal.nLoopCount = 0;
    tGlobal.bRunning = 1;

    // Resume what each camera was last told (a tour, an automatic pan) after a restart.
    for (uint32_t ch = 0; ch < kMaxChannels; ++ch) {
        const SharePtzLastCmd tLast = ptShare->atPtzLastCmd[ch];
        if (tLast.nCmd != 0)
            PTZControl(tLast.nSource, ch, tLast.nCmd, tLast.nParam1, tLast.nParam2, tLast.nParam3,
                       tLast.nParam4);
    }
    SendToMain(kMsgStarted, static_cast<uint32_t>(getpid()));
    return true;
}

void HandleMessage(const uint32_t msg[MBW_COUNT]) {
    switch (msg[MBW_CODE]) {
    case kMsgStop:
        tGlobal.bRunning = 0;
        break;
    case kMsgAlive:
        SendToMain(kMsgAliveAnswer, 0);
        break;
    case kMsgPtzCommand:
        // The channel indexes per-channel arrays: a message for a channel we do not have is dropped.
        if (msg[MBW_P1] < kMaxChannels)
            PTZControl(msg[MBW_FROM], msg[MBW_P1], msg[MBW_P2], msg[MBW_P3], msg[MBW_P4], msg[MBW_P5], 0);
        break;
    default:
        break;   // not for us: ignored without a word
    }
}

void RunLoop() {
    while (tGlobal.bRunning != 0) {
        uint32_t msg[MBW_COUNT];
        const bool bMessage = ReceiveMsgQ(kRecorderIpcId, kOwnMailbox, msg) == kMailboxBodySize;
        if (bMessage) HandleMessage(msg);

        const bool bNoInput = true;

        CheckPTZStatus();
        const bool bNoFrameSent = CheckPTZQueue() != 0;

        if (getppid() == 1) tGlobal.bRunning = 0;   // parent gone, adopted by init

        // Idle: wait for input for up to one pass; busy: pace at one pass per 10 ms.
        if (bNoFrameSent && !bMessage && bNoInput) usleep(kPassSleepUs);
        else usleep(kPassSleepUs);
        sched_yield();
        ++tGlobal.nLoopCount;
    }
}

void ShutDown() {
    if (PTZUartDeviceClose() != 0)
        std::fprintf(stderr, "Err (ptz_cntl  /%s:%d) can't close ptz control device.\n", "ptz_cntl", 300);
    DetachMem(ptShare);
    ptShare = nullptr;
    SendToMain(kMsgEnded, 0);
    std::fprintf(stderr, "Info(ptz_cntl  ) PTZ_CNTL Process End.\n");
}
}  // namespace

int PtzCntlMain(int argc, char** argv) {
    if (!StartUp(argc, argv)) return 1;
    RunLoop();
    ShutDown();
    return 0;
}
