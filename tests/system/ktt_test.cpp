// The KTT monitoring link of custom mode 4, seen from outside: published model names, the echo
// on the link port, and a link message that ends as an event-log record on disk.
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "lib/log/log_reader.h"
#include "tests/system/harness.h"

namespace {
class KttSystemTest : public SystemTest {
protected:
    // Starts in custom mode 4 with the given event reporting path, on empty daily logs.
    void StartKtt(uint32_t eventEnable) {
        LogSearchList old{};
        LogReadDaily(kLogDiskDir, false, &old);
        for (uint32_t i = 0; i < old.nCount; ++i)
            unlink((std::string(kLogDiskDir) + "/" + old.ptItem[i].sFile).c_str());
        LogReadAck(&old);
        rec->Share().nVariant = kVariantKtt;
        rec->Share().nKttEventEnable = eventEnable;
        ASSERT_TRUE(StartAndWait());
    }
};

TEST_F(KttSystemTest, PublishesLinkModelsAndEchoesLinkInput) {
    StartKtt(0);
    const char* const names[] = {"NONE", "CUSTOM MODE 4 TERMINAL", "CUSTOM MODE 4 DTMF", "CUSTOM MODE 4 FSK"};
    EXPECT_EQ(rec->Share().nKttModelCount, 4u);
    for (int i = 0; i < 4; ++i) EXPECT_STREQ(rec->Share().asKttModelName[i], names[i]);
    const std::vector<uint8_t> sent = Bytes({'A', 'T', 0x0D, 0x00, 0xFF});
    ASSERT_TRUE(ttyS4->Write(sent));
    std::vector<uint8_t> back;
    for (const double tEnd = MonotonicSeconds() + 2.0; back.size() < sent.size() && MonotonicSeconds() < tEnd;)
        for (const SerialChunk& c : ttyS4->Read(50)) back.insert(back.end(), c.abData.begin(), c.abData.end());
    EXPECT_EQ(back, sent);
    EXPECT_EQ(StopAndWait(), 0);
}

// The start-up message (5, 1), the system identifier (8, 1) and a message of the main
// application all end as records of type 100 (the first and the last may pass each other on
// the queue).
TEST_F(KttSystemTest, LinkMessageIsLogged) {
    StartKtt(1);
    rec->Send(0x800014, 0x21, 0x07, 0);
    std::vector<std::pair<uint32_t, uint32_t>> got;
    for (const double tEnd = MonotonicSeconds() + 3.0; got.size() < 3 && MonotonicSeconds() < tEnd; usleep(20000)) {
        got.clear();
        LogSearchList list{};
        LogReadDaily(kLogDiskDir, true, &list);
        for (uint32_t i = 0; i < list.nCount; ++i)
            if (const LogRecord& r = list.ptItem[i].tData; r.nType == 100) got.emplace_back(r.nParam[0], r.nParam[1]);
        LogReadAck(&list);
    }
    std::sort(got.begin(), got.end());
    EXPECT_EQ(got, (std::vector<std::pair<uint32_t, uint32_t>>{{5, 1}, {8, 1}, {0x21, 0x07}}));
    EXPECT_EQ(StopAndWait(), 0);
}
}  // namespace
