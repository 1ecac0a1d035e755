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
    // Waits until the process has handled everything sent before and read its input once more:
    // a pass answers the liveness query before it reads, so two answers make sure.
    void Sync() {
        for (int i = 0; i < 2; ++i) {
            rec->Send(2);
            ASSERT_TRUE(rec->WaitFor(0x10004, 2000).has_value());
        }
    }
    // Records so far, each with its time checked against the wall clock and replaced by "T".
    Texts Records(size_t nCount, int nTimeoutMs = 2000) {
        Texts out;
        for (const std::string& s : WaitPosRecords(nCount, nTimeoutMs)) {
            const uint32_t t = PosRecordSeconds(s);
            EXPECT_GE(t, static_cast<uint32_t>(tStart));
            EXPECT_LE(t, static_cast<uint32_t>(time(nullptr)));
            const size_t nFrom = s.find('|') + 1;
            out.push_back(s.substr(0, nFrom) + "T" + s.substr(s.find('|', nFrom)));
        }
        return out;
    }
    bool LayoutIs(const DPRCSet& tLayout) {
        return std::memcmp(rec->Share().abPosLayout, &tLayout, sizeof tLayout) == 0;
    }
    void Type(const std::string& s) { ASSERT_TRUE(ttyS0->Write(std::vector<uint8_t>(s.begin(), s.end()))); }

    time_t tStart = 0;
    PosFifoWriter fifo;
};

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
// selection message switches models, and an index out of range changes nothing.
TEST_F(PosSystemTest, NetworkModelsRecordFifoText) {
    ASSERT_TRUE(Start(9));
    EXPECT_EQ(InetdRegistrations(), Texts{"6001 tcp /usr/bin/tee tee /tmp/pos_fifo"});
    EXPECT_TRUE(LayoutIs(DPRCSet_MLV_TCP6001));
    ASSERT_TRUE(fifo.Open(2000));
    ASSERT_TRUE(fifo.Write("7|A|B|1|2\n"));
    EXPECT_EQ(Records(1), Texts{"MGT|T|07|A|B|1|2|#\n"});

    rec->Send(kMsgPosModel, 6);
    rec->Send(kMsgPosModel, 12);
    Sync();
    EXPECT_EQ(InetdRegistrations().back(), "5001 tcp /usr/bin/tee tee /tmp/pos_fifo");
    EXPECT_TRUE(LayoutIs(DPRCSet_ATM_FriInfo));
    for (const char* s : {"Transaction start\n", "REQ|CWD|1|2|4711|\n", " Money presented NTD100x2\n", "Transaction end\n"}) {
        ASSERT_TRUE(fifo.Write(s));
        Sync();   // one line per read
    }
    EXPECT_EQ(Records(2), (Texts{"MGT|T|07|A|B|1|2|#\n", "ATM-FI|T|DRAW|4711|200|#\n"}));
    EXPECT_EQ(StopAndWait(), 0);
}

// With the text input owning the first port, a serial model sets the line up and its lines
// become records; the ATM model also tells the key process.
TEST_F(PosSystemTest, SerialModelsReadTheFirstPort) {
    rec->Share().nPortAssign = kPortAssignPosOnS0;
    ASSERT_TRUE(Start(1));
    const int fd = open("/dev/ttyS0", O_RDONLY | O_NOCTTY | O_NONBLOCK);
    struct termios t{};
    ASSERT_EQ(tcgetattr(fd, &t), 0);
    close(fd);
    EXPECT_EQ(t.c_lflag & (ICANON | ECHO), static_cast<tcflag_t>(ICANON));
    EXPECT_EQ(t.c_cc[VEOL], '\n');
    Type("COLA 1.20\r\n  TOTAL    12.50\r\n");
    EXPECT_EQ(Records(2), (Texts{"AVEVSI|T|ITEM|COLA|1.20|#\n", "AVEVSI|T|BILL|TOTAL|12.50|#\n"}));

    rec->Send(kMsgPosModel, 4);
    Sync();
    Type("0123456789ABCDEFGHIJ:K:L:M:4921-00$");
    const std::optional<Mail> m = rec->WaitFor(0x2005D, 2000);
    ASSERT_TRUE(m.has_value());
    EXPECT_EQ(m->nMailbox, 2);
    EXPECT_EQ(m->nFrom, 32u);
    EXPECT_EQ(Records(3).back(), "ATMGEN|T|4921-00$|0|0|0|#\n");
    EXPECT_EQ(StopAndWait(), 0);
}

// With the feature off, text is consumed and dropped; with storage off it is not written.
TEST_F(PosSystemTest, FeatureAndStorageSwitches) {
    rec->Share().dwFeatures = 0;
    ASSERT_TRUE(Start(10));
    ASSERT_TRUE(fifo.Open(2000));
    ASSERT_TRUE(fifo.Write("1|off|||\n"));
    Sync();
    rec->Share().dwFeatures = kFeatureTextInsertion;
    rec->Share().bPosStore = 0;
    ASSERT_TRUE(fifo.Write("2|not stored|||\n"));
    Sync();
    rec->Share().bPosStore = 1;
    ASSERT_TRUE(fifo.Write("3|stored|||\n"));
    EXPECT_EQ(Records(1), Texts{"MGU|T|03|stored||||#\n"});
    EXPECT_EQ(StopAndWait(), 0);
}
}  // namespace
