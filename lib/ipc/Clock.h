// Process clocks: the kernel's tick counter, its rate, and the system uptime.
// Tick times are compared only through their signed 32-bit difference (see TickPassed).
#pragma once
#include <cstdint>

uint32_t get_jiffies();
int32_t get_hz();
uint32_t GetUptime();

// Ticks in an interval of ms milliseconds (signed division, as every user of the clock computes it).
inline int32_t MsToTicks(int32_t ms) { return get_hz() * ms / 1000; }
// True once the deadline has been reached: (i32)(now - deadline) >= 0.
inline bool TickReached(uint32_t now, uint32_t deadline) {
    return static_cast<int32_t>(now - deadline) >= 0;
}
