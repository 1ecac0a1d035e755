// Fuzz target: the KTT link's input and event queue. Bytes arrive on the link port in chunks (a
// socket pair stands in for /dev/ttyS4) and are echoed or taken by the active link model;
// KTTMessage queues and logs events of random class, sub-code and target under random variant and
// reporting-path words, and the reporting side takes, fails and delivers them. The queue
// counters must describe at most 63 waiting events and every event taken must be one that was put.
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>


#include "core/share_block.h"
#include "ktt/ktt_data.h"
#include "tests/fuzz/fuzz_input.h"

namespace {
int g_fdLine = -1;   // our end of the link
size_t g_nInputs = 0;

void Setup() {
    static ShareBlock tBlock{};
    ptShare = &tBlock;
    FuzzQueue();
    int fds[2];
    FUZZ_CHECK(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, fds) == 0);
    fdKttUart = fds[0];
    g_fdLine = fds[1];
    tBlock.nKeypadModelCount = 7;   // the bound KttDeviceInit checks
}

void Drain(int fd) {
    uint8_t buf[512];
    while (read(fd, buf, sizeof buf) > 0) {
    }
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pyData, size_t nSize) {
    if (g_fdLine < 0) Setup();
    // Each event is logged: clear the sandbox's log disks now and then.
    if (++g_nInputs % 4096 == 0) {
        FuzzRemoveFiles("/mnt/pos");
        FuzzRemoveFiles("/mnt/doc");
    }
    FuzzInput in(pyData, nSize);
    ptShare->nVariant = in.Byte() & 1 ? kVariantKtt : in.Byte();
    ptShare->nKttEventEnable = in.Byte() % 6;
    ptShare->nPortAssign = in.Byte() % 4;
    KttDeviceInit(in.Byte() % (kKttModelCount + 1));

    while (!in.Empty()) {
        const uint8_t op = in.Byte();
        if (op < 0x80) {
            uint8_t bytes[128];
            const size_t n = in.Bytes(bytes, op);
            FUZZ_CHECK(write(g_fdLine, bytes, n) == static_cast<ssize_t>(n));
            ReceiveKttData();
            Drain(g_fdLine);
        } else if (op < 0xC0) {
            const uint32_t p1 = in.Value(), p2 = in.Value();
            KTTMessage(p1, p2, in.Value());
        } else if (op < 0xE0) {
            KttEvent e{};
            if (KttNextEvent(&e) == 0) {
                FUZZ_CHECK(e.nTarget != kKttTargetNever);
                FUZZ_CHECK((e.dwCode & 0xFF0000FFu) == 0);
            }
            KttEventResult((op & 1) != 0);
        } else if (op < 0xF0) {
            KttWaitPowerOff();
        } else {
            ptShare->nKttEventEnable = in.Value();
            ptShare->nVariant = in.Byte() & 1 ? kVariantKtt : in.Value();
        }
        FuzzDrainRecorderMail();
    }
    // Take what is left, so that every input starts with the event queue empty.
    KttEventResult(true);
    while (KttNextEvent(nullptr) == 0) KttEventResult(true);
    FuzzDrainRecorderMail();
    Drain(fdKttUart);
    return 0;
}
