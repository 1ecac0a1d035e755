// Keypads on the shared PTZ line: keys reach the recorder's key process on mailbox 2, the
// joystick moves a camera or, in menu mode, the recorder's menu.
#include <unistd.h>

#include "keypad/keypad_data.h"
#include "tests/system/harness.h"
#include "tools/sim/keypad_sim.h"

namespace {
class KeypadSystemTest : public SystemTest {
protected:
    // Starts with a PTZ camera of the given model at address 1 on channel 0 (0 = none) and a
    // Keypad-1 (model 1: 9600 baud, 2: 4800 baud) as keypad 1.
    void Start(uint32_t camera, uint32_t keypad) {
        if (camera != 0) Camera(0, camera, 1);
        rec->Share().nKeypadModel = keypad;
        rec->Share().nKeypadSystemIdCfg = 1;
        ASSERT_TRUE(StartAndWait());
    }
    // Writes frames as the keypad, leaving the process time to take each on its own.
    void Keys(const std::vector<KeypadFrame>& frames) {
        for (const KeypadFrame& f : frames) {
            ASSERT_TRUE(!f.empty() && PtzLine().Write(f));
            usleep(100000);
        }
    }
    // Key codes of the key events that reached mailbox 2 from this process (a release is
    // code | 0x80).
    std::vector<uint32_t> KeyEvents() {
        std::vector<uint32_t> keys;
        while (auto m = rec->WaitFor(kMsgKeyEvent, 1000)) {
            EXPECT_EQ(std::pair(m->nMailbox, m->nFrom), std::pair(2L, 128u));
            keys.push_back(m->p[0]);
        }
        return keys;
    }
};

TEST_F(KeypadSystemTest, KeyPressAndReleaseReachMailboxTwo) {
    Start(0, 1);
    Keys({Keypad1Key(2, "STOP"), Keypad1Key(1, "PLAY")});   // the first from another keypad
    EXPECT_EQ(KeyEvents(), (std::vector<uint32_t>{31, 31 | 0x80}));
    EXPECT_EQ(StopAndWait(), 0);
}

// On a Samsung SCC-641 (no proportional control) the joystick moves right at the camera's default
// speed (5), then stops once centred; the camera frames leave at the camera's speed, not the
// keypad's.
TEST_F(KeypadSystemTest, JoystickMovesACameraWithoutProportionalControlAndStopsWhenCentred) {
    Start(4, 2);
    const auto right = Bytes({0xA0, 0xFE, 0x01, 0x01, 0x00, 0x02, 0x05, 0x05, 0xF3});
    const auto stop = Bytes({0xA0, 0xFE, 0x01, 0x01, 0x00, 0x00, 0x00, 0x00, 0xFF});
    for (const auto& [pan, cmd, frame] : {std::tuple{32, 17u, right}, std::tuple{0, 49u, stop}}) {
        Keys({Keypad1Joystick(1, 1, pan, 0)});
        for (const auto& f : ExpectPtz({frame}, 500)) EXPECT_EQ(f.sSetting, "9600 8N1") << f.Describe();
        const SharePtzLastCmd& last = rec->Share().atPtzLastCmd[0];
        EXPECT_EQ(std::pair(last.nSource, last.nCmd), std::pair(128u, cmd));
    }
    EXPECT_EQ(StopAndWait(), 0);
}

}  // namespace
