// Building and routing of event records: every type's argument rule, the bit-mask types and the
// destinations, checked on the files the records end up in.
#include <array>
#include <ctime>

#include "tests/unit/log/log_test_util.h"

namespace {
using namespace logtest;
using Params = std::array<uint32_t, 5>;

enum Dest { kDoc = 1, kKey = 2, kDisk = 4, kBoth = kDoc | kDisk };
constexpr uint32_t kGiven = 1588334400;   // a caller-supplied event time
constexpr char kLong[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr char kLong19[] = "ABCDEFGHIJKLMNOPQRS";

struct WriteCase {
    const char* name;
    uint32_t type;
    Params args;               // a1..a5
    int textArg;               // 0 none, else the argument that is the text (1 or 2)
    const char* text;          // passed as that argument; expected text when want is {{}}
    std::vector<Params> want;  // parameter area of each record, in order
    int dest;
};

const WriteCase kCases[] = {
    {"Text0", 0, {}, 1, kLong, {{}}, kBoth},
    {"Text31DiskOnly", 31, {}, 1, "NET", {{}}, kDisk},
    {"Text64", 64, {}, 1, "x", {{}}, kBoth},
    {"Text102Null", 102, {}, 1, nullptr, {{}}, kBoth},
    {"Time1", 1, {kGiven, 7}, 0, nullptr, {{}}, kBoth},
    {"Time3", 3, {kGiven, 7}, 0, nullptr, {{}}, kBoth},
    {"Time5", 5, {kGiven, 7}, 0, nullptr, {{}}, kBoth},
    {"TimeText8", 8, {kGiven}, 2, "BACKUP DONE", {{}}, kBoth},
    {"Discard12", 12, {99}, 2, "USER admin", {{}}, kBoth},
    {"Discard16", 16, {99}, 2, kLong, {{}}, kBoth},
    {"Mask6", 6, {0x80000005}, 0, nullptr, {{1}, {4}, {0x80000000}}, kBoth},
    {"Mask7Empty", 7, {0}, 0, nullptr, {}, kBoth},
    {"Four30", 30, {1, 2, 3, 4, 5}, 0, nullptr, {{1, 2, 3, 4, 0}}, kDisk},
    {"Four37", 37, {9, 8, 7, 6, 5}, 0, nullptr, {{9, 8, 7, 6, 0}}, kDisk},
    {"Four39", 39, {1, 2, 3, 4, 5}, 0, nullptr, {{1, 2, 3, 4, 0}}, kBoth},
    {"Five38", 38, {1, 2, 3, 4, 5}, 0, nullptr, {{1, 2, 3, 4, 5}}, kDisk},
    {"Channels40", 40, {0x80000001}, 0, nullptr, {{1}, {32}}, kDisk},
    {"Channels41", 41, {0x0000000A}, 0, nullptr, {{2}, {4}}, kDisk},
    {"Channels42Empty", 42, {0}, 0, nullptr, {}, kDisk},
    {"Channel44None", 44, {255}, 0, nullptr, {{0}}, kDisk},
    {"Channel44First", 44, {0}, 0, nullptr, {{1}}, kDisk},
    {"Two9KeyLog", 9, {0x11, 0x22, 3}, 0, nullptr, {{0x11, 0x22}}, kKey},
    {"Two50", 50, {5, 6, 7}, 0, nullptr, {{5, 6}}, kBoth},
    {"Two100", 100, {0xD4, 0x12, 7}, 0, nullptr, {{0xD4, 0x12}}, kDisk},
    {"One10", 10, {42, 1}, 0, nullptr, {{42}}, kBoth},
    {"One27", 27, {42, 1}, 0, nullptr, {{42}}, kBoth},
    {"One84FlashOnly", 84, {42, 1}, 0, nullptr, {{42}}, kDoc},
    {"One88FlashOnly", 88, {42, 1}, 0, nullptr, {{42}}, kDoc},
    {"One90", 90, {42, 1}, 0, nullptr, {{42}}, kBoth},
    {"Three101", 101, {1, 2, 3, 4}, 0, nullptr, {{1, 2, 3}}, kDisk},
    {"None2", 2, {1, 2, 3, 4, 5}, 0, nullptr, {{}}, kBoth},
    {"None43", 43, {1, 2, 3, 4, 5}, 0, nullptr, {{}}, kBoth},
    {"None99", 99, {1, 2, 3, 4, 5}, 0, nullptr, {{}}, kBoth},
    {"None103", 103, {1, 2, 3, 4, 5}, 0, nullptr, {{}}, kBoth},
};

class LogWriteTypes : public LogTest, public testing::WithParamInterface<WriteCase> {};

TEST_P(LogWriteTypes, BuildsAndRoutes) {
    const WriteCase& c = GetParam();
    const Params& a = c.args;
    uint32_t before = static_cast<uint32_t>(std::time(nullptr));
    if (c.textArg == 1)
        LogWrite(c.type, c.text);
    else if (c.textArg == 2)
        LogWrite(c.type, a[0], c.text);
    else
        LogWrite(c.type, a[0], a[1], a[2], a[3], a[4]);
    uint32_t after = static_cast<uint32_t>(std::time(nullptr));
    bool bGivenTime = a[0] == kGiven;

    const std::pair<int, const char*> places[] = {{kDoc, kLogDocFile}, {kKey, kLogKeyFile}, {kDisk, kLogDiskDir}};
    for (auto [dest, path] : places) {
        SCOPED_TRACE(path);
        std::vector<LogRecord> got = ReadRecords(path);
        ASSERT_EQ(got.size(), (c.dest & dest) ? c.want.size() : 0u);
        for (size_t i = 0; i < got.size(); ++i) {
            EXPECT_EQ(got[i].nMagic, kLogMagic);
            EXPECT_EQ(got[i].nType, c.type);
            EXPECT_TRUE(bGivenTime ? got[i].tTime == kGiven : got[i].tTime >= before && got[i].tTime <= after);
            if (c.textArg != 0) {
                char text[kLogTextMax + 1];
                LogRecordText(&got[i], text);
                EXPECT_STREQ(text, c.text == kLong ? kLong19 : (c.text ? c.text : ""));
                EXPECT_EQ(got[i].nParam[4] >> 24, 0u) << "byte 31";
            } else {
                for (int k = 0; k < 5; ++k) EXPECT_EQ(got[i].nParam[k], c.want[i][k]) << i << "/" << k;
            }
        }
    }
    EXPECT_EQ(ListDir(kLogDocDir).empty() && ListDir(kLogDiskDir).empty(), c.want.empty());
}

INSTANTIATE_TEST_SUITE_P(Types, LogWriteTypes, testing::ValuesIn(kCases),
                         [](const testing::TestParamInfo<WriteCase>& p) { return std::string(p.param.name); });

// The bytes on disk: "LOGD" in file order, little-endian words, text in order; and a record with
// its own time goes to the daily file of that time's local date.
TEST_F(LogTest, FileBytesAndDailyName) {
    LogWrite(8, kGiven, kLong);
    LogWrite(10, 0x01020304u);
    std::vector<uint8_t> bytes = ReadBytes(kLogDocFile);
    ASSERT_EQ(bytes.size(), 64u);
    EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 4), "LOGD");
    EXPECT_EQ(std::string(bytes.begin() + 12, bytes.begin() + 31), kLong19);
    EXPECT_EQ(bytes[31], 0);
    EXPECT_EQ(std::vector<uint8_t>(bytes.begin() + 40, bytes.begin() + 48), (std::vector<uint8_t>{10, 0, 0, 0, 4, 3, 2, 1}));

    time_t t = kGiven;
    struct tm local;
    localtime_r(&t, &local);
    char name[32];
    std::snprintf(name, sizeof name, "%04d%02d%02d.log", local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
    EXPECT_EQ(ReadRecords(std::string(kLogDiskDir) + "/" + name).size(), 1u);
}

}  // namespace
