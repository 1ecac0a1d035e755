// Process clocks: the kernel's tick counter, its rate, the system uptime and the wall clock.
// Tick times are compared only through their signed 32-bit difference (see TickReached).
//
// The four readings below are the process's only way to the time. They are defined in Clock.cpp,
// which programs link as an object of their own, so that a test program links a controllable
// clock in its place (tests/support/fake_clock); the kernel readings themselves are in
// kernelclock, for both.
#pragma once
#include <cstdint>

// One wall-clock reading with millisecond resolution.
struct WallTime {
    uint32_t dwTime;      // seconds since the epoch (UTC)
    uint32_t nMillitm;    // 0 to 999
};

uint32_t get_jiffies();
int32_t get_hz();
uint32_t GetUptime();
WallTime GetWallTime();

// Ticks in an interval of ms milliseconds (signed division, as every user of the clock computes it).
inline int32_t MsToTicks(int32_t ms) { return get_hz() * ms / 1000; }
// True once the deadline has been reached: (i32)(now - deadline) >= 0.
inline bool TickReached(uint32_t now, uint32_t deadline) {
    return static_cast<int32_t>(now - deadline) >= 0;
}

namespace kernelclock {
uint32_t Jiffies();   // times(); minus errno when it fails
int32_t Hz();         // sysconf(_SC_CLK_TCK), asked once
uint32_t Uptime();    // sysinfo's uptime; Jiffies() / Hz() when sysinfo fails
WallTime Wall();      // CLOCK_REALTIME
}  // namespace kernelclock
