// The KTT link port: open, line settings of the active model, poll, read with echo, write, close.
#include "ktt/ktt_data.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cstring>

#include "core/share_block.h"
#include "keypad/keypad_port.h"
#include "lib/ipc/MsgLine.h"

int fdKttUart = -1;

namespace {
constexpr char kKttDevice[] = "/dev/ttyS4";
constexpr MsgSource kSource{kTagPtzCntl, "ktt_data"};
constexpr int kReadMax = 64;

struct termios tOldSet;
uint32_t nCurrKttModel = 0;
}  // namespace

void KttPublishModels() {
    ptShare->nKttModelCount = GetNumberOfKttModel();
    for (uint32_t i = 0; i < GetNumberOfKttModel(); ++i) {
        std::strncpy(ptShare->asKttModelName[i], ptKttModelDatabase[i].sName, kShareModelNameLen - 1);
        ptShare->asKttModelName[i][kShareModelNameLen - 1] = '\0';
    }
}

uint32_t KttDeviceOpen() { return KeypadPortOpen(&fdKttUart, kKttDevice, O_RDWR, &tOldSet, kSource); }

// The bound is the keypad model count (see KeypadPortInit); an index that passes it but lies
// beyond the KTT table has no entry and is refused too.
uint32_t KttDeviceInit(uint32_t model) {
    return KeypadPortInit(fdKttUart, ptKttModelDatabase, GetNumberOfKttModel(), model, TCSADRAIN, &nCurrKttModel);
}

uint32_t KttDeviceClose() { return KeypadPortClose(&fdKttUart, tOldSet); }

uint32_t KttDevicePoll() { return KeypadPortPoll(fdKttUart); }

uint32_t CheckKttStatus() { return KeypadPortStatus(ptKttModelDatabase, nCurrKttModel); }

void WriteKttData(const uint8_t* bytes, uint32_t length) {
    if (fdKttUart < 0 || bytes == nullptr) return;
    (void)!write(fdKttUart, bytes, length);
}

// Bytes that no model takes are sent straight back, unless the PTZ line owns /dev/ttyS0.
// (The keypad debug switch has no output on this path.)
uint32_t ReceiveKttData() {
    if (fdKttUart < 0) return 1;
    uint8_t bytes[kReadMax];
    ssize_t n = read(fdKttUart, bytes, sizeof bytes);
    if (n <= 0) return 1;
    int count = static_cast<int>(n);
    if (nCurrKttModel != 0) {
        const KeypadModel& entry = ptKttModelDatabase[nCurrKttModel];
        uint8_t result = 1;
        bool bChecked = entry.CheckCmd != nullptr && entry.CheckCmd(bytes, &count) != 0;
        if (!bChecked && entry.ProcCmd != nullptr) result = entry.ProcCmd(bytes, count);
        if (result != 1) return 0;
    }
    if (ptShare->nPortAssign != kPortAssignPtzOnS0) WriteKttData(bytes, static_cast<uint32_t>(n));
    return 0;
}
