// Fuzz target: the process's message dispatch and main-loop passes. Each input is one life of the
// process: the main application's configuration words, the real start-up, then a stream of
// mailbox records, configuration writes, clock steps and keypad or KTT line bytes, each followed
// by one pass of the real loop, and the real shutdown.
//
// The process's own source is compiled into this target so that its start-up, dispatch and loop
// can be called one pass at a time. Link-time wraps (see tests/CMakeLists.txt) make a pass quick
// and countable: getppid() reports an orphan, so each loop call ends after one pass; the 10 ms
// sleep, the poll and the yield at the end of a pass return at once (a niced campaign beside other
// work waited so long in the yields that one input took 15 s); the shell is not started; the
// single-instance check (which starts pidof) passes; every write to the PTZ line is captured.
//
// Checked after every pass: each channel queue holds 0..31 frames, no frame is longer than its
// slot, no write to the PTZ line is longer than a frame, the keypad ring positions lie in it.
#include <fcntl.h>
#include <poll.h>
#include <sys/shm.h>
#include <sys/socket.h>

#include "core/ptz_cntl.cpp"
#include "ktt/ktt_data.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/support/fake_clock.h"

extern "C" {
ssize_t __real_write(int fd, const void* buf, size_t n);
int __real_poll(struct pollfd* fds, nfds_t n, int timeout);
}

namespace {
int g_fdPtzSink[2] = {-1, -1};   // the PTZ line: the process writes [1], we drain [0]
int g_fdKeypad[2] = {-1, -1};    // the keypad line: we write [1], the process reads [0]
int g_fdKtt[2] = {-1, -1};       // the KTT line: both ways
ShareBlock* g_ptBlock = nullptr; // our own attachment, as the main application holds it
size_t g_nInputs = 0;

void Setup() {
    FuzzQueue();
    const int nShm = shmget(IpcKey(kRecorderIpcId), sizeof(ShareBlock), IPC_CREAT | 0600);
    FUZZ_CHECK(nShm >= 0);
    g_ptBlock = static_cast<ShareBlock*>(shmat(nShm, nullptr, 0));
    FUZZ_CHECK(g_ptBlock != reinterpret_cast<ShareBlock*>(-1));
    FUZZ_CHECK(pipe2(g_fdPtzSink, O_NONBLOCK | O_CLOEXEC) == 0);
    FUZZ_CHECK(pipe2(g_fdKeypad, O_NONBLOCK | O_CLOEXEC) == 0);
    FUZZ_CHECK(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, g_fdKtt) == 0);
}

void Drain(int fd) {
    uint8_t buf[512];
    while (read(fd, buf, sizeof buf) > 0) {
    }
}

// A configuration word of the main application, chosen and written by the input.
void WriteConfig(FuzzInput& in) {
    ShareBlock& s = *g_ptBlock;
    const uint8_t field = in.Byte();
    const uint32_t ch = in.Byte() % kMaxChannels;
    const uint32_t v = in.Value();
    switch (field % 20) {
    case 0: s.nChannels = v; break;
    case 1: case 2: case 3: s.atPtz[ch].nPtzModel = v; break;
    case 4: s.atPtz[ch].nPtzAddress = v; break;
    case 5: s.nVariant = v % 6; break;
    case 6: s.nKttEventEnable = v; break;
    case 7: s.nPortAssign = v; break;
    case 8: s.nKeypadModel = v; break;
    case 9: s.nPosModel = v; break;
    case 10: s.dwKeyFlags = v; break;
    case 11: s.nKeypadSystemIdCfg = v; break;
    case 12: s.bPtzLock1 = static_cast<uint8_t>(v); s.bPtzLock2 = v >> 8; break;
    case 13: s.dwKeypadMenuState = v << 8; break;
    case 14: s.nSwitchOutputs = v; break;
    case 15: s.nPtzModelCount = v; break;
    case 16: s.nKeypadModelCount = v; break;
    case 17: s.nPosModelCount = v; break;
    case 18: s.atPtzLastCmd[ch].nCmd = v; s.atPtzLastCmd[ch].nParam1 = in.Value(); break;
    default: s.bPtzDebug = static_cast<uint8_t>(v); break;
    }
}

void DefaultConfig() {
    ShareBlock& s = *g_ptBlock;
    std::memset(static_cast<void*>(&s), 0, sizeof s);
    s.nChannels = kMaxChannels;
    s.dwKeyFlags = kKeyFlagToRecorder | kKeyFlagMailbox4;
    s.nSwitchOutputs = 4;
    for (uint32_t ch = 0; ch < kMaxChannels; ++ch) {
        s.atPtz[ch].nPtzModel = 12 + ch % 11;   // the Pelco family, Canon, Bosch
        s.atPtz[ch].nPtzAddress = ch + 1;
    }
}

void CheckBounds() {
    for (const PTZSendQueue& q : tGlobal.atQueue) {
        FUZZ_CHECK(q.nWritten - q.nRead >= 0 && q.nWritten - q.nRead < kPTZQueueSlots);
        for (int32_t k = q.nRead; k < q.nWritten; ++k) FUZZ_CHECK(q.atSlot[k % kPTZQueueSlots].nLength <= kPTZFrameMax);
    }
    FUZZ_CHECK(gBufWritePos >= 0 && gBufWritePos < kKeypadRingSize);
    FUZZ_CHECK(gBufReadPos >= 0 && gBufReadPos < kKeypadRingSize);
}

