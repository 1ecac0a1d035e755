// The wall clock of the text-insertion records. Kept alone in this file: a test program that
// defines PosClockRead itself never pulls this one from the library.
#include <time.h>

#include "pos/sm_common.h"

PosTimeb PosClockRead() {
    struct timespec ts{};
    clock_gettime(CLOCK_REALTIME, &ts);
    return PosTimeb{static_cast<uint32_t>(ts.tv_sec), static_cast<uint32_t>(ts.tv_nsec / 1000000)};
}
