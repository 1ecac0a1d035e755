// Model list, selection, the polling read and the daily record file.
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "pos/pos_data.h"
#include "tests/support/pty_pair.h"
#include "tests/support/test_share.h"
#include "tests/unit/pos/pos_test_util.h"

namespace {
using postest::kT0;
namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

const std::string kDayFile = "/mnt/pos/20231114.pos";   // kT0 in UTC

std::string ReadFile(const std::string& sPath) {
    std::stringstream ss;
    ss << std::ifstream(sPath, std::ios::binary).rdbuf();
    return ss.str();
}

// Record texts of a daily file, one per 128-byte slot.
Texts Records(const std::string& sPath = kDayFile) {
    const std::string s = ReadFile(sPath);
    EXPECT_EQ(s.size() % kPosRecordSize, 0u);
    Texts out;
    for (size_t i = 0; i + kPosRecordSize <= s.size(); i += kPosRecordSize) out.emplace_back(s.c_str() + i);
    return out;
}

class PosData : public testing::Test {
protected:
    void SetUp() override {
        share = ResetTestShare();
        PosPublishModels();
        share->dwFeatures = kFeatureTextInsertion;
        share->bPosStore = 1;
        setenv("TZ", "UTC0", 1);
        tzset();
        postest::SetClock(kT0);
        PosFifoClose();
        for (const auto& e : fs::directory_iterator("/mnt/pos")) fs::remove_all(e.path());
        fs::remove("/tmp/add_inetd.log");
    }
    void TearDown() override {
        PosFifoClose();
        if (fdWriter >= 0) close(fdWriter);
    }
    // Selects a FIFO model and opens the writing end of the FIFO.
    void SelectFifoModel(uint32_t nModel) {
        ASSERT_EQ(PosModelInit(nModel), 0u);
        if (fdWriter < 0) fdWriter = open("/tmp/pos_fifo", O_WRONLY | O_NONBLOCK);
        ASSERT_GE(fdWriter, 0);
    }
    uint32_t SendAndReceive(const std::string& s) {
        EXPECT_EQ(write(fdWriter, s.data(), s.size()), static_cast<ssize_t>(s.size()));
        return ReceivePosData();
    }
    std::string Mgt(const char* sFields) { return "MGT|" + postest::Stamp() + "|" + sFields + "|#\n"; }

