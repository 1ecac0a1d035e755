// The KTT monitoring link of custom mode 4, seen from outside: published model names, the echo
// on the link port, and a link message that ends as an event-log record on disk.
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "lib/log/log_reader.h"
#include "tests/system/harness.h"

namespace {

// (class, sub-code) of every KTT record (type 100) in the daily logs, waiting up to timeout_ms
// for at least count of them.
std::vector<std::pair<uint32_t, uint32_t>> KttRecords(size_t count, int timeout_ms) {
    std::vector<std::pair<uint32_t, uint32_t>> found;
    const double tEnd = MonotonicSeconds() + timeout_ms / 1000.0;
    do {
        found.clear();
        LogSearchList list{};
        LogReadDaily(kLogDiskDir, true, &list);
        for (uint32_t i = 0; i < list.nCount; ++i)
            if (list.ptItem[i].tData.nType == 100)
                found.emplace_back(list.ptItem[i].tData.nParam[0], list.ptItem[i].tData.nParam[1]);
        LogReadAck(&list);
        if (found.size() >= count) break;
        usleep(20 * 1000);
    } while (MonotonicSeconds() < tEnd);
    return found;
}

class KttSystemTest : public SystemTest {
protected:
    void SetUp() override {
        SystemTest::SetUp();
        LogSearchList old{};
        LogReadDaily(kLogDiskDir, false, &old);
        for (uint32_t i = 0; i < old.nCount; ++i) unlink((std::string(kLogDiskDir) + "/" + old.ptItem[i].sFile).c_str());
        LogReadAck(&old);
    }
    void StartKtt(uint32_t eventEnable) {
        rec->Share().nVariant = kVariantKtt;
        rec->Share().nKttEventEnable = eventEnable;
        ASSERT_TRUE(StartAndWait());
    }
};

TEST_F(KttSystemTest, PublishesLinkModels) {
    StartKtt(0);
    const char* const names[] = {"NONE", "CUSTOM MODE 4 TERMINAL", "CUSTOM MODE 4 DTMF", "CUSTOM MODE 4 FSK"};
    EXPECT_EQ(rec->Share().nKttModelCount, 4u);
    for (int i = 0; i < 4; ++i) EXPECT_STREQ(rec->Share().asKttModelName[i], names[i]);
    EXPECT_EQ(StopAndWait(), 0);
}

TEST_F(KttSystemTest, EchoesLinkInput) {
    StartKtt(0);
    const std::vector<uint8_t> sent = Bytes({'A', 'T', 0x0D, 0x00, 0xFF});
    ASSERT_TRUE(ttyS4->Write(sent));
    std::vector<uint8_t> back;
    const double tEnd = MonotonicSeconds() + 2.0;
    while (back.size() < sent.size() && MonotonicSeconds() < tEnd)
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
    std::vector<std::pair<uint32_t, uint32_t>> got = KttRecords(3, 3000);
    std::sort(got.begin(), got.end());
    EXPECT_EQ(got, (std::vector<std::pair<uint32_t, uint32_t>>{{5, 1}, {8, 1}, {0x21, 0x07}}));
    EXPECT_EQ(StopAndWait(), 0);
}

// Outside custom mode 4 the link is not served: no names, no echo, link messages dropped.
TEST_F(KttSystemTest, NoLinkOutsideCustomMode4) {
    ASSERT_TRUE(StartAndWait());
    rec->Send(0x800014, 0x21, 0x07, 0);
    ASSERT_TRUE(ttyS4->Write(Bytes({'A', 'T'})));
    rec->Send(2);
    ASSERT_TRUE(rec->WaitFor(0x10004, 2000).has_value());
    EXPECT_TRUE(ttyS4->Read(200).empty());
    EXPECT_EQ(rec->Share().nKttModelCount, 0u);
    EXPECT_TRUE(KttRecords(1, 0).empty());
    EXPECT_EQ(StopAndWait(), 0);
}

}  // namespace
