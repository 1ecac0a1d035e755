// The kernel's clocks, read for the process's clock (Clock.cpp) and for the test clock alike.
#include <sys/sysinfo.h>
#include <sys/times.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>

#include "lib/ipc/Clock.h"

namespace {
int32_t g_nHz = -1;   // asked once, kept
}

namespace kernelclock {
uint32_t Jiffies() {
    clock_t t = times(nullptr);
    if (t == static_cast<clock_t>(-1)) return static_cast<uint32_t>(-errno);
    return static_cast<uint32_t>(t);
}

int32_t Hz() {
    if (g_nHz == -1) g_nHz = static_cast<int32_t>(sysconf(_SC_CLK_TCK));
    return g_nHz;
}

uint32_t Uptime() {
    struct sysinfo info;
    if (sysinfo(&info) != 0) return static_cast<uint32_t>(static_cast<int32_t>(Jiffies()) / Hz());
    return static_cast<uint32_t>(info.uptime);
}

WallTime Wall() {
    struct timespec ts{};
    clock_gettime(CLOCK_REALTIME, &ts);
    return WallTime{static_cast<uint32_t>(ts.tv_sec), static_cast<uint32_t>(ts.tv_nsec / 1000000)};
}
}  // namespace kernelclock
