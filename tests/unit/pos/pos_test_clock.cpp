// The record clock of the test program, linked in place of the library's wall clock.
#include <cstdio>

#include "tests/unit/pos/pos_test_util.h"

namespace {
PosTimeb tNow{postest::kT0, 129};
}

PosTimeb PosClockRead() { return tNow; }

void postest::SetClock(uint32_t dwSeconds, uint32_t nMillis) { tNow = PosTimeb{dwSeconds, nMillis}; }

std::string postest::Stamp() {
    char s[32];
    std::snprintf(s, sizeof s, "%u.%02u", tNow.dwTime, tNow.nMillitm / 10);
    return s;
}
