// Preloaded (LD_PRELOAD) into a program under test whose serial port is a pseudo-terminal.
//
// A pseudo-terminal keeps no parity: the kernel clears PARENB whatever is asked. A UART keeps what
// it was set to, and a program that compares the setting it reads with the one it wants (as the
// PTZ sender does before reprogramming the line) behaves differently on the two. For
// pseudo-terminals only, this remembers the parity asked of each device, gives it back from
// tcgetattr as a UART would, and records the control word asked for where the simulator reads it
// (PtyControlFlags in tools/sim/serial_line.h). Everything else passes through untouched.
//
// Plain C library calls only: the program may carry its own C++ runtime.
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "tools/sim/serial_line.h"

namespace {

constexpr tcflag_t kParity = PARENB | PARODD;

// The record's path for the pseudo-terminal behind fd; false for anything else.
bool RecordPath(int fd, char* sPath, size_t nSize) {
    struct stat st;
    if (fstat(fd, &st) != 0 || !S_ISCHR(st.st_mode)) return false;
    const unsigned nMajor = major(st.st_rdev);
    if (nMajor < 136 || nMajor > 143) return false;
    std::snprintf(sPath, nSize, "%s/%lx", kPtySettingDir, static_cast<unsigned long>(st.st_rdev));
    return true;
}

// The C library's own functions, looked up on first use (no guarded statics: they would need the
// C++ runtime).
using GetFn = int (*)(int, struct termios*);
using SetFn = int (*)(int, int, const struct termios*);
GetFn g_realGet = nullptr;
SetFn g_realSet = nullptr;

int RealGet(int fd, struct termios* t) {
    if (g_realGet == nullptr) g_realGet = reinterpret_cast<GetFn>(dlsym(RTLD_NEXT, "tcgetattr"));
    return g_realGet(fd, t);
}

int RealSet(int fd, int nWhen, const struct termios* t) {
    if (g_realSet == nullptr) g_realSet = reinterpret_cast<SetFn>(dlsym(RTLD_NEXT, "tcsetattr"));
    return g_realSet(fd, nWhen, t);
}

}  // namespace

// The C library reports the parity the kernel dropped as a failure; a UART would have taken it.
extern "C" int tcsetattr(int fd, int nWhen, const struct termios* t) {
    int r = RealSet(fd, nWhen, t);
    char sPath[128];
    if (!RecordPath(fd, sPath, sizeof sPath)) return r;
    struct termios tNow;
    if (r != 0 && errno == EINVAL && RealGet(fd, &tNow) == 0 &&
        ((tNow.c_cflag ^ t->c_cflag) & ~kParity) == 0)
        r = 0;
    if (r == 0) {
        mkdir(kPtySettingDir, 0777);
        const int f = open(sPath, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        if (f >= 0) {
            char s[32];
            const unsigned long dwAsked = t->c_cflag;
            const int n = std::snprintf(s, sizeof s, "%lx\n", dwAsked);
            if (write(f, s, static_cast<size_t>(n)) != n) unlink(sPath);
            close(f);
        }
    }
    return r;
}

extern "C" int tcgetattr(int fd, struct termios* t) {
    const int r = RealGet(fd, t);
    char sPath[128];
    if (r != 0 || !RecordPath(fd, sPath, sizeof sPath)) return r;
    const int f = open(sPath, O_RDONLY | O_CLOEXEC);
    if (f < 0) return r;
    char s[32] = {};
    if (read(f, s, sizeof s - 1) > 0) {
        const tcflag_t dwAsked = static_cast<tcflag_t>(std::strtoul(s, nullptr, 16));
        t->c_cflag = (t->c_cflag & ~kParity) | (dwAsked & kParity);
    }
    close(f);
    return r;
}
