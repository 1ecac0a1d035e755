// The keypad side of the shared PTZ/keypad serial line.
//
// Received bytes are gathered in a 24-byte ring. Each main-loop turn reads what the line holds
// (never blocking), then offers at most 8 waiting bytes, linearised, to the active model's
// framer; the framer says how many bytes to consume (0 = wait for more).
#include "keypad/keypad_data.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "core/ptz_cntl.h"
#include "core/share_block.h"
#include "keypad/keypad_port.h"
#include "lib/ipc/Clock.h"
#include "lib/ipc/MessageQueue.h"
#include "lib/ipc/MsgLine.h"
#include "ptz/ptz_data.h"

int fdKeypadUart = -1;
int gBufWritePos = 0;
int gBufReadPos = 0;
uint8_t gBufOverlap = 0;

namespace {
constexpr MsgSource kSource{kTagPtzCntl, "keypad_data"};

struct termios tOldSet;           // line settings found at open, restored at close
uint32_t nCurrKeypadModel = 0;    // active model, 0 = none
uint8_t pyBuffer[64];             // the ring is its first kKeypadRingSize bytes
uint8_t tempBuffer[kKeypadChunkMax];

uint8_t yLastKey = 0;             // last key event sent to the recorder ...
uint32_t nLastAction = 0;         // ... and its action

uint8_t yLastCmd = 0;             // last PTZ command passed on from the keypad ...
uint8_t yLastData[4] = {};        // ... and its data bytes

bool KeyDeliveryEnabled() { return (ptShare->dwKeyFlags & kKeyFlagToRecorder) != 0; }

// Reads what the line holds into the ring at the write position. A read that ends exactly at the
// end of the ring is followed by one more read into its start, whose result is added as it
// stands: a failed second read (-1) leaves the write position at 23, so the byte there is
// overwritten by the next read.
void FillRing() {
    const int w = gBufWritePos;
    int n = static_cast<int>(read(fdKeypadUart, pyBuffer + w, static_cast<size_t>(kKeypadRingSize - w)));
    if (n <= 0) return;
    if (w + n == kKeypadRingSize) n += static_cast<int>(read(fdKeypadUart, pyBuffer, static_cast<size_t>(w)));
    const int t = w + n;
    if (t < kKeypadRingSize) {
        gBufWritePos = t;
    } else {
        gBufOverlap = 1;
        gBufWritePos = t % kKeypadRingSize;
    }
}

void PrintChunk(int nLength) {
    const uint32_t now = get_jiffies();
    const uint32_t hz = static_cast<uint32_t>(get_hz());
    std::printf("KPD [%02d.%02d/%02d] (%d) ", static_cast<int>(now / hz % 100), static_cast<int>(now % 100),
                static_cast<int>(tGlobal.nLoopCount % 100), nLength);
    for (int i = 0; i < nLength; ++i) std::printf("%02x ", tempBuffer[i]);
    std::printf("\n");
}

bool IsHeldMove(uint8_t command) {
    return command == PTZCmd_Up || command == PTZCmd_Left || command == PTZCmd_Right ||
           command == PTZCmd_Down || command == PTZCmd_Joystick;
}
}  // namespace

void KeypadPublishModels() {
    const uint32_t nCount = GetNumberOfKeypadModel();
    ptShare->nKeypadModelCount = nCount;
    for (uint32_t i = 0; i < nCount; ++i)
        std::memcpy(ptShare->asKeypadModelName[i], ptKeypadModelDatabase[i].sName, kShareModelNameLen);
    if (ptShare->nKeypadModel >= nCount) ptShare->nKeypadModel = 0;
    InfoLine(kSource, "# of Keypad model = %d", static_cast<int>(nCount));
}

// The keypad port is the PTZ line's device, opened for reading: cameras and keypad share the bus.
uint32_t KeypadDeviceOpen() {
    const char* sDevice = ptShare->nPortAssign == kPortAssignPtzOnS0 ? "/dev/ttyS0" : "/dev/ttyS1";
    return KeypadPortOpen(&fdKeypadUart, sDevice, O_RDONLY, &tOldSet, kSource);
}

