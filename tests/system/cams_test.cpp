// Samsung, Bosch and Canon cameras driven from mailbox messages: the bytes on the camera line.
#include "tests/system/harness.h"

namespace {

std::vector<std::vector<uint8_t>> WireOf(const std::vector<PtzFrame>& frames) {
    std::vector<std::vector<uint8_t>> out;
    for (const auto& f : frames) out.push_back(f.abData);
    return out;
}

TEST_F(SystemTest, SamsungScc641MoveAndStop) {
    Camera(0, 4, 1);
    ASSERT_TRUE(StartAndWait());
    Ptz(0, 80, 5);   // go to preset 5
    Ptz(0, 15, 0);   // pan left, no speed: speed 5 and never sped up (no status routine)
    Ptz(0, 47);
    auto frames = CollectPtz(1500, 4);
    EXPECT_EQ(WireOf(frames), (std::vector<std::vector<uint8_t>>{
                                  Bytes({0xA0, 0xFE, 0x01, 0x03, 0x19, 0x05, 0xFF, 0xFF, 0xE1}),
                                  Bytes({0xA0, 0xFE, 0x01, 0x01, 0x00, 0x01, 0x05, 0x05, 0xF4}),
                                  Bytes({0xA0, 0xFE, 0x01, 0x01, 0x00, 0x00, 0x00, 0x00, 0xFF})}));
    EXPECT_EQ(StopAndWait(), 0);
}

TEST_F(SystemTest, BoschAutoDomeSplitAddressAndZoomRamp) {
    Camera(0, 27, 129);
    ASSERT_TRUE(StartAndWait());
    Ptz(0, 11, 0);   // zoom tele without a speed: 0, then 7 at 0.3 s and again at 0.8 s
    auto frames = CollectPtz(1300, 3);
    ASSERT_EQ(frames.size(), 3u);
    EXPECT_EQ(frames[0].abData, Bytes({0x87, 0x01, 0x00, 0x05, 0x00, 0x00, 0x20, 0x2D}));
    EXPECT_EQ(frames[1].abData, Bytes({0x87, 0x01, 0x00, 0x05, 0x70, 0x00, 0x20, 0x1D}));
    EXPECT_EQ(frames[2].abData, frames[1].abData);
    EXPECT_EQ(frames[0].tText.nAddress, 129u);
    Ptz(0, 80, 64);   // presets stop at 63
    Ptz(0, 80, 63);
    auto preset = CollectPtz(1000, 1);
    ASSERT_EQ(preset.size(), 1u);
    EXPECT_EQ(preset[0].abData, Bytes({0x86, 0x01, 0x00, 0x07, 0x05, 0x3F, 0x52}));
    EXPECT_EQ(StopAndWait(), 0);
}

TEST_F(SystemTest, CanonVcc4SpeedFramesAsciiAddressAndIrisLevel) {
    Camera(0, 16, 12);
    ASSERT_TRUE(StartAndWait());
    Ptz(0, 13, 0);   // tilt up, level 0: tilt speed 8, then the move
    Ptz(0, 27);      // iris open from the start level 58: sent unchanged
    auto frames = CollectPtz(1500, 3);
    ASSERT_EQ(frames.size(), 3u);
    EXPECT_EQ(frames[0].abData, Bytes({0xFF, 0x31, 0x32, 0x00, 0x51, 0x30, 0x30, 0x38, 0xEF}));
    EXPECT_EQ(frames[1].abData, Bytes({0xFF, 0x31, 0x32, 0x00, 0x60, 0x30, 0x31, 0xEF}));
    EXPECT_EQ(frames[2].abData, Bytes({0xFF, 0x31, 0x32, 0x00, 0xA5, 0x39, 0x33, 0x41, 0xEF}));
    EXPECT_EQ(StopAndWait(), 0);
}

}  // namespace
