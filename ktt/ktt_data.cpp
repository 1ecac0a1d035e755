// The KTT link port: open, line settings of the active model, poll, read with echo, write, close.
#include "ktt/ktt_data.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "core/share_block.h"
#include "lib/ipc/MsgLine.h"
#include "ptz/ptz_data.h"

int fdKttUart = -1;

namespace {
constexpr char kKttDevice[] = "/dev/ttyS4";
constexpr MsgSource kSource{kTagPtzCntl, "ktt_data"};
constexpr int kLineOpen = 76;
constexpr int kPollMs = 10;
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

// Opened once at start; a second call keeps the open port.
uint32_t KttDeviceOpen() {
    if (fdKttUart >= 0) return 0;
    fdKttUart = open(kKttDevice, O_RDWR | O_NONBLOCK | O_DSYNC);
    if (fdKttUart < 0) {
        ErrLine(kSource, kLineOpen, "Can't open keypad port");
        return 1;
    }
    tcgetattr(fdKttUart, &tOldSet);
    return 0;
}

// The bound is the keypad model count, as the recorder has always checked it. An index that
// passes it but lies beyond the KTT table has no entry and is refused too.
uint32_t KttDeviceInit(uint32_t model) {
    if (model >= ptShare->nKeypadModelCount || model >= GetNumberOfKttModel() || fdKttUart < 0) return 1;
    const KeypadModel& entry = ptKttModelDatabase[model];
    if (entry.ptTermSet != nullptr) {
        struct termios settings = *entry.ptTermSet;
        settings.c_cflag |= entry.dwBaud;
        tcsetattr(fdKttUart, TCSADRAIN, &settings);
        if (ptShare->nPortAssign != kPortAssignPtzOnS0) PTZUartSetAttr(&settings);
    }
    nCurrKttModel = model;
    return 0;
}

uint32_t KttDeviceClose() {
    if (fdKttUart < 0) return 1;
    tcsetattr(fdKttUart, TCSADRAIN, &tOldSet);
    close(fdKttUart);
    fdKttUart = -1;
    return 0;
}

// Also waits the 10 ms while the port is closed (poll passes over a negative descriptor), so
// the main loop keeps its pace.
uint32_t KttDevicePoll() {
    struct pollfd p = {fdKttUart, POLLIN, 0};
    return (poll(&p, 1, kPollMs) > 0 && (p.revents & POLLIN)) ? 0 : 1;
}

uint32_t CheckKttStatus() {
    if (nCurrKttModel == 0) return 1;
    const KeypadModel& entry = ptKttModelDatabase[nCurrKttModel];
    if (entry.CheckStatus == nullptr) return 0;
    return entry.CheckStatus() & 0xFFu;
}

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