uint32_t KeypadDeviceInit(uint32_t model) {
    return KeypadPortInit(fdKeypadUart, ptKeypadModelDatabase, GetNumberOfKeypadModel(), model, TCSANOW,
                          &nCurrKeypadModel);
}

uint32_t KeypadDeviceClose() { return KeypadPortClose(&fdKeypadUart, tOldSet); }

uint32_t KeypadDevicePoll() { return KeypadPortPoll(fdKeypadUart); }

uint32_t ReceiveKeypadData() {
    if (fdKeypadUart < 0) return 1;
    FillRing();

    int nLength = gBufWritePos - gBufReadPos + (gBufOverlap != 0 ? kKeypadRingSize : 0);
    if (nLength > kKeypadChunkMax) nLength = kKeypadChunkMax;
    if (nLength <= 0) return 1;
    for (int i = 0; i < nLength; ++i) tempBuffer[i] = pyBuffer[(gBufReadPos + i) % kKeypadRingSize];

    if (nCurrKeypadModel == 0) return 0;
    if (ptShare->bKeypadDebug != 0) PrintChunk(nLength);

    const KeypadModel& tModel = ptKeypadModelDatabase[nCurrKeypadModel];
    if (tModel.CheckCmd == nullptr) {
        if (tModel.ProcCmd != nullptr) tModel.ProcCmd(tempBuffer, nLength);
        return 0;
    }
    if (tModel.CheckCmd(tempBuffer, &nLength) != 0 && tModel.ProcCmd != nullptr) tModel.ProcCmd(tempBuffer, nLength);
    gBufReadPos += nLength;
    if (gBufReadPos >= kKeypadRingSize) {
        gBufOverlap = 0;
        gBufReadPos %= kKeypadRingSize;
    }
    return 0;
}

uint32_t CheckKeypadStatus() { return KeypadPortStatus(ptKeypadModelDatabase, nCurrKeypadModel); }

int32_t WriteKeypadData(const uint8_t* bytes, uint32_t length) { return PTZUartRawDataSend(bytes, length); }

void SendKeyToMicom(uint32_t key, uint32_t action) {
    const uint8_t yKey = static_cast<uint8_t>(key);
    if (yKey == yLastKey && action == nLastAction && action != kKeyClick) return;
    if ((action & kKeyPress) != 0 && KeyDeliveryEnabled())
        SendMsgQ(kRecorderIpcId, kKeyMailbox, kOwnMailbox, kMsgKeyEvent, yKey, 0, 0, 0, 0);
    if ((action & kKeyRelease) != 0 && KeyDeliveryEnabled())
        SendMsgQ(kRecorderIpcId, kKeyMailbox, kOwnMailbox, kMsgKeyEvent, yKey | 0x80u, 0, 0, 0, 0);
    yLastKey = yKey;
    nLastAction = action;
}

void SendKeypadMsgToMicom(uint32_t code, uint32_t p1, uint32_t p2) {
    if (KeyDeliveryEnabled()) SendMsgQ(kRecorderIpcId, kKeyMailbox, kOwnMailbox, code, p1, p2, 0, 0, 0);
}

void SendKeyToPTZ(uint32_t channel, uint8_t command, uint8_t d1, uint8_t d2, uint8_t d3, uint8_t d4) {
    if (ptShare->bPtzLock1 != 0 || ptShare->bPtzLock2 != 0) return;
    if (command == yLastCmd && IsHeldMove(command) && d1 == yLastData[0] && d2 == yLastData[1] &&
        d3 == yLastData[2] && d4 == yLastData[3])
        return;
    PTZControl(kOwnMailbox, channel, command, d1, d2, d3, d4);
    yLastCmd = command;
    yLastData[0] = d1;
    yLastData[1] = d2;
    yLastData[2] = d3;
    yLastData[3] = d4;
}
