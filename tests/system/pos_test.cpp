// Text insertion seen from outside: the published model list and layout, the service
// registrations, and text arriving on the FIFO or the first serial port ending as records in the
// daily file.
#include <fcntl.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#include <cstring>
#include <string>
#include <vector>

#include "pos/pos_model.h"
#include "tests/system/harness.h"
#include "tools/sim/pos_sim.h"

namespace {
using Texts = std::vector<std::string>;
constexpr uint32_t kMsgPosModel = 0x80000c;

class PosSystemTest : public SystemTest {
protected:
    void SetUp() override {
        SystemTest::SetUp();
        PosClearRecords();
    }
    bool Start(uint32_t nModel) {
        rec->Share().nPosModel = nModel;
        tStart = time(nullptr);
        return StartAndWait();
    }
    // Records so far, each with its time checked against the wall clock and replaced by "T".
    Texts Records(size_t nCount) {
        Texts out;
        for (const std::string& s : WaitPosRecords(nCount, 2000)) {
            const uint32_t t = PosRecordSeconds(s);
            EXPECT_TRUE(t >= static_cast<uint32_t>(tStart) && t <= static_cast<uint32_t>(time(nullptr))) << s;
            const size_t nFrom = s.find('|') + 1;
            out.push_back(s.substr(0, nFrom) + "T" + s.substr(s.find('|', nFrom)));
        }
        return out;
    }
    bool LayoutIs(const DPRCSet& tLayout) { return std::memcmp(rec->Share().abPosLayout, &tLayout, sizeof tLayout) == 0; }

    time_t tStart = 0;
};

// The model list is published and a configured model out of range is reset to none.
TEST_F(PosSystemTest, PublishesModelsAndCorrectsTheSelection) {
    ASSERT_TRUE(Start(12));
    EXPECT_EQ(rec->Share().nPosModelCount, 12u);
    EXPECT_EQ(rec->Share().nPosModel, 0u);
    EXPECT_STREQ(rec->Share().asPosModelName[0], "NONE");
    EXPECT_STREQ(rec->Share().asPosModelName[9], "MALVOREN, GENERAL TCP 6001");
    EXPECT_TRUE(InetdRegistrations().empty());
    EXPECT_EQ(StopAndWait(), 0);
}

// A network model registers its port, publishes its layout and records what clients send; the
// selection message switches models, registering again on every selection, and an index out of
// range changes nothing.
TEST_F(PosSystemTest, NetworkModelsRecordFifoText) {
    ASSERT_TRUE(Start(9));
    EXPECT_EQ(InetdRegistrations(), Texts{"6001 tcp /usr/bin/tee tee /tmp/pos_fifo"});
    EXPECT_TRUE(LayoutIs(DPRCSet_MLV_TCP6001));
    PosFifoWriter fifo;
    ASSERT_TRUE(fifo.Open(2000));
    ASSERT_TRUE(fifo.Write("7|A|B|1|2\n"));
    EXPECT_EQ(Records(1), Texts{"MGT|T|07|A|B|1|2|#\n"});
    for (uint32_t nModel : {10u, 6u, 6u, 12u}) rec->Send(kMsgPosModel, nModel);
    rec->Send(kMsgAlive);   // the liveness answer comes after the selections were handled
    ASSERT_TRUE(rec->WaitFor(kMsgAliveAnswer, 2000).has_value());
    EXPECT_EQ(InetdRegistrations(), (Texts{"6001 tcp /usr/bin/tee tee /tmp/pos_fifo", "6002 udp /usr/bin/tee tee /tmp/pos_fifo",
                                           "5001 tcp /usr/bin/tee tee /tmp/pos_fifo", "5001 tcp /usr/bin/tee tee /tmp/pos_fifo"}));
    EXPECT_TRUE(LayoutIs(DPRCSet_ATM_FriInfo));
    EXPECT_EQ(StopAndWait(), 0);
}

// With the text input owning the first port, a serial model sets the line up and its lines
// become records.
TEST_F(PosSystemTest, SerialModelsReadTheFirstPort) {
    rec->Share().nPortAssign = kPortAssignPosOnS0;
    ASSERT_TRUE(Start(1));
    const int fd = open("/dev/ttyS0", O_RDONLY | O_NOCTTY | O_NONBLOCK);
    struct termios t{};
    ASSERT_EQ(tcgetattr(fd, &t), 0);
    close(fd);
    EXPECT_EQ(t.c_lflag & (ICANON | ECHO), static_cast<tcflag_t>(ICANON));
    EXPECT_EQ(t.c_cc[VEOL], '\n');
    const std::string sLines = "COLA 1.20\r\n  TOTAL    12.50\r\n";
    ASSERT_TRUE(ttyS0->Write(std::vector<uint8_t>(sLines.begin(), sLines.end())));
    EXPECT_EQ(Records(2), (Texts{"AVEVSI|T|ITEM|COLA|1.20|#\n", "AVEVSI|T|BILL|TOTAL|12.50|#\n"}));
    EXPECT_EQ(StopAndWait(), 0);
}
}  // namespace
