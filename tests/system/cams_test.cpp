// Samsung, Bosch and Canon cameras driven from mailbox messages: the bytes on the camera line.
#include "ptz/drivers/pm_common.h"
#include "tests/system/harness.h"

namespace {

TEST_F(SystemTest, SamsungScc641MoveAndStop) {
    Camera(0, 4, 1);
    ASSERT_TRUE(StartAndWait());
    Ptz(0, 80, 5);   // go to preset 5
    Ptz(0, 15, 0);   // pan left, no speed: speed 5 and never sped up (no status routine)
    Ptz(0, 47);
    ExpectPtz({Bytes({0xA0, 0xFE, 0x01, 0x03, 0x19, 0x05, 0xFF, 0xFF, 0xE1}),
               Bytes({0xA0, 0xFE, 0x01, 0x01, 0x00, 0x01, 0x05, 0x05, 0xF4}),
               Bytes({0xA0, 0xFE, 0x01, 0x01, 0x00, 0x00, 0x00, 0x00, 0xFF})},
              1500);
    EXPECT_EQ(StopAndWait(), 0);
}

TEST_F(SystemTest, BoschAutoDomeSplitAddressAndZoomRamp) {
    Camera(0, 27, 129);
    ASSERT_TRUE(StartAndWait());
    Ptz(0, 11, 0);   // zoom tele without a speed: 0, then 7 at the ramp's middle and again at its top
    const std::vector<uint8_t> fast = Bytes({0x87, 0x01, 0x00, 0x05, 0x70, 0x00, 0x20, 0x1D});
    auto frames = ExpectPtz({Bytes({0x87, 0x01, 0x00, 0x05, 0x00, 0x00, 0x20, 0x2D}), fast, fast}, kPTZRampTopMs + 500);
    ASSERT_EQ(frames.size(), 3u);
    EXPECT_EQ(frames[0].tText.nAddress, 129u);
    Ptz(0, 80, 64);   // presets stop at 63
    Ptz(0, 80, 63);
    ExpectPtz({Bytes({0x86, 0x01, 0x00, 0x07, 0x05, 0x3F, 0x52})}, 1000);
    EXPECT_EQ(StopAndWait(), 0);
}

TEST_F(SystemTest, CanonVcc4SpeedFramesAsciiAddressAndIrisLevel) {
    Camera(0, 16, 12);
    ASSERT_TRUE(StartAndWait());
    Ptz(0, 13, 0);   // tilt up, level 0: tilt speed 8, then the move
    Ptz(0, 27);      // iris open from the start level 58: sent unchanged
    ExpectPtz({Bytes({0xFF, 0x31, 0x32, 0x00, 0x51, 0x30, 0x30, 0x38, 0xEF}),
               Bytes({0xFF, 0x31, 0x32, 0x00, 0x60, 0x30, 0x31, 0xEF}),
               Bytes({0xFF, 0x31, 0x32, 0x00, 0xA5, 0x39, 0x33, 0x41, 0xEF})},
              1500);
    EXPECT_EQ(StopAndWait(), 0);
}

}  // namespace
