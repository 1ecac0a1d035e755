// The PTZ core: command acceptance, the shared last-command record, the per-channel rings,
// pacing by signed tick differences, and the line setting of each frame.
#include <gtest/gtest.h>
#include <termios.h>

#include <cstring>
#include <string>

#include "core/ptz_cntl.h"
#include "ptz/ptz_data.h"
#include "ptz/ptz_model.h"
#include "tests/support/fake_clock.h"
#include "tests/support/pty_pair.h"
#include "tests/support/test_share.h"

namespace {

constexpr uint32_t kPelcoD2400 = 12, kPelcoD9600 = 14, kAN200 = 15;

class PtzCoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        share = ResetTestShare();
        fakeclock::Set(5000);
        PTZInitChannels();
        PTZPublishModels();
        share->nChannels = 16;
        fdPTZUart = pty.slave;
    }
    void TearDown() override { fdPTZUart = -1; }

    void Camera(uint32_t ch, uint32_t model, uint32_t addr) {
        share->atPtz[ch].nPtzModel = model;
        share->atPtz[ch].nPtzAddress = addr;
    }
    int Pending(uint32_t ch) const { return tGlobal.atQueue[ch].nWritten - tGlobal.atQueue[ch].nRead; }
    // One pass of the sender after ms milliseconds; the bytes that reached the line.
    std::vector<uint8_t> PassAfter(uint32_t ms) {
        fakeclock::AdvanceMs(ms);
        CheckPTZQueue();
        return pty.Drain(5);
    }

    ShareBlock* share = nullptr;
    PtyPair pty;
};

// Names and capability words go out in table order; models out of range are reset, status cleared.
TEST_F(PtzCoreTest, PublishesTheModelTableAndResetsBadModels) {
    EXPECT_EQ(share->nPtzModelCount, 43u);
    EXPECT_STREQ(share->asPtzModelName[12], "PELCO, D Protocol 2400 bps");
    EXPECT_EQ(share->adwPtzModelCaps[0], 0u);
    EXPECT_EQ(share->adwPtzModelCaps[14], 0xFC08E503u);
    share->atPtz[3].nPtzModel = 43;
    share->atPtz[4].nPtzModel = 0xFFFFFFFF;
    share->atPtz[5].nPtzModel = 42;
    share->adwPtzStatus[7][6] = 99;
    PTZPublishModels();
    EXPECT_EQ(share->atPtz[3].nPtzModel, 0u);
    EXPECT_EQ(share->atPtz[4].nPtzModel, 0u);
    EXPECT_EQ(share->atPtz[5].nPtzModel, 42u);
    EXPECT_EQ(share->adwPtzStatus[7][6], 0u);
}

TEST_F(PtzCoreTest, RefusesChannelsWithoutValidModelAndStoresNothing) {
    for (uint32_t model : {0u, 43u, 1000u, 0x80000000u}) {
        Camera(2, model, 1);
        EXPECT_EQ(PTZControl(1, 2, PTZCmd_Left, 8, 0, 0, 0), 1u) << model;
        EXPECT_EQ(tGlobal.atChannel[2].nCmd, 0u);
        EXPECT_EQ(share->atPtzLastCmd[2].nCmd, 0u);
        EXPECT_EQ(Pending(2), 0);
    }
}

TEST_F(PtzCoreTest, AcceptedCommandIsStoredForReplayEvenWhenSuppressed) {
    Camera(1, kPelcoD9600, 3);
    ASSERT_EQ(PTZControl(7, 1, PTZCmd_Left, 8, 0, 0, 0), 0u);
    ASSERT_EQ(PTZControl(9, 1, PTZCmd_Left, 5, 6, 7, 0), 0u);   // repeat: no frame
    EXPECT_EQ(Pending(1), 1);
    const SharePtzLastCmd& last = share->atPtzLastCmd[1];
    EXPECT_EQ(last.nSource, 9u);
    EXPECT_EQ(last.nCmd, static_cast<uint32_t>(PTZCmd_Left));
    EXPECT_EQ(last.nParam1, 5u);
    EXPECT_EQ(last.nParam3, 7u);
}

TEST_F(PtzCoreTest, VariantWithoutToursRefusesOnlyTheTourCodes) {
    Camera(0, kPelcoD9600, 1);
    share->nVariant = kVariantNoTour;
    for (uint32_t cmd : {22u, 54u}) {
        EXPECT_EQ(PTZControl(1, 0, cmd, 3, 0, 0, 0), 0u);
        EXPECT_EQ(share->atPtzLastCmd[0].nCmd, 0u);
        EXPECT_EQ(tGlobal.atChannel[0].bStatusActive, 0);
    }
    EXPECT_EQ(PTZControl(1, 0, PTZCmd_PresetGo, 3, 0, 0, 0), 0u);
    EXPECT_EQ(Pending(0), 1);
    share->nVariant = 0;
    EXPECT_EQ(PTZControl(1, 0, PTZCmd_PresetTour, 3, 0, 0, 0), 0u);
    EXPECT_EQ(tGlobal.atChannel[0].bStatusActive, 1);
}

TEST_F(PtzCoreTest, OverflowDropsTheOldestAndReportsEachLoss) {
    Camera(0, kPelcoD9600, 1);
    testing::internal::CaptureStderr();
    for (uint32_t n = 1; n <= 33; ++n) PTZControl(1, 0, PTZCmd_PresetGo, n, 0, 0, 0);
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(err, "Err (ptz_cntl  /ptz_data:375) Lost PTZ data on CH 0\n"
                   "Err (ptz_cntl  /ptz_data:375) Lost PTZ data on CH 0\n");
    EXPECT_EQ(Pending(0), 31);
    // The survivors start with preset 3 and leave in order, the ring's indices wrapping.
    std::vector<uint8_t> wire;
    for (int i = 0; i < 31; ++i) {
        auto b = PassAfter(20);
        wire.insert(wire.end(), b.begin(), b.end());
    }
    ASSERT_EQ(wire.size(), 31u * 7);
    for (uint32_t i = 0; i < 31; ++i) EXPECT_EQ(wire[i * 7 + 5], i + 3) << i;
}

