// Keypad port, receive ring and key delivery.
#include <sys/mount.h>
#include <sys/stat.h>

#include <cstdio>
#include <string>

#include "tests/support/fake_clock.h"
#include "tests/unit/keypad/keypad_test_util.h"

namespace {
const std::vector<uint8_t> kPlay = {0xA1, 0x01, 0x23, 0x00, 0xAF};   // WTX-1200A "PLAY", keypad 1

class KeypadRing : public KeypadPortTest {
protected:
    void SetUp() override {
        KeypadPortTest::SetUp();
        tGlobal.nKeypadSystemId = 1;
        ASSERT_EQ(KeypadDeviceInit(4), 0u);
    }
};

TEST_F(KeypadRing, FrameArrivingInPiecesIsDeliveredOnceComplete) {
    EXPECT_EQ(KeypadDevicePoll(), 1u);
    EXPECT_EQ(ReceiveKeypadData(), 1u);
    for (const std::vector<uint8_t>& piece : {std::vector<uint8_t>{0xA1}, {0x01, 0x23}, {0x00}}) {
        Feed(piece);
        EXPECT_EQ(KeypadDevicePoll(), 0u);
        Pump();
        EXPECT_TRUE(TakeMessages().empty());
    }
    Feed({0xAF});
    Pump();
    EXPECT_EQ(TakeMessages(), Click(Key_Play));
    EXPECT_EQ(ReceiveKeypadData(), 1u);
}

TEST_F(KeypadRing, FrameIsDeliveredFromEveryRingPosition) {
    for (int start = 0; start < kKeypadRingSize; ++start) {
        gBufWritePos = gBufReadPos = start;
        gBufOverlap = 0;
        Feed(kPlay);
        Pump();
        EXPECT_EQ(TakeMessages(), Click(Key_Play)) << start;
        EXPECT_EQ(gBufWritePos, (start + 5) % kKeypadRingSize) << start;
        EXPECT_EQ(gBufReadPos, gBufWritePos) << start;
        EXPECT_EQ(gBufOverlap, 0) << start;
    }
}

// A read that ends at the end of the ring is followed by a second read whose result is added as
// it stands. A keypad port with nothing more waiting reads 0 and the write position wraps to 0; a
// failing second read (-1; here an empty non-blocking pipe) leaves it at 23, so the byte there is
// overwritten by the next read and the two frames around it are lost.
TEST_F(KeypadRing, ReadEndingAtRingEndAddsSecondReadResultAsItStands) {
    int fds[2];
    ASSERT_EQ(pipe2(fds, O_NONBLOCK), 0);
    struct Case { int fdRead, fdWrite, nWritePos, nOverlap; size_t nClicks; };
    for (const Case& c : {Case{pty.slave, pty.master, 0, 1, 3}, Case{fds[0], fds[1], 23, 0, 1}}) {
        auto put = [&] {
            if (c.fdWrite == pty.master) Feed(kPlay);
            else ASSERT_EQ(write(c.fdWrite, kPlay.data(), 5), 5);
        };
        fdKeypadUart = c.fdRead;
        ASSERT_EQ(KeypadDeviceInit(0), 0u);   // no model: the bytes stay where they land
        gBufWritePos = gBufReadPos = 19;
        gBufOverlap = 0;
        put();
        EXPECT_EQ(ReceiveKeypadData(), 0u);
        EXPECT_EQ(gBufWritePos, c.nWritePos);
        EXPECT_EQ(gBufOverlap, c.nOverlap);
        ASSERT_EQ(KeypadDeviceInit(4), 0u);
        for (int i = 0; i < 2; ++i) {
            put();
            Pump();
        }
        EXPECT_EQ(TakeMessages().size(), 2 * c.nClicks) << c.nWritePos;
    }
    close(fds[0]);
    close(fds[1]);
}

TEST_F(KeypadRing, ModelNoneKeepsBytesUnshownForTheNextModel) {
    fakeclock::Set(12345);
    tGlobal.nLoopCount = 307;
    ptShare->bKeypadDebug = 1;
    ASSERT_EQ(KeypadDeviceInit(0), 0u);
    EXPECT_EQ(CheckKeypadStatus(), 1u);
    Feed({0xA1, 0x01, 0x23});
    testing::internal::CaptureStdout();
    EXPECT_EQ(ReceiveKeypadData(), 0u);
    EXPECT_EQ(ReceiveKeypadData(), 0u);
    EXPECT_EQ(gBufReadPos, 0);
    ASSERT_EQ(KeypadDeviceInit(4), 0u);
    EXPECT_EQ(CheckKeypadStatus(), 0u);
    ReceiveKeypadData();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "KPD [23.45/07] (3) a1 01 23 \n");
    fakeclock::UseReal();
    ptShare->bKeypadDebug = 0;
    testing::internal::CaptureStdout();
    Feed({0x00, 0xAF});
    Pump();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(TakeMessages(), Click(Key_Play));
    fdKeypadUart = -1;
    EXPECT_EQ(ReceiveKeypadData(), 1u);
    EXPECT_EQ(KeypadDevicePoll(), 1u);
}

