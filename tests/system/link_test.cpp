// A controller-link camera that needs even parity beside a Pelco-D camera that needs none: the
// line is set for each frame by the model that built it. A pseudo-terminal forgets parity, so the
// process runs with the UART shim, which keeps it as a UART does.
#include "tests/system/harness.h"

namespace {

constexpr uint32_t kToaCC = 39, kPelcoD9600 = 14;

TEST_F(SystemTest, ControllerLinkFrameWithEvenParityThenPelcoDWithout) {
    Camera(0, kToaCC, 1);
    Camera(1, kPelcoD9600, 1);
    const UartShim shim;
    ASSERT_TRUE(StartAndWait());
    const struct {
        uint32_t ch;
        std::vector<uint8_t> bytes;
        const char *sSetting, *sDescribed;
    } kCases[] = {
        {0, Bytes({0x02, 0x01, 0x04, 0x00, 0x07, 0x00, 0x05, 0x03, 0x04}), "9600 8E1",
         "Controller link addr 1: go to preset 5"},
        {1, Bytes({0xFF, 0x01, 0x00, 0x07, 0x00, 0x05, 0x0D}), "9600 8N1",
         "Pelco-D addr 1: go to preset 5"},
        {0, Bytes({0x02, 0x01, 0x04, 0x00, 0x07, 0x00, 0x05, 0x03, 0x04}), "9600 8E1",
         "Controller link addr 1: go to preset 5"},
    };
    for (const auto& c : kCases) {
        Ptz(c.ch, 80, 5);
        const auto frames = CollectPtz(1000, 1);
        ASSERT_EQ(frames.size(), 1u) << c.ch;
        EXPECT_EQ(frames[0].abData, c.bytes) << c.ch;
        EXPECT_EQ(frames[0].sSetting, c.sSetting) << c.ch;
        EXPECT_EQ(frames[0].Describe(), c.sDescribed) << c.ch;
    }
    EXPECT_EQ(StopAndWait(), 0);
}

}  // namespace
