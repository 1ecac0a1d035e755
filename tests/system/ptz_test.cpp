// PTZ commands from the main application to the bytes on the camera line: frames, their
// spacing, the line setting, and what is stored for a restart.
#include <unistd.h>

#include "ptz/drivers/pm_common.h"
#include "tests/system/harness.h"

namespace {

constexpr uint32_t kPelcoD2400 = 12, kPelcoD9600 = 14, kPelcoP4800 = 18, kAN200 = 15;

// A Pelco-D frame: sync, address, the two command bytes, the two data bytes, the sum of bytes 1-5.
std::vector<uint8_t> PelcoD(int address, int cmd1, int cmd2, int data1, int data2) {
    return Bytes({0xFF, address, cmd1, cmd2, data1, data2, (address + cmd1 + cmd2 + data1 + data2) & 0xFF});
}
std::vector<uint8_t> GoTo(int address, int preset) { return PelcoD(address, 0, 0x07, 0, preset); }

// Frames leave decoded as the camera reads them, each with the line setting of its own model
// (one at a time: the observer reads the setting when the bytes arrive).
TEST_F(SystemTest, FramesReachTheLineWithTheirModelsSetting) {
    Camera(0, kPelcoD9600, 1);
    Camera(1, kPelcoP4800, 1);
    Camera(2, kPelcoD2400, 1);
    ASSERT_TRUE(StartAndWait());
    const struct {
        uint32_t ch, cmd, p1;
        std::vector<uint8_t> bytes;
        const char* setting;
    } cases[] = {
        {0, 15, 8, Bytes({0xFF, 0x01, 0x00, 0x04, 0x3F, 0x00, 0x44}), "9600 8N1"},
        {1, 80, 1, Bytes({0xA0, 0x00, 0x00, 0x07, 0x00, 0x01, 0xAF, 0x09}), "4800 8N1"},
        {2, 80, 1, Bytes({0xFF, 0x01, 0x00, 0x07, 0x00, 0x01, 0x09}), "2400 8N1"},
    };
    for (const auto& c : cases) {
        Ptz(c.ch, c.cmd, c.p1);
        auto frames = ExpectPtz({c.bytes}, 1000);
        ASSERT_EQ(frames.size(), 1u) << c.ch;
        EXPECT_EQ(frames[0].sSetting, c.setting) << c.ch;
    }
    Ptz(0, 80, 1);
    auto frames = ExpectPtz({GoTo(1, 1)}, 1000);
    ASSERT_EQ(frames.size(), 1u);
    EXPECT_EQ(frames[0].Describe(), "Pelco-D addr 1: go to preset 1");
    EXPECT_EQ(StopAndWait(), 0);
}

class PacingTest : public SystemTest {
protected:
    // Queues six frames on channel 0 and one on channel 1 while the sender serves no channel
    // (channel count 0), then lets them leave with channel 0 set to gapModel: the gap is that of
    // the channel's model at sending time, while the frames were built by Pelco-D. The process
    // paces by its clock ticks (10 ms), so a single gap may be up to one tick shorter in wall
    // time; the span over five gaps may not.
    void ExpectPacing(uint32_t gapModel, double gap) {
        Camera(0, kPelcoD9600, 1);
        Camera(1, kPelcoD9600, 2);
        ASSERT_TRUE(StartAndWait());
        rec->Share().nChannels = 0;
        for (uint32_t n = 1; n <= 6; ++n) Ptz(0, 80, n);   // go to presets 1..6 back to back
        Ptz(1, 80, 9);
        usleep(300000);   // one message per pass: all taken by now
        rec->Share().atPtz[0].nPtzModel = gapModel;
        rec->Share().nChannels = 16;
        // Channel 1's frame leaves in the first pass beside channel 0's first: it is not held back.
        auto frames =
            ExpectPtz({GoTo(1, 1), GoTo(2, 9), GoTo(1, 2), GoTo(1, 3), GoTo(1, 4), GoTo(1, 5), GoTo(1, 6)}, 3000);
        rec->Share().atPtz[0].nPtzModel = kPelcoD9600;
        ASSERT_EQ(frames.size(), 7u);
        std::vector<double> times = {frames[0].tSeconds};
        for (size_t i = 2; i < frames.size(); ++i) times.push_back(frames[i].tSeconds);
        constexpr double kTick = 0.010, kJitter = 0.003;
        // Two frames read in one chunk (the observer was late) tell nothing about their gap; the
        // span over all five gaps still does.
        for (size_t i = 1; i < times.size(); ++i)
            if (times[i] != times[i - 1]) {
                EXPECT_GE(times[i] - times[i - 1], gap - kTick - kJitter) << i;
            }
        EXPECT_GE(times[5] - times[0], 5 * gap - kTick - kJitter);
        EXPECT_EQ(StopAndWait(), 0);
    }
};

TEST_F(PacingTest, FramesOfOneChannelAreAtLeastTwentyMillisecondsApart) { ExpectPacing(kPelcoD9600, 0.020); }

TEST_F(PacingTest, ModelWithSixtyMillisecondGapIsPacedAtSixty) { ExpectPacing(kAN200, 0.060); }

TEST_F(SystemTest, SpeedRampAndPresetTourRunFromTheStatusRoutine) {
    Camera(0, kPelcoD9600, 1);
    ASSERT_TRUE(StartAndWait());
    Ptz(0, 17, 0);   // right, no speed given: pan speed 4, then 24 and 56
    auto ramp = ExpectPtz({PelcoD(1, 0, 0x02, 4, 0), PelcoD(1, 0, 0x02, 24, 0), PelcoD(1, 0, 0x02, 56, 0)},
                          kPTZRampTopMs + 500);
    ASSERT_EQ(ramp.size(), 3u);
    EXPECT_NEAR(ramp[1].tSeconds - ramp[0].tSeconds, kPTZRampMiddleMs / 1000.0, 0.1);
    EXPECT_NEAR(ramp[2].tSeconds - ramp[0].tSeconds, kPTZRampTopMs / 1000.0, 0.1);

    Ptz(0, 22, 2);   // tour over presets 1 and 2
    auto tour = ExpectPtz({GoTo(1, 1), GoTo(1, 2), GoTo(1, 1)}, 3 * kPTZTourDwellMs + 1000);
    ASSERT_EQ(tour.size(), 3u);
    EXPECT_NEAR(tour[1].tSeconds - tour[0].tSeconds, kPTZTourDwellMs / 1000.0, 0.15);
    EXPECT_NEAR(tour[2].tSeconds - tour[1].tSeconds, kPTZTourDwellMs / 1000.0, 0.15);
    Ptz(0, 54);
    ExpectPtz({}, kPTZTourDwellMs + 500);
    EXPECT_EQ(StopAndWait(), 0);
}

TEST_F(SystemTest, LastCommandIsStoredAndReplayedAfterRestart) {
    Camera(4, kPelcoD9600, 5);
    ASSERT_TRUE(StartAndWait());
    Ptz(4, 0);   // automatic pan on
    ExpectPtz({PelcoD(5, 0x90, 0, 0, 0)}, 1000);
    const SharePtzLastCmd& last = rec->Share().atPtzLastCmd[4];
    EXPECT_EQ(last.nSource, 1u);
    EXPECT_EQ(last.nCmd, 0u);   // code 0 is "nothing to replay"
    Ptz(4, 80, 7);
    ExpectPtz({GoTo(5, 7)}, 1000);
    EXPECT_EQ(last.nCmd, 80u);
    EXPECT_EQ(last.nParam1, 7u);
    EXPECT_EQ(StopAndWait(), 0);

    ASSERT_TRUE(StartAndWait());
    ExpectPtz({GoTo(5, 7)}, 1000);
    EXPECT_EQ(StopAndWait(), 0);
}

}  // namespace