// The line follows the model, and so does the PTZ port on the shared bus unless the PTZ line is
// on the first port. A refused model leaves the active one in place.
TEST_F(KeypadRing, InitAppliesTheModelLine) {
    PtyPair ptz;
    fdPTZUart = ptz.slave;
    auto line = [](int fd) {
        struct termios t;
        tcgetattr(fd, &t);
        return t;
    };
    ASSERT_EQ(KeypadDeviceInit(2), 0u);
    const struct termios k = line(pty.slave);
    EXPECT_EQ(k.c_cflag, static_cast<tcflag_t>(B4800 | CS8 | CREAD | CLOCAL));
    EXPECT_EQ(k.c_lflag | k.c_iflag | k.c_cc[VMIN] | k.c_cc[VTIME], 0u);
    EXPECT_EQ(line(ptz.slave).c_cflag & CBAUD, static_cast<tcflag_t>(B4800));
    ptShare->nPortAssign = kPortAssignPtzOnS0;
    ASSERT_EQ(KeypadDeviceInit(6), 0u);
    EXPECT_EQ(line(pty.slave).c_cflag & CBAUD, static_cast<tcflag_t>(B2400));
    EXPECT_EQ(line(ptz.slave).c_cflag & CBAUD, static_cast<tcflag_t>(B4800));
    fdPTZUart = -1;

    EXPECT_EQ(KeypadDeviceInit(7), 1u);
    ptShare->nKeypadModelCount = 9;   // a wrong published count does not widen the table
    EXPECT_EQ(KeypadDeviceInit(8), 1u);
    fdKeypadUart = -1;
    EXPECT_EQ(KeypadDeviceInit(0), 1u);
    EXPECT_EQ(CheckKeypadStatus(), 0u);
}

