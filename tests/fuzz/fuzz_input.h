// Shared pieces of the fuzz targets: reading the fuzz input as a stream of small decisions, the
// recorder's message queue inside the sandbox, and a failure that names what went wrong.
#pragma once
#include <dirent.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/sem.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

#include "lib/ipc/MessageQueue.h"
#include "tools/sim/sandbox_guard.h"

// The input read front to back; once it runs out every read yields 0.
class FuzzInput {
public:
    FuzzInput(const uint8_t* data, size_t size) : m_pData(data), m_nSize(size) {}
    bool Empty() const { return m_nPos >= m_nSize; }
    size_t Left() const { return m_nSize - m_nPos; }
    uint8_t Byte() { return Empty() ? 0 : m_pData[m_nPos++]; }
    uint32_t Word() {
        uint32_t w = 0;
        for (int i = 0; i < 4; ++i) w |= static_cast<uint32_t>(Byte()) << (8 * i);
        return w;
    }
    // A value that is mostly small (the byte itself) and sometimes any 32-bit word: bytes 0xF0
    // and up pick the edges and a raw word, so out-of-range values are reached cheaply.
    uint32_t Value() {
        const uint8_t b = Byte();
        switch (b) {
        case 0xFC: return 0x7FFFFFFFu;
        case 0xFD: return 0x80000000u;
        case 0xFE: return 0xFFFFFFFFu;
        case 0xFF: return Word();
        default: return b;
        }
    }
    // Up to n bytes of the input as they stand; the count taken is returned.
    size_t Bytes(uint8_t* out, size_t n) {
        size_t i = 0;
        for (; i < n && !Empty(); ++i) out[i] = m_pData[m_nPos++];
        return i;
    }

private:
    const uint8_t* m_pData;
    size_t m_nSize;
    size_t m_nPos = 0;
};

#define FUZZ_CHECK(cond)                                                                  \
    do {                                                                                  \
        if (!(cond)) {                                                                    \
            std::fprintf(stderr, "fuzz check failed: %s (%s:%d)\n", #cond, __FILE__, __LINE__); \
            std::abort();                                                                 \
        }                                                                                 \
    } while (0)

// The code under test reports on standard error, unbuffered, often once per call: buffered, the
// lines cost a write per 64 KiB instead of one each (sanitizer reports bypass stdio).
inline void FuzzBufferStderr() {
    static char acBuffer[1 << 16];
    std::setvbuf(stderr, acBuffer, _IOFBF, sizeof acBuffer);
}

// The recorder's queue and semaphore set (identifier 47) in the sandbox's private IPC namespace.
inline int FuzzQueue() {
    static int nQueue = -1;
    if (nQueue < 0) {
        RequireSandbox("fuzz target");
        FuzzBufferStderr();
        nQueue = msgget(IpcKey(kRecorderIpcId), IPC_CREAT | 0600);
        FUZZ_CHECK(nQueue >= 0);
        // The recorder's semaphore set too: the event log takes semaphore 1 around each file.
        const int nSem = semget(IpcKey(kRecorderIpcId), 2, IPC_CREAT | 0600);
        FUZZ_CHECK(nSem >= 0);
        unsigned short anValue[2] = {1, 1};
        FUZZ_CHECK(semctl(nSem, 0, SETALL, anValue) == 0);
    }
    return nQueue;
}

// Takes every message the code under test sent to the recorder's processes (mailboxes 1 to 127),
// so that the queue never fills and a send never blocks. Returns how many there were.
inline int FuzzDrainRecorderMail() {
    MailboxMessage m;
    int n = 0;
    while (msgrcv(FuzzQueue(), &m, kMailboxBodySize, -127, IPC_NOWAIT | MSG_NOERROR) >= 0) ++n;
    return n;
}

// Empties a folder of the sandbox: the log files that events leave on its disks are removed now
// and then, so that a long campaign does not fill its memory.
inline void FuzzRemoveFiles(const char* sDir) {
    DIR* d = opendir(sDir);
    if (d == nullptr) return;
    while (dirent* e = readdir(d)) {
        if (e->d_name[0] == '.') continue;
        char sPath[300];
        std::snprintf(sPath, sizeof sPath, "%s/%s", sDir, e->d_name);
        unlink(sPath);
    }
    closedir(d);
}
