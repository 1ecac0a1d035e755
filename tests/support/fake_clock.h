// Controllable clock for unit tests: replaces the real tick counter at link time.
#pragma once
#include <cstdint>

namespace fakeclock {
constexpr int32_t kHz = 100;
void Set(uint32_t jiffies);        // from now on get_jiffies() returns this value
void AdvanceMs(uint32_t ms);       // moves the fake counter on by ms (at kHz ticks per second)
void AdvanceTicks(uint32_t ticks);
uint32_t Now();
void SetUptime(uint32_t seconds);
void UseReal();                    // back to the kernel's clock (the default)
}  // namespace fakeclock
