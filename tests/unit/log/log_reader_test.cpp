// Reading log files back: validation messages, positions, and the order of series and daily logs.
#include "lib/log/log_reader.h"
#include "tests/unit/log/log_test_util.h"

namespace {
using namespace logtest;
using Item = std::tuple<std::string, uint32_t, uint32_t>;   // file, index, first parameter

std::vector<uint8_t> Rec(uint32_t p0, uint32_t magic = kLogMagic) {
    LogRecord r{magic, 1700000000, 10, {p0}};
    std::vector<uint8_t> bytes(kLogRecordSize);
    LogRecordToBytes(&r, bytes.data());
    return bytes;
}

std::vector<uint8_t> Join(std::initializer_list<std::vector<uint8_t>> parts) {
    std::vector<uint8_t> all;
    for (const auto& p : parts) all.insert(all.end(), p.begin(), p.end());
    return all;
}

std::vector<Item> Take(LogSearchList* list) {
    std::vector<Item> items;
    for (uint32_t i = 0; i < list->nCount; ++i)
        items.emplace_back(list->ptItem[i].sFile, list->ptItem[i].nIndex, list->ptItem[i].tData.nParam[0]);
    LogReadAck(list);
    EXPECT_EQ(list->ptItem, nullptr);
    return items;
}

TEST(LogReader, ValidatesEachRecord) {
    const std::string magic = "Err (liblog    /log:1622) Invalid log magic code detected\n";
    const std::string align = "Err (liblog    /log:1610) LOG file size is not aligned\n";
    const std::vector<uint8_t> tail = {1, 2, 3, 4, 5};
    struct Case {
        std::vector<uint8_t> bytes;
        std::vector<uint32_t> want;   // index == first parameter
        std::string err;
    };
    const Case cases[] = {
        {{}, {}, ""},
        {Join({Rec(0), Rec(1), Rec(2, 0x4C4F4744), Rec(3)}), {0, 1, 3}, magic},
        {Join({Rec(0), tail}), {0}, align},
        {tail, {}, align},
        {Join({Rec(0, 0), Rec(1), tail}), {1}, align + magic},
    };
    for (const Case& c : cases) {
        WriteBytes("/tmp/sample.log", c.bytes);
        LogSearchList list{};
        testing::internal::CaptureStderr();
        EXPECT_EQ(LogReadFile("/tmp/sample.log", false, &list), 0u);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), c.err);
        std::vector<Item> want;
        for (uint32_t i : c.want) want.emplace_back("sample.log", i, i);
        EXPECT_EQ(Take(&list), want);
    }
    LogSearchList list{};
    EXPECT_EQ(LogReadFile("/tmp/none.log", false, &list), 1u);
    EXPECT_EQ(LogReadDaily("/tmp/none", false, &list), 1u);
    EXPECT_EQ(LogReadSeries("/tmp/none.log", false, &list), 0u) << "an empty series is no error";
    EXPECT_EQ(list.nCount, 0u);
}

TEST_F(LogTest, SeriesAndDailyReadOldestFirst) {
    WriteBytes(kLogDocFile, Rec(0));
    WriteBytes(std::string(kLogDocFile) + ".1", Rec(1));
    WriteBytes(std::string(kLogDocFile) + ".3", Join({Rec(3), Rec(4)}));
    WriteBytes(std::string(kLogDiskDir) + "/20240502.log", Rec(52));
    WriteBytes(std::string(kLogDiskDir) + "/20240430.log", Rec(430));
    WriteBytes(std::string(kLogDiskDir) + "/20240501.pos", Rec(0));
    LogSearchList list{};
    EXPECT_EQ(LogReadSeries(kLogDocFile, true, &list), 0u);
    EXPECT_EQ(LogReadDaily(kLogDiskDir, true, &list), 0u);
    EXPECT_EQ(Take(&list), (std::vector<Item>{{"mdvr.log.3", 0, 3}, {"mdvr.log.3", 1, 4}, {"mdvr.log.1", 0, 1},
                                              {"mdvr.log", 0, 0}, {"20240430.log", 0, 430}, {"20240502.log", 0, 52}}));
}

}  // namespace
