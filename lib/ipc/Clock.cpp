// The process's clock: the kernel's readings (test programs link tests/support/fake_clock instead).
#include "lib/ipc/Clock.h"

uint32_t get_jiffies() { return kernelclock::Jiffies(); }
int32_t get_hz() { return kernelclock::Hz(); }
uint32_t GetUptime() { return kernelclock::Uptime(); }
WallTime GetWallTime() { return kernelclock::Wall(); }
