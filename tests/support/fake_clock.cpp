#include "tests/support/fake_clock.h"

#include "lib/ipc/Clock.h"

namespace {
bool g_bFakeTicks = false;
bool g_bFakeUptime = false;
bool g_bFakeWall = false;
uint32_t g_nJiffies = 0;
uint32_t g_nUptime = 0;
WallTime g_tWall{};
}  // namespace

namespace fakeclock {
void Set(uint32_t jiffies) { g_bFakeTicks = true; g_nJiffies = jiffies; }
void AdvanceMs(uint32_t ms) { g_nJiffies += ms * static_cast<uint32_t>(kHz) / 1000; }
void AdvanceTicks(uint32_t ticks) { g_nJiffies += ticks; }
uint32_t Now() { return g_nJiffies; }
void SetUptime(uint32_t seconds) { g_bFakeUptime = true; g_nUptime = seconds; }
void SetWall(uint32_t seconds, uint32_t millis) { g_bFakeWall = true; g_tWall = WallTime{seconds, millis}; }
void UseReal() { g_bFakeTicks = g_bFakeUptime = g_bFakeWall = false; }
}  // namespace fakeclock

uint32_t get_jiffies() { return g_bFakeTicks ? g_nJiffies : kernelclock::Jiffies(); }
int32_t get_hz() { return fakeclock::kHz; }
uint32_t GetUptime() { return g_bFakeUptime ? g_nUptime : kernelclock::Uptime(); }
WallTime GetWallTime() { return g_bFakeWall ? g_tWall : kernelclock::Wall(); }
