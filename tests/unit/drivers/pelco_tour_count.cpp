// Pelco-D and Pelco-P store any tour count, 0 and counts above the preset range included; only
// the extended driver checks the count (see pelco_p.cpp).
#include "ptz/drivers/pm_drivers.h"
#include "tests/unit/drivers/driver_harness.h"

namespace {

TEST(PelcoTour, CountTakenUnchecked) {
    const struct { const char* sName; PTZBuildCmdFn build; } kDrivers[] = {
        {"PelcoD", BuildCmd_PelcoD}, {"PelcoP", BuildCmd_PelcoP}};
    for (const auto& d : kDrivers) {
        for (int32_t n : {0, 1, 300}) {
            SCOPED_TRACE(testing::Message() << d.sName << " count " << n);
            DriverHarness h(d.build, nullptr, 1);
            EXPECT_TRUE(h.Send(PTZCmd_PresetTour, n).empty());
            EXPECT_EQ(h.State().bStatusActive, 1);
            EXPECT_EQ(h.State().nTourCount, static_cast<uint32_t>(n));
            EXPECT_EQ(h.State().nLastCmd, kPTZCmdNone);
        }
    }
}

}  // namespace
