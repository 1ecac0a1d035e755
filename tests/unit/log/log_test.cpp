// The event log: building and routing of every record type, the bytes on disk, flash rotation,
// mount checks, the log semaphore, deletion of daily logs, and reading the files back.
#include <sys/mount.h>
#include <sys/wait.h>

#include <array>

#include "lib/log/log_reader.h"
#include "tests/support/fake_clock.h"
#include "tests/unit/log/log_test_util.h"

namespace {
using namespace logtest;
using Params = std::array<uint32_t, 5>;
using Item = std::tuple<std::string, uint32_t, uint32_t>;   // file, index, first parameter

enum Dest { kDoc = 1, kKey = 2, kDisk = 4, kBoth = kDoc | kDisk };
constexpr uint32_t kGiven = 1588334400;   // a caller-supplied event time: 2020-05-01 12:00:00 UTC
constexpr uint32_t kNow = 1700000000;     // the clock while a record is written
constexpr char kLong[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";

std::string Copy(const char* base, int n) { return std::string(base) + "." + std::to_string(n); }
auto Words(const LogRecord& r) { return std::tuple(r.nMagic, r.tTime, r.nType, std::vector<uint32_t>(r.nParam, r.nParam + 5)); }
long Size(const std::string& path) { return static_cast<long>(ReadBytes(path).size()); }

// count records with first parameters first, first + 1, ...; the one at badAt with its magic code
// byte-swapped; then nTail stray bytes.
std::vector<uint8_t> Recs(uint32_t first, uint32_t count, uint32_t badAt = ~0u, size_t nTail = 0) {
    std::vector<uint8_t> bytes(count * kLogRecordSize + nTail, 0x77);
    for (uint32_t i = 0; i < count; ++i) {
        const LogRecord r{i == badAt ? 0x4C4F4744 : kLogMagic, 1700000000, 10, {first + i}};
        LogRecordToBytes(&r, bytes.data() + i * kLogRecordSize);
    }
    return bytes;
}

// Arguments a1..a5 (a text, when given, follows a1 if that is non-zero, else it is a1), the
// destinations, and the parameter area of each record in order (for text: one record).
struct WriteCase { uint32_t type; Params args; const char* text; int dest; std::vector<Params> want; };
const WriteCase kCases[] = {
    {0, {}, kLong, kBoth, {{}}}, {31, {}, "NET", kDisk, {{}}}, {1, {kGiven, 7}, nullptr, kBoth, {{}}},   // text, caller's time
    {8, {kGiven}, "BACKUP DONE", kBoth, {{}}}, {16, {99}, kLong, kBoth, {{}}},               // time or discard, text
    {6, {0x80000005}, nullptr, kBoth, {{1}, {4}, {0x80000000}}}, {40, {0x80000001}, nullptr, kDisk, {{1}, {32}}},   // bits
    {42, {0}, nullptr, kDisk, {}}, {44, {255}, nullptr, kDisk, {{0}}}, {44, {0}, nullptr, kDisk, {{1}}},
    {30, {1, 2, 3, 4, 5}, nullptr, kDisk, {{1, 2, 3, 4, 0}}}, {39, {1, 2, 3, 4, 5}, nullptr, kBoth, {{1, 2, 3, 4, 0}}},
    {38, {1, 2, 3, 4, 5}, nullptr, kDisk, {{1, 2, 3, 4, 5}}}, {101, {1, 2, 3, 4}, nullptr, kDisk, {{1, 2, 3}}},
    {9, {0x11, 0x22, 3}, nullptr, kKey, {{0x11, 0x22}}}, {100, {0xD4, 0x12, 7}, nullptr, kDisk, {{0xD4, 0x12}}},
    {10, {42, 1}, nullptr, kBoth, {{42}}}, {88, {42, 1}, nullptr, kDoc, {{42}}}, {43, {1, 2, 3, 4, 5}, nullptr, kBoth, {{}}},
    {2, {1, 2, 3, 4, 5}, nullptr, kBoth, {{}}}, {103, {1, 2, 3, 4, 5}, nullptr, kBoth, {{}}},
};

TEST_F(LogTest, EveryTypeBuildsAndRoutes) {
    for (const WriteCase& c : kCases) {
        LogTest::SetUp();
        fakeclock::SetWall(kNow, 999);
        const Params& a = c.args;
        if (c.text == nullptr) LogWrite(c.type, a[0], a[1], a[2], a[3], a[4]);
        else if (a[0] != 0) LogWrite(c.type, a[0], c.text);
        else LogWrite(c.type, c.text);
        for (auto [dest, path] : {std::pair{kDoc, kLogDocFile}, {kKey, kLogKeyFile}, {kDisk, kLogDiskDir}}) {
            const std::vector<LogRecord> got = ReadRecords(path);
            ASSERT_EQ(got.size(), (c.dest & dest) ? c.want.size() : 0u) << "type " << c.type << " in " << path;
            for (size_t i = 0; i < got.size(); ++i) {
                LogRecord want{kLogMagic, a[0] == kGiven ? kGiven : kNow, c.type, {}};
                std::copy(c.want[i].begin(), c.want[i].end(), want.nParam);
                if (c.text != nullptr) LogRecordSetText(&want, c.text);   // its packing is checked below
                EXPECT_EQ(Words(got[i]), Words(want)) << "type " << c.type << " in " << path << ", record " << i;
            }
        }
    }
}

// The bytes on disk: "LOGD" in file order, little-endian words, text in order; a record with its
// own time goes to the daily file of that time's local date.
TEST_F(LogTest, FileBytesAndDailyName) {
    setenv("TZ", "XST-13", 1);
    tzset();
    LogWrite(8, kGiven, kLong);
    const std::vector<uint8_t> b = ReadBytes(kLogDocFile);
    EXPECT_EQ(std::string(b.begin(), b.end()), std::string("LOGD\x40\x0F\xAC\x5E\x08\0\0\0", 12) + "ABCDEFGHIJKLMNOPQRS" + '\0');
    EXPECT_EQ(ReadRecords("/mnt/pos/20200502.log").size(), 1u);
}

// A full flash log (6400 bytes) is rotated before the next write: copy n takes what copy n-1
// held, the ninth is dropped; the key log rotates on its own.
TEST_F(LogTest, FlashLogRotation) {
    WriteBytes(kLogDocFile, std::vector<uint8_t>(6399, 0));
    for (int n = 1; n <= 9; ++n) WriteBytes(Copy(kLogDocFile, n), std::vector<uint8_t>(n, static_cast<uint8_t>(n)));
    WriteBytes(kLogKeyFile, std::vector<uint8_t>(6400, 0));
    LogWrite(2);
    EXPECT_EQ(std::pair(Size(kLogDocFile), Size(Copy(kLogDocFile, 1))), std::pair(6431L, 1L));
    LogWrite(2);
    EXPECT_EQ(ListDir(kLogDocDir).size(), 11u);   // ten of mdvr.log, key.log
    EXPECT_EQ(std::pair(Size(kLogDocFile), Size(Copy(kLogDocFile, 1))), std::pair(32L, 6431L));
    for (int n = 2; n <= 9; ++n) EXPECT_EQ(ReadBytes(Copy(kLogDocFile, n)), std::vector<uint8_t>(n - 1, static_cast<uint8_t>(n - 1))) << n;
    LogWrite(9, 1u, 2u);
    EXPECT_EQ(std::pair(Size(kLogKeyFile), Size(Copy(kLogKeyFile, 1))), std::pair(32L, 6400L));
}

// An unmounted area loses its records without a word, the other is still written, and the flash
// log is cleared only when its area is mounted; unreadable
// /proc/mounts and an unopenable file are reported, and the semaphore is given back (the fixture
// checks it).
TEST_F(LogTest, FailedDestinations) {
    for (const char* dir : {kLogDiskDir, kLogDocDir}) {   // a fresh, empty area is mounted again
        ASSERT_EQ(umount2(dir, MNT_DETACH), 0);
        testing::internal::CaptureStderr();
        for (uint32_t type : {44u, 9u, 2u}) LogWrite(type, 3u, 4u);   // disk only, key log only, both
        EXPECT_EQ(ReadRecords(dir == kLogDiskDir ? kLogDocDir : kLogDiskDir).size(), 2u) << dir;
        EXPECT_EQ(ClearLogFile(), dir == kLogDocDir ? 1u : 0u);   // clears the flash area only when mounted
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << dir;
        EXPECT_TRUE(ListDir(dir).empty() && ListDir(kLogDocDir).empty()) << dir;
        ASSERT_EQ(mount("tmpfs", dir, "tmpfs", 0, nullptr), 0);
    }
    const LogRecord r{kLogMagic, kGiven, 2, {}};
    ASSERT_TRUE(std::filesystem::create_directory(kLogDocFile));
    ASSERT_EQ(mount("tmpfs", "/proc", "tmpfs", 0, nullptr), 0);   // hides /proc/mounts
    testing::internal::CaptureStderr();
    EXPECT_EQ(LoggerToHDD(&r), 1u);
    umount2("/proc", MNT_DETACH);
    EXPECT_EQ(LoggerToDOC(&r), 1u);
    EXPECT_EQ(LoggerToHDD(&r), 0u);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Err (liblog    /log:1054) Can't open /proc/mounts\n"
                                                       "Err (liblog    /log:1230) Can't open log file \"/mnt/doc/mdvr.log\"\n");
}

TEST_F(LogTest, WriterWaitsForSemaphoreHeldElsewhere) {
    ASSERT_EQ(Down(kLogSemaphore, kRecorderIpcId), 0);
    const pid_t child = fork();
    if (child == 0) {
        LogWrite(10, 77u);
        _exit(0);
    }
    usleep(300 * 1000);
    EXPECT_FALSE(std::filesystem::exists(kLogDocFile)) << "the writer did not wait";
    ASSERT_EQ(Up(kLogSemaphore, kRecorderIpcId), 0);
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    EXPECT_EQ(ReadRecords(kLogDocFile).size() + ReadRecords(kLogDiskDir).size(), 2u);
}

// The daily logs up to and including the day are deleted, each with a message.
TEST_F(LogTest, DeleteLOGFile) {
    for (const char* name : {"20231231.log", "20240501.log", "20240502.log", "20240101.pos", "notes.log", "1log"})
        WriteBytes(std::string(kLogDiskDir) + "/" + name, {1});
    testing::internal::CaptureStderr();
    EXPECT_EQ(DeleteLOGFile(2024, 5, 1), 0u);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Info(liblog    ) LOG filename to delete : /mnt/pos/1log\n"
                                                       "Info(liblog    ) LOG filename to delete : /mnt/pos/20231231.log\n"
                                                       "Info(liblog    ) LOG filename to delete : /mnt/pos/20240501.log\n");
    EXPECT_EQ(ListDir(kLogDiskDir), (std::set<std::string>{"20240101.pos", "20240502.log", "notes.log"}));
}