TEST_F(PtzCoreTest, PacesEachChannelByItsCurrentModelsGap) {
    struct Case {
        uint32_t model;
        uint32_t gapMs;
    } cases[] = {{kPelcoD9600, 20}, {kAN200, 60}, {38, 20}, {0, 20}};
    for (const auto& c : cases) {
        SetUp();
        Camera(0, kPelcoD9600, 1);
        PTZControl(1, 0, PTZCmd_PresetGo, 1, 0, 0, 0);
        PTZControl(1, 0, PTZCmd_PresetGo, 2, 0, 0, 0);
        share->atPtz[0].nPtzModel = c.model;   // the gap is the channel's model now
        EXPECT_TRUE(PassAfter(c.gapMs - 10).empty()) << c.model;
        EXPECT_EQ(PassAfter(10).size(), 7u) << c.model;
        EXPECT_TRUE(PassAfter(c.gapMs - 10).empty()) << c.model;
        EXPECT_EQ(PassAfter(10).size(), 7u) << c.model;
    }
}

TEST_F(PtzCoreTest, ChannelsAreServedIndependentlyAndOnlyBelowTheChannelCount) {
    Camera(0, kPelcoD9600, 1);
    Camera(5, kPelcoD9600, 6);
    share->nChannels = 5;
    PTZControl(1, 0, PTZCmd_PresetGo, 1, 0, 0, 0);
    PTZControl(1, 5, PTZCmd_PresetGo, 1, 0, 0, 0);
    fakeclock::AdvanceMs(20);
    EXPECT_EQ(CheckPTZQueue(), 0u);
    EXPECT_EQ(pty.Drain(5).size(), 7u);
    EXPECT_EQ(Pending(5), 1);
    share->nChannels = 6;
    fakeclock::AdvanceMs(20);
    EXPECT_EQ(CheckPTZQueue(), 0u);
    EXPECT_EQ(CheckPTZQueue(), 1u);   // nothing left anywhere
}

TEST_F(PtzCoreTest, TickCounterWrapDoesNotStallTheQueue) {
    fakeclock::Set(0xFFFFFFF8u);
    PTZInitChannels();
    Camera(0, kPelcoD9600, 1);
    PTZControl(1, 0, PTZCmd_PresetGo, 1, 0, 0, 0);
    PTZControl(1, 0, PTZCmd_PresetGo, 2, 0, 0, 0);
    EXPECT_TRUE(PassAfter(10).empty());
    EXPECT_EQ(PassAfter(10).size(), 7u);   // the counter wrapped between start and now
    EXPECT_EQ(PassAfter(20).size(), 7u);
}

TEST_F(PtzCoreTest, EachFrameLeavesWithTheLineSettingOfItsOwnModel) {
    Camera(0, kPelcoD2400, 1);
    Camera(1, kPelcoD9600, 1);
    PTZControl(1, 0, PTZCmd_PresetGo, 1, 0, 0, 0);
    auto b = PassAfter(20);
    struct termios t;
    ASSERT_EQ(tcgetattr(pty.slave, &t), 0);
    EXPECT_EQ(t.c_cflag & CBAUD, static_cast<tcflag_t>(B2400));
    EXPECT_EQ(t.c_cflag & (CSIZE | CSTOPB | PARENB), static_cast<tcflag_t>(CS8));
    PTZControl(1, 1, PTZCmd_PresetGo, 1, 0, 0, 0);
    auto b2 = PassAfter(20);
    ASSERT_EQ(tcgetattr(pty.slave, &t), 0);
    EXPECT_EQ(t.c_cflag & CBAUD, static_cast<tcflag_t>(B9600));
    // Entries 12 and 14 share their driver: same bytes, only the line speed differs.
    EXPECT_EQ(b, b2);
    // A frame keeps the setting of the model that built it, even after the channel changed model.
    PTZControl(1, 0, PTZCmd_PresetGo, 2, 0, 0, 0);
    share->atPtz[0].nPtzModel = kPelcoD9600;
    PassAfter(20);
    ASSERT_EQ(tcgetattr(pty.slave, &t), 0);
    EXPECT_EQ(t.c_cflag & CBAUD, static_cast<tcflag_t>(B2400));
}

TEST_F(PtzCoreTest, StatusRoutinesRunOnlyForArmedChannelsBelowTheCount) {
    Camera(0, kPelcoD9600, 1);
    Camera(1, kPelcoD9600, 2);
    PTZControl(1, 0, PTZCmd_Left, 0, 0, 0, 0);   // level 0: ramp armed
    PTZControl(1, 1, PTZCmd_Left, 0, 0, 0, 0);
    share->nChannels = 1;
    fakeclock::AdvanceMs(300);
    CheckPTZStatus();
    EXPECT_EQ(Pending(0), 2);   // the move, then its first ramp step
    EXPECT_EQ(Pending(1), 1);
    EXPECT_EQ(tGlobal.atChannel[0].tStatusClock, fakeclock::Now());
    const PTZPacket& p = tGlobal.atQueue[0].atSlot[1];
    EXPECT_EQ(p.nModel, kPelcoD9600);
    EXPECT_EQ(p.abData[4], 24);
}

}  // namespace