    ShareBlock* share = nullptr;
    int fdWriter = -1;
};

TEST_F(PosData, ModelListIsPublished) {
    EXPECT_EQ(share->nPosModelCount, 12u);
    EXPECT_STREQ(share->asPosModelName[0], "NONE");
    EXPECT_STREQ(share->asPosModelName[11], "KTT, CDMA MODULE");
    struct Case { uint32_t nConfigured, nAfter; };
    for (const Case& c : {Case{11, 11}, Case{12, 0}, Case{0xFFFFFFFF, 0}}) {
        share->nPosModel = c.nConfigured;
        PosPublishModels();
        EXPECT_EQ(share->nPosModel, c.nAfter) << c.nConfigured;
    }
}

// The layout lands byte for byte at its shared offset; a model without one keeps the old one;
// network models register their port on every selection; bad indexes change nothing.
TEST_F(PosData, Selection) {
    for (uint32_t m : {6u, 9u, 10u, 9u, 1u, 4u, 0u, 11u}) EXPECT_EQ(PosModelInit(m), 0u);
    EXPECT_EQ(ReadFile("/tmp/add_inetd.log"),
              "5001 tcp /usr/bin/tee tee /tmp/pos_fifo\n6001 tcp /usr/bin/tee tee /tmp/pos_fifo\n"
              "6002 udp /usr/bin/tee tee /tmp/pos_fifo\n6001 tcp /usr/bin/tee tee /tmp/pos_fifo\n");
    const uint8_t* p = reinterpret_cast<const uint8_t*>(share) + 153296;
    EXPECT_EQ(std::memcmp(p, &DPRCSet_ATM_Geniron, kSharePosLayoutSize), 0);
    SelectFifoModel(9);
    EXPECT_EQ(PosModelInit(12), 1u);
    share->nPosModelCount = 5;
    EXPECT_EQ(PosModelInit(6), 1u);
    share->nPosModelCount = 100;
    EXPECT_EQ(PosModelInit(12), 1u);
    EXPECT_EQ(std::memcmp(p, &DPRCSet_MLV_TCP6001, kSharePosLayoutSize), 0);
    EXPECT_EQ(SendAndReceive("7|A|B|1|2\n"), 0u);
    EXPECT_EQ(Records(), Texts{Mgt("07|A|B|1|2")});
}

TEST_F(PosData, InputsThatCannotBeOpened) {
    SelectFifoModel(9);
    ASSERT_EQ(rename("/dev/ttyS0", "/dev/ttyS0.away"), 0);
    share->nPortAssign = kPortAssignPosOnS0;
    std::string sErr = postest::Stderr([] { EXPECT_EQ(PosModelInit(1), 1u); });
    EXPECT_EQ(sErr, "Err (pos       /pos_data:108) Can't open pos port\n");
    EXPECT_EQ(SendAndReceive("7|A|B|1|2\n"), 0u);   // the old model still reads
    EXPECT_EQ(Records().size(), 1u);
    share->nPortAssign = 0;   // no setting to apply: selected, but without input
    sErr = postest::Stderr([] { EXPECT_EQ(PosModelInit(1), 0u); });
    EXPECT_EQ(sErr, "Err (pos       /pos_data:78) Can't open POS DEVICE\n");
    EXPECT_EQ(ReceivePosData(), 1u);
    EXPECT_EQ(PosFifoClose(), 1u);
    ASSERT_EQ(rename("/dev/ttyS0.away", "/dev/ttyS0"), 0);
    ASSERT_EQ(rename("/tmp/pos_fifo", "/tmp/pos_fifo.away"), 0);
    sErr = postest::Stderr([] { EXPECT_EQ(PosModelInit(0), 0u); });
    EXPECT_EQ(sErr, "Err (pos       /pos_data:86) Can't open POS FIFO\n");
    EXPECT_EQ(postest::Stderr([] { EXPECT_EQ(PosFifoOpen(0), 1u); }), sErr);
    ASSERT_EQ(rename("/tmp/pos_fifo.away", "/tmp/pos_fifo"), 0);
    EXPECT_EQ(PosFifoOpen(0), 0u);
    EXPECT_EQ(ReceivePosData(), 1u);   // no writer
    EXPECT_EQ(PosFifoClose(), 0u);
}

// The read comes first: with the feature off the text is consumed and dropped. Model 0 reads
// and drops; with storage off the builder still runs (the transaction started then is recorded).
TEST_F(PosData, FeatureModelNoneAndStorageSwitches) {
    struct Case { uint32_t nVariant, dwFeatures, nResult; };
    SelectFifoModel(9);
    for (const Case& c : {Case{0, 0, 1}, Case{3, ~kFeatureTextInsertion, 1}, Case{kVariantKtt, 0, 0}}) {
        share->nVariant = c.nVariant;
        share->dwFeatures = c.dwFeatures;
        EXPECT_EQ(SendAndReceive("7|A|B|1|2\n"), c.nResult);
        share->dwFeatures = kFeatureTextInsertion;
        EXPECT_EQ(ReceivePosData(), 1u);
    }
    EXPECT_EQ(Records().size(), 1u);
    SelectFifoModel(0);
    EXPECT_EQ(SendAndReceive("7|A|B|1|2\n"), 0u);
    SelectFifoModel(6);
    share->bPosStore = 0;
    EXPECT_EQ(SendAndReceive("Transaction start\n"), 0u);
    postest::SetClock(kT0 + 3);
    share->bPosStore = 1;
    EXPECT_EQ(SendAndReceive("Transaction end\n"), 0u);
    EXPECT_EQ(Records().size(), 2u);
    EXPECT_EQ(Records()[1].substr(0, 18), "ATM-FI|1700000000.");
}

// Up to 128 bytes reach the builder whole; more are cut to 127 characters and a newline, which the
// journal builder shows: it records only a line with a newline. At 256 bytes the rest waits.
TEST_F(PosData, LongReadsAreCut) {
    SelectFifoModel(6);
    const std::string sEnd = "Transaction end";
    EXPECT_EQ(SendAndReceive("Transaction start\n"), 0u);
    EXPECT_EQ(SendAndReceive(sEnd + std::string(128 - sEnd.size(), '.')), 0u);
    EXPECT_FALSE(fs::exists(kDayFile));
    EXPECT_EQ(SendAndReceive(sEnd + std::string(129 - sEnd.size(), '.')), 0u);
    EXPECT_EQ(SendAndReceive("Transaction start\n"), 0u);
    EXPECT_EQ(SendAndReceive(std::string(256, '.') + sEnd + "\n"), 0u);
    EXPECT_EQ(Records().size(), 1u);
    EXPECT_EQ(ReceivePosData(), 0u);
    EXPECT_EQ(Records().size(), 2u);
}

// Records are appended in arrival order to the file of their local date; a stray tail does not
// move a record off the end, and a file that cannot be opened loses the record silently.
TEST_F(PosData, DailyFile) {
    SelectFifoModel(9);
    EXPECT_EQ(SendAndReceive("1|a|b|c|d\n"), 0u);
    std::ofstream(kDayFile, std::ios::app) << "xx";
    EXPECT_EQ(SendAndReceive("2|a|b|c|d\n"), 0u);
    const std::string s = ReadFile(kDayFile);
    ASSERT_EQ(s.size(), 258u);
    EXPECT_EQ(s.substr(0, 128), Mgt("01|a|b|c|d") + std::string(128 - Mgt("01|a|b|c|d").size(), '\0'));
    EXPECT_EQ(s.substr(130, Mgt("02|a|b|c|d").size()), Mgt("02|a|b|c|d"));
    setenv("TZ", "XST-9", 1);
    tzset();
    postest::SetClock(1709218799);   // 2024-02-29 23:59:59 local
    EXPECT_EQ(SendAndReceive("3|a|b|c|d\n"), 0u);
    postest::SetClock(1709218800);   // 2024-03-01 00:00:00 local
    EXPECT_EQ(SendAndReceive("4|a|b|c|d\n"), 0u);
    EXPECT_EQ(Records("/mnt/pos/20240229.pos"), Texts{"MGT|1709218799.12|03|a|b|c|d|#\n"});
    EXPECT_EQ(Records("/mnt/pos/20240301.pos"), Texts{"MGT|1709218800.12|04|a|b|c|d|#\n"});
    fs::remove("/mnt/pos/20240301.pos");
    ASSERT_TRUE(fs::create_directory("/mnt/pos/20240301.pos"));
    EXPECT_EQ(postest::Stderr([&] { EXPECT_EQ(SendAndReceive("5|a|b|c|d\n"), 0u); }), "");
}

// A serial model reads its port with its own line setting once the text input owns the port.
TEST_F(PosData, SerialLine) {
    PtyPair pty;
    ASSERT_EQ(mount(ttyname(pty.slave), "/dev/ttyS0", nullptr, MS_BIND, nullptr), 0);
    struct termios t{};
    ASSERT_EQ(PosModelInit(4), 0u);
    tcgetattr(pty.slave, &t);
    EXPECT_EQ(t.c_lflag & ICANON, 0u);   // not the text input's port: left raw
    share->nPortAssign = kPortAssignPosOnS0;
    ASSERT_EQ(PosModelInit(4), 0u);
    tcgetattr(pty.slave, &t);
    EXPECT_EQ(t.c_cflag & CBAUD, static_cast<tcflag_t>(B9600));
    EXPECT_EQ(t.c_iflag & (IGNCR | IXON | IXOFF | ICRNL), static_cast<tcflag_t>(IGNCR | IXON | IXOFF));
    EXPECT_EQ(t.c_lflag & (ICANON | ECHO | ISIG), static_cast<tcflag_t>(ICANON));
    EXPECT_EQ(t.c_cc[VEOL], '$');
    ASSERT_EQ(PosModelInit(5), 0u);   // Atop: every flag cleared
    tcgetattr(pty.slave, &t);
    EXPECT_EQ(t.c_iflag | t.c_oflag | t.c_lflag | (t.c_cflag & CBAUD), 0u);
    ASSERT_EQ(PosModelInit(1), 0u);
    const std::string sLines = "COLA 1.20\r\n  TOTAL    12.50\r\n";
    ASSERT_EQ(write(pty.master, sLines.data(), sLines.size()), static_cast<ssize_t>(sLines.size()));
    usleep(20000);
    EXPECT_EQ(ReceivePosData(), 0u);
    EXPECT_EQ(ReceivePosData(), 0u);
    EXPECT_EQ(ReceivePosData(), 1u);
    EXPECT_EQ(Records(), (Texts{"AVEVSI|" + postest::Stamp() + "|ITEM|COLA|1.20|#\n",
                                "AVEVSI|" + postest::Stamp() + "|BILL|TOTAL|12.50|#\n"}));
    PosFifoClose();
    umount("/dev/ttyS0");
}
}  // namespace
