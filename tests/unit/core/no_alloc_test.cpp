// The PTZ, keypad and KTT paths allocate no memory once the process runs. This program replaces
// the C library's allocator entry points (operator new goes through them too) with counting
// ones, then drives each path over pseudo-terminal lines: commands, ramps, tours and the paced
// sender on all channels; keypad frames, noise and a model change; KTT bytes, events and the
// reporting side. One warm-up round first lets the C library make its one-time allocations
// (time zone, stream buffers); every later round must allocate nothing.
#include <fcntl.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/sem.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <new>

#include <gtest/gtest.h>

#include "core/ptz_cntl.h"
#include "keypad/keypad_data.h"
#include "ktt/ktt_data.h"
#include "lib/ipc/MessageQueue.h"
#include "ptz/ptz_model.h"
#include "tests/support/fake_clock.h"
#include "tests/support/pty_pair.h"
#include "tests/support/test_share.h"

namespace {
bool g_bCounting = false;
size_t g_nAllocations = 0;
}  // namespace

// The address sanitizer brings its own allocator; under it the count is not taken.
#if !defined(__SANITIZE_ADDRESS__)
extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void* __libc_memalign(size_t, size_t);
void __libc_free(void*);

void* malloc(size_t n) {
    g_nAllocations += g_bCounting;
    return __libc_malloc(n);
}
void* calloc(size_t n, size_t size) {
    g_nAllocations += g_bCounting;
    return __libc_calloc(n, size);
}
void* realloc(void* p, size_t n) {
    g_nAllocations += g_bCounting;
    return __libc_realloc(p, n);
}
void* memalign(size_t align, size_t n) {
    g_nAllocations += g_bCounting;
    return __libc_memalign(align, n);
}
void* aligned_alloc(size_t align, size_t n) { return memalign(align, n); }
int posix_memalign(void** out, size_t align, size_t n) {
    *out = memalign(align, n);
    return *out != nullptr ? 0 : ENOMEM;
}
void free(void* p) { __libc_free(p); }
}

// C++ allocations counted here too, whatever route the C++ runtime takes to the C library.
void* operator new(size_t n) {
    if (void* p = malloc(n != 0 ? n : 1)) return p;
    throw std::bad_alloc();
}
void* operator new[](size_t n) { return operator new(n); }
void operator delete(void* p) noexcept { free(p); }
void operator delete[](void* p) noexcept { free(p); }
void operator delete(void* p, size_t) noexcept { free(p); }
void operator delete[](void* p, size_t) noexcept { free(p); }
#endif

namespace {
void Send(const PtyPair& line, std::initializer_list<uint8_t> bytes) {
    ASSERT_EQ(write(line.master, bytes.begin(), bytes.size()), static_cast<ssize_t>(bytes.size()));
}

void DrainMail() {
    MailboxMessage m;
    const int q = msgget(IpcKey(kRecorderIpcId), 0);
    while (msgrcv(q, &m, kMailboxBodySize, 0, IPC_NOWAIT | MSG_NOERROR) >= 0) {
    }
}

class NoAllocation : public ::testing::Test {
protected:
    void SetUp() override {
        ShareBlock* s = ResetTestShare();
        s->nChannels = kMaxChannels;
        s->dwKeyFlags = kKeyFlagToRecorder | kKeyFlagMailbox4;
        s->nSwitchOutputs = 4;
        s->nVariant = kVariantKtt;
        s->nKttEventEnable = 3;   // events are queued, no transmission
        for (uint32_t ch = 0; ch < kMaxChannels; ++ch) {
            s->atPtz[ch].nPtzAddress = ch + 1;
        }
        ASSERT_GE(msgget(IpcKey(kRecorderIpcId), IPC_CREAT | 0600), 0);
        const int sem = semget(IpcKey(kRecorderIpcId), 2, IPC_CREAT | 0600);
        ASSERT_GE(sem, 0);
        unsigned short values[2] = {1, 1};   // the log lock is free
        ASSERT_EQ(semctl(sem, 0, SETALL, values), 0);
        PTZInitChannels();
        PTZPublishModels();
        KeypadPublishModels();
        KttPublishModels();
        fdPTZUart = ptz.slave;
        fdKeypadUart = keypad.slave;
        fcntl(fdKeypadUart, F_SETFL, O_NONBLOCK);
        fdKttUart = ktt.slave;
        fcntl(fdKttUart, F_SETFL, O_NONBLOCK);
        ASSERT_EQ(KeypadDeviceInit(1), 0u);
        fakeclock::Set(1000);
    }
    void TearDown() override {
        fdPTZUart = fdKeypadUart = fdKttUart = -1;
        fakeclock::UseReal();
    }

