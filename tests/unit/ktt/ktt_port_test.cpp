// The KTT link port on a pseudo-terminal bound at /dev/ttyS4: echo, model line settings, close;
// and the published model table.
#include <sys/mount.h>
#include <termios.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstring>

#include "ktt/ktt_data.h"
#include "ptz/ptz_data.h"
#include "tests/support/pty_pair.h"
#include "tests/support/test_share.h"

namespace {

speed_t SpeedOf(int fd) {
    struct termios t{};
    tcgetattr(fd, &t);
    return cfgetospeed(&t);
}

void SetSpeed(int fd, speed_t speed) {
    struct termios t{};
    tcgetattr(fd, &t);
    cfsetspeed(&t, speed);
    tcsetattr(fd, TCSANOW, &t);
}

class KttPort : public testing::Test {
protected:
    void SetUp() override {
        share = ResetTestShare();
        share->nKeypadModelCount = 7;
        ASSERT_EQ(mount(ptsname(pty.master), "/dev/ttyS4", nullptr, MS_BIND, nullptr), 0);
        ASSERT_EQ(KttDeviceOpen(), 0u);
    }
    void TearDown() override {
        share->nKeypadModelCount = 7;
        KttDeviceInit(0);
        KttDeviceClose();
        umount2("/dev/ttyS4", MNT_DETACH);
        fdPTZUart = -1;
    }
    ShareBlock* share = nullptr;
    PtyPair pty;
};

// Bytes no model takes come straight back, unless the PTZ line owns ttyS0; a burst longer than
// one read takes two turns.
TEST_F(KttPort, UnclaimedBytesAreEchoed) {
    std::vector<uint8_t> burst(100);
    for (size_t i = 0; i < burst.size(); ++i) burst[i] = static_cast<uint8_t>(i);
    for (uint32_t assign : {0u, kPortAssignPtzOnS0}) {
        share->nPortAssign = assign;
        ASSERT_EQ(write(pty.master, burst.data(), burst.size()), 100);
        for (int i = 0; i < 50 && KttDevicePoll() != 0; ++i) {
        }
        EXPECT_EQ(ReceiveKttData(), 0u);
        EXPECT_EQ(ReceiveKttData(), 0u);
        EXPECT_EQ(ReceiveKttData(), 1u);
        EXPECT_EQ(KttDevicePoll(), 1u);
        EXPECT_EQ(pty.Drain(), assign == 0 ? burst : std::vector<uint8_t>{});
    }
}

struct InitCase {
    uint32_t model;
    uint32_t keypadCount;
    uint32_t assign;
    uint32_t result;
    speed_t speed;       // of the KTT line afterwards
    speed_t ptzSpeed;    // of the PTZ line afterwards
    bool canonical;
};

// The bound is the keypad model count; an index past the KTT table is refused as well.
TEST_F(KttPort, DeviceInitAppliesModelSettings) {
    const InitCase cases[] = {
        {1, 7, 0, 0, B115200, B115200, false},
        {2, 7, 0, 0, B57600, B57600, true},
        {3, 7, 0, 0, B9600, B9600, true},
        {1, 7, kPortAssignPtzOnS0, 0, B115200, B1200, false},
        {0, 7, 0, 0, B1200, B1200, false},
        {4, 7, 0, 1, B1200, B1200, false},
        {3, 3, 0, 1, B1200, B1200, false},
        {1, 0, 0, 1, B1200, B1200, false},
    };
    PtyPair ptz;
    fdPTZUart = ptz.slave;
    for (const InitCase& c : cases) {
        SCOPED_TRACE(testing::Message() << "model " << c.model << " keypad count " << c.keypadCount);
        SetSpeed(pty.slave, B1200);
        SetSpeed(ptz.slave, B1200);
        share->nKeypadModelCount = c.keypadCount;
        share->nPortAssign = c.assign;
        EXPECT_EQ(KttDeviceInit(c.model), c.result);
        EXPECT_EQ(SpeedOf(pty.slave), c.speed);
        EXPECT_EQ(SpeedOf(ptz.slave), c.ptzSpeed);
        struct termios line{};
        tcgetattr(pty.slave, &line);
        if (c.speed != B1200) {
            EXPECT_EQ(line.c_cflag & (CSIZE | CREAD | CLOCAL), static_cast<tcflag_t>(CS8 | CREAD | CLOCAL));
            EXPECT_EQ((line.c_lflag & ICANON) != 0, c.canonical);
            EXPECT_EQ(line.c_cc[VMIN], c.canonical ? 0 : 1);
        }
        EXPECT_EQ(CheckKttStatus(), c.result == 0 && c.model != 0 ? 0u : 1u) << "no model has a periodic routine";
        share->nKeypadModelCount = 7;
        ASSERT_EQ(KttDeviceInit(0), 0u);
    }
}

TEST_F(KttPort, CloseRestoresSettingsFoundAtOpen) {
    speed_t before = SpeedOf(pty.slave);
    ASSERT_NE(before, static_cast<speed_t>(B57600));
    ASSERT_EQ(KttDeviceInit(2), 0u);
    ASSERT_EQ(KttDeviceClose(), 0u);
    EXPECT_EQ(SpeedOf(pty.slave), before);
    EXPECT_EQ(KttDeviceClose(), 1u);
    EXPECT_EQ(ReceiveKttData(), 1u);
    EXPECT_EQ(KttDeviceInit(1), 1u);
    umount2("/dev/ttyS4", MNT_DETACH);
    ASSERT_EQ(rename("/dev/ttyS4", "/dev/ttyS4.away"), 0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(KttDeviceOpen(), 1u);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Err (ptz_cntl  /ktt_data:76) Can't open keypad port\n");
    rename("/dev/ttyS4.away", "/dev/ttyS4");
}

TEST(KttModels, PublishedNames) {
    const char* const names[] = {"NONE", "CUSTOM MODE 4 TERMINAL", "CUSTOM MODE 4 DTMF", "CUSTOM MODE 4 FSK"};
    ShareBlock* share = ResetTestShare();
    std::memset(share->asKttModelName, 'x', sizeof share->asKttModelName);
    KttPublishModels();
    EXPECT_EQ(share->nKttModelCount, 4u);
    for (uint32_t i = 0; i < 4; ++i) EXPECT_STREQ(share->asKttModelName[i], names[i]);
    EXPECT_EQ(share->asKttModelName[4][0], 'x') << "only the four names are written";
}

}  // namespace
