// A channel's session as a table: commands and waits, each with the frames it must yield.
#pragma once
#include <vector>

#include "tests/unit/drivers/driver_harness.h"

constexpr uint32_t kWait = 0xFFFF;   // a step that runs main-loop passes instead of a command

struct Step {
    uint32_t nCmd;          // a command, or kWait
    int32_t p1;             // its p1, or the milliseconds to wait
    const char* sFrames;    // the frames queued by the step, as for Hex
};

inline void ExpectSession(uint32_t nModel, uint32_t nAddress, const std::vector<Step>& steps) {
    DriverHarness h(nModel, nAddress);
    for (size_t i = 0; i < steps.size(); ++i) {
        const Step& s = steps[i];
        const Frames got =
            s.nCmd == kWait ? h.RunMs(static_cast<uint32_t>(s.p1)) : h.Send(s.nCmd, s.p1);
        EXPECT_EQ(got, Hex(s.sFrames)) << "model " << nModel << " step " << i;
    }
}
