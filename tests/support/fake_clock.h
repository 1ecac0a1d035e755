// Controllable clock for unit tests, linked in place of the process's clock (lib/ipc/Clock.cpp).
// Each reading is the kernel's until a test sets it; UseReal returns all of them to the kernel.
#pragma once
#include <cstdint>

namespace fakeclock {
constexpr int32_t kHz = 100;
void Set(uint32_t jiffies);        // from now on get_jiffies() returns this value
void AdvanceMs(uint32_t ms);       // moves the fake counter on by ms (at kHz ticks per second)
void AdvanceTicks(uint32_t ticks);
uint32_t Now();
void SetUptime(uint32_t seconds);
void SetWall(uint32_t seconds, uint32_t millis = 0);   // from now on GetWallTime() returns this
void UseReal();                    // back to the kernel's clocks (the default)
}  // namespace fakeclock
