// Opening, model set-up, polling and closing of the keypad and KTT serial ports.
#include "keypad/keypad_port.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "core/share_block.h"
#include "ptz/ptz_data.h"

namespace {
constexpr int kPollMs = 10;
// The open failure names no line of its own; both ports report this one.
constexpr int kLineOpen = 76;
}  // namespace

uint32_t KeypadPortOpen(int* pFd, const char* sDevice, int nAccess, struct termios* ptOld, const MsgSource& source) {
    *pFd = open(sDevice, nAccess | O_NONBLOCK | O_DSYNC);
    if (*pFd < 0) {
        ErrLine(source, kLineOpen, "Can't open keypad port");
        return 1;
    }
    tcgetattr(*pFd, ptOld);
    return 0;
}

// The bound is the keypad model count for the KTT link too, as the recorder has always checked it.
uint32_t KeypadPortInit(int fd, const KeypadModel* ptTable, uint32_t nTable, uint32_t model, int nWhen,
                        uint32_t* pnActive) {
    if (model >= ptShare->nKeypadModelCount || model >= nTable || fd < 0) return 1;
    const KeypadModel& tModel = ptTable[model];
    if (tModel.ptTermSet != nullptr) {
        struct termios t = *tModel.ptTermSet;
        t.c_cflag |= tModel.dwBaud;
        tcsetattr(fd, nWhen, &t);
        if (ptShare->nPortAssign != kPortAssignPtzOnS0) PTZUartSetAttr(&t);
    }
    *pnActive = model;
    return 0;
}

uint32_t KeypadPortPoll(int fd) {
    struct pollfd p = {fd, POLLIN, 0};
    return (poll(&p, 1, kPollMs) > 0 && (p.revents & POLLIN) != 0) ? 0 : 1;
}

uint32_t KeypadPortStatus(const KeypadModel* ptTable, uint32_t nActive) {
    if (nActive == 0) return 1;
    const KeypadCheckStatusFn fn = ptTable[nActive].CheckStatus;
    return fn != nullptr ? fn() & 0xFFu : 0;
}

uint32_t KeypadPortClose(int* pFd, const struct termios& tOld) {
    if (*pFd < 0) return 1;
    tcsetattr(*pFd, TCSADRAIN, &tOld);
    close(*pFd);
    *pFd = -1;
    return 0;
}
