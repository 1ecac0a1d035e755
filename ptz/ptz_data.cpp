// The PTZ serial line: opening the port, handing commands to the channel's driver, the
// per-channel frame rings, the drivers' status polling, and the paced sender.
#include "ptz/ptz_data.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "core/ptz_cntl.h"
#include "core/share_block.h"
#include "lib/ipc/Clock.h"
#include "lib/ipc/MsgLine.h"
#include "ptz/ptz_model.h"

int fdPTZUart = -1;

const PTZModel* PTZUsableModel(uint32_t nModel) {
    // Unsigned, so that a negative word is as far out of range as it is on the recorder's side.
    if (nModel == 0 || nModel >= ptShare->nPtzModelCount || nModel >= GetNumberOfPTZModel())
        return nullptr;
    return &ptPTZModelDatabase[nModel];
}

namespace {
constexpr int32_t kMinGapMs = 20;   // the sender never paces a channel faster than this

void Enqueue(uint32_t ch, const PTZPacket& packet) {
    PTZSendQueue& q = tGlobal.atQueue[ch];
    q.atSlot[q.nWritten % kPTZQueueSlots] = packet;
    ++q.nWritten;
    if (q.nRead % kPTZQueueSlots == q.nWritten % kPTZQueueSlots) {
        // The ring caught up with its oldest pending frame: the newest commands win.
        ErrLine(MsgSource{kTagPtzCntl, "ptz_data"}, 375, "Lost PTZ data on CH %d", static_cast<int>(ch));
        ++q.nRead;
    }
}

// Stamps the model into the frames a driver returned and queues them. n may be negative (nothing
// to send) and is never taken above the slots the driver was given.
void QueueFrames(uint32_t ch, uint32_t nModel, PTZPacket* atPacket, int32_t n) {
    if (n > kPTZPacketsPerCall) n = kPTZPacketsPerCall;
    for (int32_t i = 0; i < n; ++i) {
        atPacket[i].nModel = nModel;
        Enqueue(ch, atPacket[i]);
    }
}

void KeepAsPrevious(PTZChannelState& s) {
    s.nPrevCmd = s.nCmd;
    s.nPrevParam1 = s.nParam1;
    s.nPrevParam2 = s.nParam2;
    s.nPrevParam3 = s.nParam3;
    s.nPrevParam4 = s.nParam4;
    s.nPrevSource = s.nSource;
}

// Puts the line to the setting of the model that built the frame; only a real change is applied,
// because applying waits for the line to drain.
void SetLineFor(uint32_t nModel) {
    struct termios tNow, tWant;
    tcgetattr(fdPTZUart, &tNow);
    tWant = tNow;
    cfmakeraw(&tWant);
    tWant.c_cflag = static_cast<tcflag_t>(PTZModelEntry(nModel).dwLineFlags) | CS8 | CREAD | CLOCAL;
    if (tWant.c_oflag != tNow.c_oflag || tWant.c_cflag != tNow.c_cflag)
        tcsetattr(fdPTZUart, TCSADRAIN, &tWant);
}
}  // namespace

uint32_t PTZUartDeviceOpen() {
    const char* sDevice = ptShare->nPortAssign == kPortAssignPtzOnS0 ? "/dev/ttyS0" : "/dev/ttyS1";
    fdPTZUart = open(sDevice, O_WRONLY);
    if (fdPTZUart < 0) {
        ErrLine(MsgSource{kTagPtzCntl, "ptz_data"}, 79, "can't open ptz control device.");
        return 1;
    }
    struct termios t;
    std::memset(&t, 0, sizeof t);
    t.c_cflag = B9600 | CS8 | CREAD | CLOCAL;
    tcsetattr(fdPTZUart, TCSADRAIN, &t);
    return 0;
}

uint32_t PTZUartDeviceClose() {
    if (fdPTZUart < 0) return 1;
    close(fdPTZUart);
    fdPTZUart = -1;
    return 0;
}

int32_t PTZUartRawDataSend(const uint8_t* buf, uint32_t len) {
    if (fdPTZUart < 0) return fdPTZUart;
    return static_cast<int32_t>(write(fdPTZUart, buf, len));
}

void PTZUartSetAttr(const struct termios* settings) {
    if (settings != nullptr && fdPTZUart >= 0) tcsetattr(fdPTZUart, TCSADRAIN, settings);
}

