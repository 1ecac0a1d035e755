// Process entry of ptz_cntl: start-up, the single-threaded polling loop, and shutdown.
//
// The monitor process starts us as `ptz_cntl <process number>`. We attach the recorder's shared
// block, publish our model tables there, open the serial devices, replay each camera's last
// command, announce ourselves on mailbox 1 and poll until told to stop or orphaned.
#include "core/ptz_cntl.h"

#include <sched.h>
#include <unistd.h>

#include <cstdlib>

#include "core/share_block.h"
#include "keypad/keypad_data.h"
#include "ktt/ktt_data.h"
#include "lib/ipc/MessageQueue.h"
#include "lib/ipc/MsgLine.h"
#include "lib/ipc/SharedMem.h"
#include "lib/log/log.h"
#include "lib/proc/processpipe.h"
#include "pos/pos_data.h"
#include "ptz/ptz_data.h"

namespace {
constexpr useconds_t kPassSleepUs = 10000;
constexpr MsgSource kSource{kTagPtzCntl, "ptz_cntl"};

// The variant with the KTT monitoring link; read afresh at every test, never cached.
bool KttVariant() { return ptShare->nVariant == kVariantKtt; }
// The KTT link reports the keypad system identifier only on this reporting path.
bool KttReportsKeypadId() { return KttVariant() && ptShare->nKttEventEnable == 1; }

void SendToMain(uint32_t code, uint32_t p2) {
    SendMsgQ(kRecorderIpcId, kMainAppMailbox, kOwnMailbox, code,
             static_cast<uint32_t>(tGlobal.nProcessNo), p2, 0, 0, 0);
}

// Start-up; any failure ends the process with status 1 at once, without clean-up.
bool StartUp(int argc, char** argv) {
    if (CheckProcessOverlap(argv[0]) != 0) return false;
    if (CheckProcessArgument(argc, argv) != 0) return false;
    InfoLine(kSource, "PTZ_CNTL Process Start.");
    tGlobal.nProcessNo = static_cast<int32_t>(std::strtol(argv[1], nullptr, 10));

    ptShare = static_cast<ShareBlock*>(AttachMem(kRecorderIpcId));
    if (ptShare == nullptr) return false;
    LeaveUpLog(&ptShare->tUpHistory);

    PTZInitChannels();
    PTZPublishModels();
    if (KttVariant()) KttPublishModels();
    KeypadPublishModels();
    PosPublishModels();

    if (PTZUartDeviceOpen() != 0) return false;
    if (KttVariant() && KttDeviceOpen() != 0) return false;
    if (KeypadDeviceOpen() != 0) return false;
    KeypadDeviceInit(ptShare->nKeypadModel);

    tGlobal.nKeypadSystemId = KttVariant() ? 1 : ptShare->nKeypadSystemIdCfg;
    if (KttReportsKeypadId()) KTTMessage(8, 1, 0);
    tGlobal.nLoopCount = 0;
    PosModelInit(ptShare->nPosModel);
    tGlobal.bRunning = 1;

    // Resume what each camera was last told (a tour, an automatic pan) after a restart.
    for (uint32_t ch = 0; ch < kMaxChannels; ++ch) {
        const SharePtzLastCmd tLast = ptShare->atPtzLastCmd[ch];
        if (tLast.nCmd != 0)
            PTZControl(tLast.nSource, ch, tLast.nCmd, tLast.nParam1, tLast.nParam2, tLast.nParam3,
                       tLast.nParam4);
    }
    SendToMain(kMsgStarted, static_cast<uint32_t>(getpid()));
    // The link's first message, handled by the loop's first pass like any other.
    if (KttVariant()) SendMsgQ(kRecorderIpcId, kOwnMailbox, kOwnMailbox, kMsgKtt, 5, 1, 0, 0, 0);
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
    case kMsgKeypadId:
        tGlobal.nKeypadSystemId = msg[MBW_P1];
        if (KttReportsKeypadId()) KTTMessage(8, msg[MBW_P1], 0);
        break;
    case kMsgKeypadModel:
        KeypadDeviceInit(msg[MBW_P1]);
        break;
    case kMsgPosModel:
        PosModelInit(msg[MBW_P1]);
        break;
    case kMsgKtt:
        if (KttVariant()) KTTMessage(msg[MBW_P1], msg[MBW_P2], msg[MBW_P3]);
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

        const bool bNoKttInput = KttVariant() ? ReceiveKttData() != 0 : true;
        const bool bNoKeypadInput = ReceiveKeypadData() != 0;
        ReceivePosData();

        CheckPTZStatus();
        const bool bNoFrameSent = CheckPTZQueue() != 0;

        if (KttVariant()) CheckKttStatus();
        CheckKeypadStatus();
        if (getppid() == 1) tGlobal.bRunning = 0;   // parent gone, adopted by init

        // Idle: wait for input for up to one pass, waking as soon as bytes arrive; busy: pace at
        // one pass per 10 ms.
        if (bNoFrameSent && !bMessage && (bNoKttInput || bNoKeypadInput)) {
            if (KttVariant()) KttDevicePoll();
            else KeypadDevicePoll();
        } else {
            usleep(kPassSleepUs);
        }
        sched_yield();
        ++tGlobal.nLoopCount;
    }
}

void ShutDown() {
    if (PTZUartDeviceClose() != 0)
        ErrLine(kSource, 300, "can't close ptz control device.");
    if (KeypadDeviceClose() != 0)
        ErrLine(kSource, 301, "can't close keypad control device.");
    if (PosFifoClose() != 0)
        ErrLine(kSource, 302, "can't close pos FIFO.");
    // The KTT close reports with the keypad's text.
    if (KttVariant() && KttDeviceClose() != 0)
        ErrLine(kSource, 304, "can't close keypad control device.");
    DetachMem(ptShare);
    ptShare = nullptr;
    SendToMain(kMsgEnded, 0);
    InfoLine(kSource, "PTZ_CNTL Process End.");
}
}  // namespace

int PtzCntlMain(int argc, char** argv) {
    if (!StartUp(argc, argv)) return 1;
    RunLoop();
    ShutDown();
    return 0;
}
