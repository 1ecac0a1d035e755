// Catalogue cameras on the real line: a camera with two stop bits among one-stop-bit cameras, and a
// camera that drops a move unless reminded of it.
#include "tests/system/harness.h"

namespace {

constexpr uint32_t kLilin = 2, kVcl = 3, kPelcoD9600 = 14;

// The line is reprogrammed for each frame's own model: VCL's frames leave with two stop bits, and
// the next Pelco-D frame with one again.
TEST_F(SystemTest, TwoStopBitsOnlyForTheFramesThatNeedThem) {
    Camera(0, kVcl, 2);
    Camera(1, kPelcoD9600, 1);
    ASSERT_TRUE(StartAndWait());
    const struct {
        uint32_t ch, cmd, p1;
        std::vector<uint8_t> bytes;
        const char *setting, *words;
    } cases[] = {
        {0, 80, 5, Bytes({0x81, 0x42, 0x05}), "9600 8N2", "VCL addr 2: go to preset 5"},
        {1, 80, 1, Bytes({0xFF, 0x01, 0x00, 0x07, 0x00, 0x01, 0x09}), "9600 8N1",
         "Pelco-D addr 1: go to preset 1"},
        {0, 19, 5, Bytes({0x81, 0x4E, 0x40}), "9600 8N2", "VCL addr 2: tilt down 64"},
    };
    for (const auto& c : cases) {
        Ptz(c.ch, c.cmd, c.p1);
        auto frames = CollectPtz(1000, 1);
        ASSERT_EQ(frames.size(), 1u) << c.words;
        EXPECT_EQ(frames[0].abData, c.bytes) << c.words;
        EXPECT_EQ(frames[0].sSetting, c.setting) << c.words;
        EXPECT_EQ(frames[0].Describe(), c.words);
    }
    EXPECT_EQ(StopAndWait(), 0);
}

// The camera keeps a move 500 ms after the last frame: a held move is sent again every 200 ms, so
// no gap on the wire reaches 500 ms, until its stop; after the stop the line stays quiet.
TEST_F(SystemTest, HeldMoveKeepsArrivingUntilItsStop) {
    Camera(0, kLilin, 1);
    ASSERT_TRUE(StartAndWait());
    Ptz(0, 17, 8);   // right at full speed
    auto held = CollectPtz(1500);
    ASSERT_GE(held.size(), 5u);
    for (size_t i = 0; i < held.size(); ++i) {
        EXPECT_EQ(held[i].abData, Bytes({0x01, 0x01, 0x87})) << i;
        if (i > 0) {
            EXPECT_LT(held[i].tSeconds - held[i - 1].tSeconds, 0.5) << i;
        }
    }
    Ptz(0, 49);   // its stop
    auto after = CollectPtz(1500);
    ASSERT_GE(after.size(), 1u);
    // A reminder already queued may still leave before the stop; nothing follows the stop.
    EXPECT_EQ(after.back().abData, Bytes({0x01, 0x00, 0xFF}));
    EXPECT_EQ(after.back().Describe(), "Merit Lilin addr 1: stop");
    EXPECT_LE(after.size(), 2u);
    EXPECT_EQ(StopAndWait(), 0);
}

}  // namespace
