// Keypads on the shared PTZ line: keys reach the recorder's key process on mailbox 2, the
// joystick moves a camera or, in menu mode, the recorder's menu.
#include <unistd.h>

#include "tests/system/harness.h"
#include "tools/sim/keypad_sim.h"

namespace {
constexpr uint32_t kKeyEvent = 0x20007;
constexpr uint32_t kSamsungSCC641 = 4;   // a camera without proportional control
constexpr uint32_t kPelcoD9600 = 14;

class KeypadSystemTest : public SystemTest {
protected:
    void StartWithKeypad(uint32_t model, uint32_t id) {
        rec->Share().nKeypadModel = model;
        rec->Share().nKeypadSystemIdCfg = id;
        ASSERT_TRUE(StartAndWait());
    }
    // Writes one frame as the keypad and leaves the process time to take it on its own.
    void Key(const KeypadFrame& f) {
        ASSERT_FALSE(f.empty());
        ASSERT_TRUE(PtzLine().Write(f));
        usleep(100000);
    }
    // Key codes of the key events on mailbox 2 within ms (a release is code | 0x80).
    std::vector<uint32_t> KeyEvents(int ms, size_t count = SIZE_MAX) {
        std::vector<uint32_t> keys;
        while (keys.size() < count) {
            auto m = rec->WaitFor(kKeyEvent, ms);
            if (!m) break;
            EXPECT_EQ(m->nMailbox, 2);
            EXPECT_EQ(m->nFrom, 128u);
            keys.push_back(m->p[0]);
        }
        return keys;
    }
};

TEST_F(KeypadSystemTest, KeyPressAndReleaseReachMailboxTwo) {
    StartWithKeypad(1, 1);
    Key(Keypad1Key(2, "STOP"));   // another keypad's frame
    Key(Keypad1Key(1, "PLAY"));
    EXPECT_EQ(KeyEvents(1000), (std::vector<uint32_t>{31, 31 | 0x80}));
    EXPECT_EQ(StopAndWait(), 0);
}

// A model change puts the whole bus to the new keypad's speed and protocol.
TEST_F(KeypadSystemTest, ModelChangeSwitchesLineAndProtocol) {
    StartWithKeypad(1, 1);
    EXPECT_EQ(PtzLine().Setting(), "9600 8N1");
    rec->Send(0x80000b, 5);   // WONWOO, 4800 baud
    usleep(200000);
    EXPECT_EQ(PtzLine().Setting(), "4800 8N1");
    Key(Keypad1Key(1, "PLAY"));
    Key(WtxKey(1, "NUM 13"));
    EXPECT_EQ(KeyEvents(1000), (std::vector<uint32_t>{54, 54 | 0x80}));
    EXPECT_EQ(StopAndWait(), 0);
}

TEST_F(KeypadSystemTest, JoystickMovesACameraWithoutProportionalControlAndStopsWhenCentred) {
    Camera(0, kSamsungSCC641, 1);
    StartWithKeypad(2, 1);
    const SharePtzLastCmd& last = rec->Share().atPtzLastCmd[0];
    for (const auto& [pan, cmd] : {std::pair{32, 17u}, std::pair{0, 49u}}) {   // right, then its stop
        Key(Keypad1Joystick(1, 1, pan, 0));
        const auto frames = CollectPtz(500);
        ASSERT_FALSE(frames.empty()) << pan;
        for (const auto& f : frames) {
            ASSERT_NE(f.ptProtocol, nullptr);
            EXPECT_FALSE(f.tText.bBadCheck) << f.Describe();
            EXPECT_EQ(f.sSetting, "9600 8N1");   // frames leave at the camera's speed, not the keypad's
        }
        EXPECT_EQ(last.nSource, 128u);
        EXPECT_EQ(last.nCmd, cmd);
    }
    EXPECT_EQ(StopAndWait(), 0);
}

TEST_F(KeypadSystemTest, MenuModeJoystickGivesArrowKeysInsteadOfCameraMoves) {
    Camera(0, kPelcoD9600, 1);
    rec->Share().dwKeypadMenuState = 0x10;
    StartWithKeypad(1, 0);
    Key(Keypad1Joystick(1, 1, 20, 0));
    Key(Keypad1Joystick(1, 1, 21, 0));   // held: no second press
    Key(Keypad1Joystick(1, 1, 0, 0));
    EXPECT_EQ(KeyEvents(1000), (std::vector<uint32_t>{21, 21 | 0x80}));
    EXPECT_TRUE(CollectPtz(200).empty());
    EXPECT_EQ(rec->Share().atPtzLastCmd[0].nCmd, 0u);
    EXPECT_EQ(StopAndWait(), 0);
}
}  // namespace
