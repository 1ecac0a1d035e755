// Tick counter, tick rate and uptime.
#include "lib/ipc/Clock.h"

#include <sys/sysinfo.h>
#include <sys/times.h>
#include <unistd.h>

#include <cerrno>

namespace {
int32_t g_nHz = -1;   // asked once, kept
}

uint32_t get_jiffies() {
    clock_t t = times(nullptr);
    if (t == static_cast<clock_t>(-1)) return static_cast<uint32_t>(-errno);
    return static_cast<uint32_t>(t);
}

int32_t get_hz() {
    if (g_nHz == -1) g_nHz = static_cast<int32_t>(sysconf(_SC_CLK_TCK));
    return g_nHz;
}

uint32_t GetUptime() {
    struct sysinfo info;
    if (sysinfo(&info) != 0) return static_cast<uint32_t>(static_cast<int32_t>(get_jiffies()) / get_hz());
    return static_cast<uint32_t>(info.uptime);
}
