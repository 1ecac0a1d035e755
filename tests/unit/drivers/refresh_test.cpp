// Cameras that stop by themselves shortly after the last frame: the status routine re-sends the
// held move, zoom or focus frame at the driver's period until the stop, one frame per period per
// channel, and nothing for anything else.
#include "tests/unit/drivers/driver_harness.h"

namespace {

struct Refreshing {
    const char* sName;
    uint32_t nModel;
    uint32_t nPeriodMs;
    bool bSpeedFirst = false;   // a move starts with a speed frame that reminders leave out
};

const Refreshing kRefreshing[] = {
    {"MeritLilin", 2, 200},
    {"LgLptA100L", 9, 400, true},
    {"Panasonic", 23, 200},
    {"AmericanDynamics", 29, 10000},
};

class Refresh : public testing::TestWithParam<Refreshing> {};

// Each held action comes again, the same frames, every period, also across the counter's wrap;
// its stop ends that at once.
TEST_P(Refresh, HeldActionIsResentUntilItsStop) {
    const Refreshing& r = GetParam();
    for (uint32_t tStart : {1000u, 0xFFFFFF00u}) {
        for (uint32_t nCmd : {PTZCmd_Left, PTZCmd_DownRight, PTZCmd_ZoomTele, PTZCmd_FocusFar}) {
            SCOPED_TRACE(testing::Message() << "code " << nCmd << " from " << tStart);
            DriverHarness h(r.nModel, 1, tStart);
            Frames held = h.Send(nCmd, 5);
            ASSERT_FALSE(held.empty());
            if (r.bSpeedFirst && PTZMeaningOf(nCmd).eAction == PTZAction::Move)
                held.erase(held.begin());
            for (int i = 0; i < 3; ++i) {
                EXPECT_TRUE(h.RunMs(r.nPeriodMs - 10).empty());
                EXPECT_EQ(h.RunMs(10), held);
            }
            // A repeat of the held code (a key that auto-repeats) changes nothing.
            EXPECT_TRUE(h.Send(nCmd, 5).empty());
            EXPECT_TRUE(h.RunMs(r.nPeriodMs - 10).empty());
            EXPECT_EQ(h.RunMs(10), held);
            h.Send(nCmd + 32);
            EXPECT_TRUE(h.RunMs(3 * r.nPeriodMs).empty());
            EXPECT_EQ(h.State().bStatusActive, 0);
        }
    }
}

// A level-0 move still ramps; the refresh then carries the speed the ramp has reached.
TEST_P(Refresh, RefreshCarriesTheRampedSpeed) {
    const Refreshing& r = GetParam();
    DriverHarness h(r.nModel, 1);
    h.Send(PTZCmd_Up, 0);
    h.RunMs(kPTZRampTopMs);
    Frames last;
    for (int i = 0; i < 3; ++i) {
        Frames f = h.RunMs(r.nPeriodMs);
        ASSERT_FALSE(f.empty());
        if (i > 0) {
            EXPECT_EQ(f, last);
        }
        last = f;
    }
}

// One-shot commands and switches are never repeated.
TEST_P(Refresh, OneShotCommandsAreNotRepeated) {
    const Refreshing& r = GetParam();
    for (uint32_t nCmd : {PTZCmd_PresetGo, PTZCmd_MenuOn, PTZCmd_CameraOn, PTZCmd_IrisOpen}) {
        DriverHarness h(r.nModel, 1);
        h.Send(nCmd, 1);
        EXPECT_TRUE(h.RunMs(5 * r.nPeriodMs).empty()) << nCmd;
    }
}

// Two channels holding moves at once each get one frame per period, no more.
TEST_P(Refresh, OneFramePerPeriodPerChannel) {
    const Refreshing& r = GetParam();
    DriverHarness h(r.nModel, 1);
    ptShare->nChannels = 2;
    ptShare->atPtz[1].nPtzModel = r.nModel;
    ptShare->atPtz[1].nPtzAddress = 2;
    PTZControl(1, 0, PTZCmd_Left, 5, 0, 0, 0);
    PTZControl(1, 1, PTZCmd_ZoomWide, 5, 0, 0, 0);
    int nQueued[2] = {};
    for (int ch = 0; ch < 2; ++ch) tGlobal.atQueue[ch].nRead = tGlobal.atQueue[ch].nWritten;
    for (uint32_t t = 0; t < 10 * r.nPeriodMs; t += 10) {
        fakeclock::AdvanceMs(10);
        CheckPTZStatus();
        for (int ch = 0; ch < 2; ++ch) {
            PTZSendQueue& q = tGlobal.atQueue[ch];
            nQueued[ch] += q.nWritten - q.nRead;
            q.nRead = q.nWritten;
        }
    }
    for (int ch = 0; ch < 2; ++ch) EXPECT_EQ(nQueued[ch], 10) << "channel " << ch;
}

INSTANTIATE_TEST_SUITE_P(Drivers, Refresh, testing::ValuesIn(kRefreshing),
                         [](const testing::TestParamInfo<Refreshing>& i) { return i.param.sName; });

// Cameras that hold an action until told to stop get no reminders.
TEST(Refresh, CamerasThatHoldTheirActionsAreNotReminded) {
    for (uint32_t nModel : {4u, 14u, 19u, 22u, 27u}) {
        DriverHarness h(nModel, 1);
        h.Send(PTZCmd_Left, 5);
        EXPECT_TRUE(h.RunMs(20000).empty()) << nModel;
    }
}

}  // namespace