void Pass() {
    tGlobal.bRunning = 1;
    RunLoop();   // one pass: the wrapped getppid() says the parent is gone
    CheckBounds();
    FuzzDrainRecorderMail();
    Drain(g_fdPtzSink[0]);
    Drain(g_fdKtt[1]);
}

void Post(FuzzInput& in) {
    static constexpr uint32_t kCodes[] = {kMsgStop, kMsgAlive, kMsgPtzCommand, kMsgPtzCommand, kMsgPtzCommand,
                                          kMsgKeypadId, kMsgKeypadModel, kMsgPosModel, kMsgKtt};
    const uint8_t sel = in.Byte();
    MailboxMessage m{};
    m.mtype = kOwnMailbox;
    m.nCode = sel < 9 * 25 ? kCodes[sel % 9] : in.Word();
    m.nFrom = in.Byte();
    m.nParam1 = in.Value();
    m.nParam2 = in.Value();
    m.nParam3 = in.Value();
    m.nParam4 = in.Value();
    m.nParam5 = in.Value();
    FUZZ_CHECK(msgsnd(FuzzQueue(), &m, kMailboxBodySize, IPC_NOWAIT) == 0);
}

// Puts our own line ends in place of the files the start-up opened at the device paths.
void PlugLines() {
    if (fdPTZUart >= 0) FUZZ_CHECK(dup2(g_fdPtzSink[1], fdPTZUart) == fdPTZUart);
    if (fdKeypadUart >= 0) FUZZ_CHECK(dup2(g_fdKeypad[0], fdKeypadUart) == fdKeypadUart);
    if (fdKttUart >= 0) FUZZ_CHECK(dup2(g_fdKtt[0], fdKttUart) == fdKttUart);
}
}  // namespace

extern "C" {
// One pass per loop call: the loop sees an orphan and ends after the pass.
pid_t __wrap_getppid() { return 1; }
int __wrap_usleep(useconds_t) { return 0; }
int __wrap_sched_yield() { return 0; }
int __wrap_poll(struct pollfd* fds, nfds_t n, int) { return __real_poll(fds, n, 0); }
int __wrap_system(const char*) { return 0; }
int __wrap__Z19CheckProcessOverlapPKc(const char*) { return 0; }
ssize_t __wrap_write(int fd, const void* buf, size_t n) {
    if (fd >= 0 && fd == fdPTZUart) FUZZ_CHECK(n <= static_cast<size_t>(kPTZFrameMax));
    return __real_write(fd, buf, n);
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pyData, size_t nSize) {
    if (g_ptBlock == nullptr) Setup();
    if (++g_nInputs % 4096 == 0) {
        FuzzRemoveFiles("/mnt/pos");
        FuzzRemoveFiles("/mnt/doc");
    }
    FuzzInput in(pyData, nSize);
    fakeclock::Set(in.Word());
    DefaultConfig();
    for (int n = in.Byte() % 16; n > 0; --n) WriteConfig(in);

    char sName[] = "ptz_cntl";
    char sNumber[] = "7";
    char* argv[] = {sName, sNumber, nullptr};
    const bool bStarted = StartUp(2, argv);
    PlugLines();
    if (bStarted) {
        while (!in.Empty()) {
            const uint8_t op = in.Byte();
            if (op < 0x60) {
                Post(in);
                Pass();
            } else if (op < 0x90) {
                WriteConfig(in);
            } else if (op < 0xB0) {
                fakeclock::AdvanceTicks(in.Value());
                Pass();
            } else if (op < 0xC8) {
                uint8_t bytes[32];
                const size_t n = in.Bytes(bytes, in.Byte() % sizeof bytes);
                FUZZ_CHECK(write(g_fdKeypad[1], bytes, n) == static_cast<ssize_t>(n));
                Pass();
            } else if (op < 0xD8) {
                uint8_t bytes[64];
                const size_t n = in.Bytes(bytes, in.Byte() % sizeof bytes);
                FUZZ_CHECK(write(g_fdKtt[1], bytes, n) == static_cast<ssize_t>(n));
                Pass();
            } else {
                for (int n = op % 32; n >= 0; --n) {
                    fakeclock::AdvanceTicks(1);
                    Pass();
                }
            }
        }
        ShutDown();
    } else {
        PTZUartDeviceClose();
        KeypadDeviceClose();
        if (ptShare != nullptr) DetachMem(ptShare);
        ptShare = nullptr;
    }
    // The start-up's message to itself may still wait when no pass ran.
    MailboxMessage m;
    while (msgrcv(FuzzQueue(), &m, kMailboxBodySize, kOwnMailbox, IPC_NOWAIT | MSG_NOERROR) >= 0) {
    }
    FuzzDrainRecorderMail();
    Drain(g_fdPtzSink[0]);
    Drain(g_fdKeypad[0]);
    Drain(g_fdKtt[1]);
    Drain(g_fdKtt[0]);
    return 0;
}
