// The polling read, the opening of the input and the daily record file.
#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "pos/pos_data.h"
#include "tests/support/test_share.h"
#include "tests/unit/pos/pos_test_util.h"

namespace {
const std::string kDayFile = "/mnt/pos/20231114.pos";   // the test clock's date in UTC

std::string ReadFile(const std::string& sPath) {
    std::ifstream f(sPath, std::ios::binary);
    return {std::istreambuf_iterator<char>(f), {}};
}
// A general-protocol record as the file holds it: zero-padded to 128 bytes.
std::string Mgt(const std::string& sFields) {
    const std::string s = "MGT|" + postest::Stamp() + "|" + sFields + "|#\n";
    return s + std::string(kPosRecordSize - s.size(), '\0');
}

// Model 9 (general protocol on the FIFO) selected, and the FIFO held open for writing.
class PosData : public testing::Test {
protected:
    void SetUp() override {
        share = ResetTestShare();
        share->nPosModelCount = kPosModelCount;
        share->dwFeatures = kFeatureTextInsertion;
        share->bPosStore = 1;
        setenv("TZ", "UTC0", 1);
        tzset();
        postest::SetClock(postest::kT0);
        for (const auto& e : std::filesystem::directory_iterator("/mnt/pos")) std::filesystem::remove_all(e.path());
        ASSERT_EQ(PosModelInit(9), 0u);
    }
    void TearDown() override { close(fdWriter); }
    uint32_t Send(const std::string& s) {
        EXPECT_EQ(write(fdWriter, s.data(), s.size()), static_cast<ssize_t>(s.size()));
        return ReceivePosData();
    }

    ShareBlock* share = nullptr;
    int fdWriter = open("/tmp/pos_fifo", O_RDWR | O_NONBLOCK);
};

// Whole records are appended at the end, also behind a stray tail, to the file of their local
// date; a file that cannot be opened loses the record silently.
TEST_F(PosData, DailyFile) {
    EXPECT_EQ(Send("1|a|b|c|d\n"), 0u);
    std::ofstream(kDayFile, std::ios::app) << "xx";
    EXPECT_EQ(Send("2|a|b|c|d\n"), 0u);
    EXPECT_EQ(ReadFile(kDayFile), Mgt("01|a|b|c|d") + "xx" + Mgt("02|a|b|c|d"));
    setenv("TZ", "XST-9", 1);
    tzset();
    for (const auto& [t, sFile] : {std::pair{1709218799u, "20240229"}, {1709218800u, "20240301"}}) {   // 23:59:59, 00:00:00 local
        postest::SetClock(t);
        EXPECT_EQ(Send("3|a|b|c|d\n"), 0u);
        EXPECT_EQ(ReadFile("/mnt/pos/" + std::string(sFile) + ".pos"), Mgt("03|a|b|c|d"));
    }
    std::filesystem::remove("/mnt/pos/20240301.pos");
    ASSERT_TRUE(std::filesystem::create_directory("/mnt/pos/20240301.pos"));
    EXPECT_EQ(postest::Stderr([&] { EXPECT_EQ(Send("4|a|b|c|d\n"), 0u); }), "");
}

// The read comes first: with the feature bit clear (and not the KTT variant) the text is consumed
// and dropped. Model 0 reads and drops; with storage off the builder still runs: the transaction
// started then is recorded. Up to 128 bytes reach the builder whole; more are cut to 127 characters
// and a newline (the journal records only a line with a newline); at 256 bytes the rest waits.
TEST_F(PosData, ReadAndSwitches) {
    share->dwFeatures = ~kFeatureTextInsertion;
    EXPECT_EQ(Send("6|A|B|1|2\n"), 1u);
    share->nVariant = kVariantKtt;
    EXPECT_EQ(Send("7|A|B|1|2\n"), 0u);
    share->dwFeatures = kFeatureTextInsertion;
    EXPECT_EQ(ReceivePosData(), 1u);
    ASSERT_EQ(PosModelInit(0), 0u);
    EXPECT_EQ(Send("8|A|B|1|2\n"), 0u);
    ASSERT_EQ(PosModelInit(6), 0u);
    share->bPosStore = 0;
    EXPECT_EQ(Send("Transaction start\n"), 0u);
    EXPECT_EQ(ReadFile(kDayFile), Mgt("07|A|B|1|2"));
    share->bPosStore = 1;
    const std::string sEnd = "Transaction end";   // each read, with the file size after it
    for (const auto& [s, nSize] : {std::pair{sEnd + std::string(113, '.'), 128u}, {sEnd + std::string(114, '.'), 256u},
                                   {"Transaction start\n", 256u}, {std::string(256, '.') + sEnd + "\n", 256u}, {"", 384u}}) {
        EXPECT_EQ(Send(s), 0u);
        EXPECT_EQ(ReadFile(kDayFile).size(), nSize) << s.size();
    }
}

// A bad index, or a port that cannot take the line setting, changes nothing; an input that cannot
// be opened leaves the model selected without input.
TEST_F(PosData, SelectionFailures) {
    EXPECT_EQ(PosModelInit(12), 1u);
    ASSERT_EQ(rename("/dev/ttyS0", "/dev/ttyS0.away"), 0);
    share->nPortAssign = kPortAssignPosOnS0;
    EXPECT_EQ(postest::Stderr([] { EXPECT_EQ(PosModelInit(1), 1u); }), "Err (pos       /pos_data:108) Can't open pos port\n");
    EXPECT_EQ(Send("7|A|B|1|2\n"), 0u);
    EXPECT_EQ(ReadFile(kDayFile), Mgt("07|A|B|1|2"));
    share->nPortAssign = 0;
    EXPECT_EQ(postest::Stderr([] { EXPECT_EQ(PosModelInit(1), 0u); }), "Err (pos       /pos_data:78) Can't open POS DEVICE\n");
    EXPECT_EQ(ReceivePosData(), 1u);
    ASSERT_EQ(rename("/dev/ttyS0.away", "/dev/ttyS0"), 0);
    ASSERT_EQ(rename("/tmp/pos_fifo", "/tmp/pos_fifo.away"), 0);
    EXPECT_EQ(postest::Stderr([] { EXPECT_EQ(PosModelInit(0), 0u); }), "Err (pos       /pos_data:86) Can't open POS FIFO\n");
    ASSERT_EQ(rename("/tmp/pos_fifo.away", "/tmp/pos_fifo"), 0);
}
}  // namespace