    // Runs a path once to warm up, then counts the allocations of `rounds` more runs.
    size_t Count(const std::function<void()>& path, int rounds = 20) {
        path();
        size_t n = 0;
        for (int i = 0; i < rounds; ++i) {
            g_nAllocations = 0;
            g_bCounting = true;
            path();
            g_bCounting = false;
            n += g_nAllocations;
            ptz.Drain(0);
            ktt.Drain(0);
            DrainMail();
        }
        return n;
    }

    PtyPair ptz, keypad, ktt;
};

TEST_F(NoAllocation, PtzKeypadAndKttPaths) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the address sanitizer replaces the allocator: allocations are counted in the other builds";
#endif
    struct Path { const char* sName; std::function<void()> run; };
    const Path kPaths[] = {
        {"PTZ commands, status and sender", [] {
             // Each run moves every channel on to the next models, so that every driver of the
             // table (and an index past its end) runs here.
             static uint32_t nFirstModel = 0;
             for (uint32_t ch = 0; ch < kMaxChannels; ++ch)
                 ptShare->atPtz[ch].nPtzModel = (nFirstModel + ch) % (kPTZModelCount + 1);
             nFirstModel += kMaxChannels;
             static const uint32_t kCmds[][2] = {{15, 0}, {47, 0}, {17, 5}, {49, 0}, {22, 3}, {81, 0x90},
                                                 {113, 0}, {80, 7}, {21, 9}, {72, 0}, {29, 0}, {7, 0}, {54, 0}};
             for (const auto& c : kCmds) {
                 for (uint32_t ch = 0; ch < kMaxChannels; ++ch) PTZControl(1, ch, c[0], c[1], 5, 0x85, 0);
                 for (int pass = 0; pass < 40; ++pass) {
                     fakeclock::AdvanceMs(100);
                     CheckPTZStatus();
                     CheckPTZQueue();
                 }
             }
         }},
        {"keypad frames, noise and model change", [this] {
             Send(keypad, {0xAA, 0x01, 0x02, 0x00, 0xAD});                         // PLAY
             Send(keypad, {0xAA, 0x01, 0x80, 0x02, 0x80, 0x20, 0x00, 0xCD});       // joystick right, ch 2
             Send(keypad, {0x13, 0xAA, 0x00, 0x80, 0x02, 0x80, 0x00, 0x00, 0xAC}); // noise, centre
             for (int turn = 0; turn < 6; ++turn) ReceiveKeypadData();
             KeypadDeviceInit(4);
             Send(keypad, {0xA1, 0x00, 0x23, 0x00, 0xAF, 0xA1, 0x00, 0x80, 0xA0, 0xAF, 0xA1, 0x00, 0x80, 0x00, 0xAF});
             ptShare->bKeypadDebug = 1;   // the chunk dump on standard output
             ReceiveKeypadData();
             ptShare->bKeypadDebug = 0;
             for (int turn = 0; turn < 5; ++turn) ReceiveKeypadData();
             KeypadDeviceInit(1);
             CheckKeypadStatus();
             KeypadDevicePoll();
             CheckPTZQueue();
         }},
        {"KTT bytes and events", [this] {
             Send(ktt, {0x41, 0x54, 0x0D, 0x0A, 0x00, 0xFF});
             ReceiveKttData();
             KTTMessage(0xD4, 1, 3);
             KTTMessage(5, 1, 0);
             KTTMessage(8, 2, 1);
             KttEvent e;
             while (KttNextEvent(&e) == 0) KttEventResult(true);
             CheckKttStatus();
             KttDevicePoll();
         }},
    };
    for (const Path& p : kPaths) EXPECT_EQ(Count(p.run), 0u) << p.sName;
}
}  // namespace