TEST_F(KeypadTest, OpenChoosesTheDeviceAndCloseRestoresItsLine) {
    PtyPair s0, s1;
    ASSERT_EQ(mount(ptsname(s0.master), "/dev/ttyS0", nullptr, MS_BIND, nullptr), 0);
    ASSERT_EQ(mount(ptsname(s1.master), "/dev/ttyS1", nullptr, MS_BIND, nullptr), 0);
    for (uint32_t assign : {kPortAssignPtzOnS0, 0u}) {
        ptShare->nPortAssign = assign;
        const int want = assign == kPortAssignPtzOnS0 ? s0.slave : s1.slave;
        struct stat a, b;
        struct termios t;
        tcgetattr(want, &t);
        const tcflag_t old = t.c_cflag;
        ASSERT_EQ(KeypadDeviceOpen(), 0u);
        fstat(fdKeypadUart, &a);
        fstat(want, &b);
        EXPECT_EQ(a.st_rdev, b.st_rdev);
        EXPECT_EQ(fcntl(fdKeypadUart, F_GETFL) & (O_ACCMODE | O_NONBLOCK), O_RDONLY | O_NONBLOCK);
        ASSERT_EQ(KeypadDeviceInit(3), 0u);
        EXPECT_EQ(KeypadDeviceClose(), 0u);
        tcgetattr(want, &t);
        EXPECT_EQ(t.c_cflag, old);
        EXPECT_EQ(KeypadDeviceClose(), 1u);
    }
    umount2("/dev/ttyS0", 0);
    umount2("/dev/ttyS1", 0);
    ASSERT_EQ(rename("/dev/ttyS1", "/dev/ttyS1.away"), 0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(KeypadDeviceOpen(), 1u);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Err (ptz_cntl  /keypad_data:76) Can't open keypad port\n");
    rename("/dev/ttyS1.away", "/dev/ttyS1");
}

TEST_F(KeypadTest, PublishModelsWritesTheTableAndCorrectsTheSelection) {
    for (uint32_t selected : {6u, 7u}) {
        ptShare->nKeypadModel = selected;
        testing::internal::CaptureStderr();
        KeypadPublishModels();
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "Info(ptz_cntl  ) # of Keypad model = 7\n");
        EXPECT_EQ(ptShare->nKeypadModel, selected == 6 ? 6u : 0u);
        EXPECT_STREQ(ptShare->asKeypadModelName[6], "WONWOO - 2400 BPS");
    }
}

TEST_F(KeypadTest, KeyToMicomReportsAHeldKeyOnceAndEveryClick) {
    struct Step { uint32_t key, action; std::vector<Msg> sent; };
    const Step steps[] = {
        {31, kKeyPress, {Press(31)}},     {31, kKeyPress, {}}, {31, kKeyRelease, {Release(31)}},
        {31, kKeyRelease, {}},            {31, kKeyClick, Click(31)}, {31, kKeyClick, Click(31)},
        {0x105, kKeyPress, {Press(5)}},   {5, kKeyPress, {}},
    };
    for (const Step& s : steps) {
        SendKeyToMicom(s.key, s.action);
        EXPECT_EQ(TakeMessages(), s.sent) << s.key << "/" << s.action;
    }
    ptShare->dwKeyFlags = 0;   // delivery off: nothing is sent, but the key is remembered
    SendKeyToMicom(12, kKeyPress);
    ptShare->dwKeyFlags = kKeyFlagToRecorder;
    SendKeyToMicom(12, kKeyPress);
    EXPECT_TRUE(TakeMessages().empty());
}

TEST_F(KeypadTest, KeyToPtzPassesAHeldMoveOnceAndOtherCommandsEveryTime) {
    ptShare->atPtz[3].nPtzModel = kJoystickModel;
    struct Row { uint8_t cmd, d1; bool again; };
    const Row rows[] = {{PTZCmd_Up, 4, false},    {PTZCmd_Left, 4, false},     {PTZCmd_Right, 0, false},
                        {PTZCmd_Down, 8, false},  {PTZCmd_Joystick, 0x85, false}, {PTZCmd_UpLeft, 0, true},
                        {PTZCmd_PresetGo, 5, true}, {PTZCmd_ZoomTele, 0, true}};
    for (const Row& r : rows) {
        uint8_t d[4] = {r.d1, 2, 7, 0};
        auto send = [&] { return PtzCalls([&] { SendKeyToPTZ(3, r.cmd, d[0], d[1], d[2], d[3]); }); };
        EXPECT_EQ(send(), (std::vector<Ptz>{{3, r.cmd, d[0], d[1], d[2]}})) << int(r.cmd);
        EXPECT_EQ(send().size(), r.again ? 1u : 0u) << int(r.cmd);
        for (uint8_t& x : d) {   // a change in any data byte passes
            ++x;
            EXPECT_EQ(send().size(), 1u) << int(r.cmd);
        }
    }
    for (int lock = 0; lock < 2; ++lock) {
        ptShare->bPtzLock1 = lock == 0;
        ptShare->bPtzLock2 = lock == 1;
        EXPECT_TRUE(PtzCalls([] { SendKeyToPTZ(3, PTZCmd_PresetGo, 1, 0, 0, 0); }).empty());
    }
}
}  // namespace