// A record without the magic code is reported and left out; a file whose length is not a multiple
// of 32 is reported and its whole records are used. Series and daily logs are read oldest first.
TEST_F(LogTest, Reader) {
    WriteBytes("/tmp/a.log", Recs(0, 4, 1, 5));
    for (const auto& [path, first, count] : {std::tuple{std::string(kLogDocFile), 0u, 1u}, {Copy(kLogDocFile, 1), 1u, 1u},
                                             {Copy(kLogDocFile, 3), 3u, 2u}}) WriteBytes(path, Recs(first, count));
    for (const auto& [name, p] : {std::pair{"20240502.log", 52u}, {"20240430.log", 430u}, {"20240501.pos", 0u}})
        WriteBytes(std::string(kLogDiskDir) + "/" + name, Recs(p, 1));
    LogSearchList list{};
    testing::internal::CaptureStderr();
    EXPECT_EQ(LogReadFile("/tmp/a.log", false, &list), 0u);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Err (liblog    /log:1610) LOG file size is not aligned\n"
                                                       "Err (liblog    /log:1622) Invalid log magic code detected\n");
    // a missing file or directory is an error, an empty series is not
    EXPECT_EQ(std::tuple(LogReadFile("/tmp/no.log", false, &list), LogReadDaily("/tmp/no", false, &list),
                         LogReadSeries("/tmp/no.log", false, &list)), std::tuple(1u, 1u, 0u));
    EXPECT_EQ(LogReadSeries(kLogDocFile, true, &list) + LogReadDaily(kLogDiskDir, true, &list), 0u);
    std::vector<Item> items;
    for (const LogSearchItem& e : std::vector(list.ptItem, list.ptItem + list.nCount))
        items.emplace_back(e.sFile, e.nIndex, e.tData.nParam[0]);
    LogReadAck(&list);
    EXPECT_EQ(items, (std::vector<Item>{{"a.log", 0, 0}, {"a.log", 2, 2}, {"a.log", 3, 3}, {"mdvr.log.3", 0, 3}, {"mdvr.log.3", 1, 4},
                                        {"mdvr.log.1", 0, 1}, {"mdvr.log", 0, 0}, {"20240430.log", 0, 430}, {"20240502.log", 0, 52}}));
}

// The reader shows what a record's type holds: its text, the parameters the type sets, or none.
TEST(LogDescribe, ShowsTheFieldsOfTheType) {
    const std::pair<uint32_t, const char*> rows[] = {{64, "\"DOOR 7\""}, {12, "\"DOOR 7\""}, {101, "1 2 3"}, {38, "1 2 3 4 5"},
                                                     {9, "1 2"}, {40, "1"}, {44, "1"}, {1, ""}, {43, ""}, {200, ""}};
    for (const auto& [type, want] : rows) {
        LogRecord r{kLogMagic, 0, type, {1, 2, 3, 4, 5}};
        if (want[0] == '"') LogRecordSetText(&r, "DOOR 7");
        char got[64];
        LogDescribeParams(r, got, sizeof got);
        EXPECT_STREQ(got, want) << type;
    }
    char cut[4];
    LogDescribeParams(LogRecord{kLogMagic, 0, 38, {123, 456}}, cut, sizeof cut);
    EXPECT_STREQ(cut, "123");
}
}  // namespace
