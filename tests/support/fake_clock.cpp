#include "tests/support/fake_clock.h"

#include <sys/sysinfo.h>
#include <sys/times.h>

#include "lib/ipc/Clock.h"

namespace {
bool g_bFake = false;
uint32_t g_nJiffies = 0;
uint32_t g_nUptime = 0;
}  // namespace

namespace fakeclock {
void Set(uint32_t jiffies) { g_bFake = true; g_nJiffies = jiffies; }
void AdvanceMs(uint32_t ms) { g_nJiffies += ms * static_cast<uint32_t>(kHz) / 1000; }
void AdvanceTicks(uint32_t ticks) { g_nJiffies += ticks; }
uint32_t Now() { return g_nJiffies; }
void SetUptime(uint32_t seconds) { g_bFake = true; g_nUptime = seconds; }
void UseReal() { g_bFake = false; }
}  // namespace fakeclock

uint32_t get_jiffies() {
    if (g_bFake) return g_nJiffies;
    return static_cast<uint32_t>(times(nullptr));
}
int32_t get_hz() { return fakeclock::kHz; }
uint32_t GetUptime() {
    if (g_bFake) return g_nUptime;
    struct sysinfo info;
    sysinfo(&info);
    return static_cast<uint32_t>(info.uptime);
}