uint32_t PTZControl(uint32_t source, uint32_t channel, uint32_t cmd, uint32_t p1, uint32_t p2,
                    uint32_t p3, uint32_t p4) {
    const uint32_t nModel = ptShare->atPtz[channel].nPtzModel;
    const PTZModel* ptModel = PTZUsableModel(nModel);
    if (ptModel == nullptr) return 1;
    if (ptShare->nVariant == kVariantNoTour && (cmd == PTZCmd_PresetTour || cmd == PTZCmd_PresetTourStop))
        return 0;

    PTZChannelState& s = tGlobal.atChannel[channel];
    s.nCmd = cmd;
    s.nParam1 = static_cast<int32_t>(p1);
    s.nParam2 = p2;
    s.nParam3 = p3;
    s.nParam4 = p4;
    s.nSource = source;
    SharePtzLastCmd& tLast = ptShare->atPtzLastCmd[channel];
    tLast.nSource = source;
    tLast.nCmd = cmd;
    tLast.nParam1 = p1;
    tLast.nParam2 = p2;
    tLast.nParam3 = p3;
    tLast.nParam4 = p4;

    PTZPacket atPacket[kPTZPacketsPerCall];
    std::memset(atPacket, 0, sizeof atPacket);
    const int32_t n = ptModel->BuildCmd(ptShare->atPtz[channel].nPtzAddress, atPacket, &s, p2);

    if (s.nLastCmd == kPTZCmdNone) KeepAsPrevious(s);
    if (n == 0) return 0;
    KeepAsPrevious(s);
    s.tCmdClock = get_jiffies();
    s.tStatusClock = get_jiffies();
    if (n > 0) QueueFrames(channel, nModel, atPacket, n);
    return 0;
}

uint32_t CheckPTZStatus() {
    for (uint32_t ch = 0; ch < ptShare->nChannels && ch < kMaxChannels; ++ch) {
        const uint32_t nModel = ptShare->atPtz[ch].nPtzModel;
        const PTZModel* ptModel = PTZUsableModel(nModel);
        PTZChannelState& s = tGlobal.atChannel[ch];
        if (ptModel == nullptr || s.bStatusActive == 0) continue;
        PTZPacket atPacket[kPTZPacketsPerCall];
        std::memset(atPacket, 0, sizeof atPacket);
        const uint32_t nAddress = ptShare->atPtz[ch].nPtzAddress;
        const int32_t n =
            ptModel->CheckStatus != nullptr ? ptModel->CheckStatus(nAddress, atPacket, &s) : 0;
        if (n != 0) s.tStatusClock = get_jiffies();
        if (n > 0) QueueFrames(ch, nModel, atPacket, n);
    }
    return 0;
}

uint32_t CheckPTZQueue() {
    const uint32_t now = get_jiffies();
    uint32_t nResult = 1;
    for (uint32_t ch = 0; ch < ptShare->nChannels && ch < kMaxChannels; ++ch) {
        const PTZCntlOpt* ptOpt = PTZModelEntry(ptShare->atPtz[ch].nPtzModel).ptCntlOpt;
        int32_t nGap = ptOpt != nullptr ? static_cast<int32_t>(ptOpt->nMinGapMs) : 0;
        if (nGap < kMinGapMs) nGap = kMinGapMs;
        PTZSendQueue& q = tGlobal.atQueue[ch];
        if (!TickReached(now, q.tLastSend + static_cast<uint32_t>(MsToTicks(nGap)))) continue;
        if (q.nWritten <= q.nRead) continue;
        const PTZPacket& tPacket = q.atSlot[q.nRead % kPTZQueueSlots];
        ++q.nRead;
        q.tLastSend = now;
        SetLineFor(tPacket.nModel);
        const uint32_t nLength = tPacket.nLength <= kPTZFrameMax ? tPacket.nLength : kPTZFrameMax;
        if (write(fdPTZUart, tPacket.abData, nLength) < 0) {
            // A failed write counts as sent; the line is not retried.
        }
        if (ptShare->bPtzDebug != 0) {
            // The frame dump is compiled out; the switch is still honoured as a no-op.
        }
        nResult = 0;
    }
    return nResult;
}

void PTZInitChannels() {
    for (int ch = 0; ch < kMaxChannels; ++ch) {
        PTZChannelState& s = tGlobal.atChannel[ch];
        std::memset(&s, 0, sizeof s);
        s.nLastCmd = kPTZCmdNone;
        s.nIrisLevel = 58;
        s.tCmdClock = get_jiffies();
        s.tStatusClock = get_jiffies();
        PTZSendQueue& q = tGlobal.atQueue[ch];
        std::memset(&q, 0, sizeof q);
        q.tLastSend = get_jiffies();
    }
}

void PTZPublishModels() {
    const uint32_t nCount = GetNumberOfPTZModel();
    ptShare->nPtzModelCount = nCount;
    for (uint32_t i = 0; i < nCount; ++i) {
        std::memcpy(ptShare->asPtzModelName[i], ptPTZModelDatabase[i].sName, kShareModelNameLen);
        const PTZCntlOpt* ptOpt = ptPTZModelDatabase[i].ptCntlOpt;
        ptShare->adwPtzModelCaps[i] = ptOpt != nullptr ? ptOpt->dwCaps : 0;
    }
    for (int ch = 0; ch < kMaxChannels; ++ch) {
        if (ptShare->atPtz[ch].nPtzModel >= nCount) ptShare->atPtz[ch].nPtzModel = 0;
        std::memset(ptShare->adwPtzStatus[ch], 0, sizeof ptShare->adwPtzStatus[ch]);
    }
}
