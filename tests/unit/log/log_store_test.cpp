// Storage of event records: flash rotation, mount checks, the log semaphore, deletion of daily
// logs, clearing of the flash log, and the start-up history.
#include <sys/mount.h>
#include <sys/wait.h>

#include "tests/support/fake_clock.h"
#include "tests/unit/log/log_test_util.h"

namespace {
using namespace logtest;

std::string Copy(const char* base, int n) { return std::string(base) + "." + std::to_string(n); }

TEST_F(LogTest, FlashLogRotatesFromFullSize) {
    WriteBytes(kLogDocFile, std::vector<uint8_t>(6399, 0xEE));
    LogWrite(2);
    EXPECT_EQ(FileSize(kLogDocFile), 6431);
    EXPECT_EQ(FileSize(Copy(kLogDocFile, 1)), -1);
    LogWrite(2);
    EXPECT_EQ(FileSize(Copy(kLogDocFile, 1)), 6431);
    EXPECT_EQ(FileSize(kLogDocFile), 32);
}

// Copy n takes what copy n-1 held, the ninth is dropped; the key log rotates on its own.
TEST_F(LogTest, RotationKeepsTenFilesAtMost) {
    WriteBytes(kLogDocFile, std::vector<uint8_t>(6400, 0));
    for (int n = 1; n <= 9; ++n) WriteBytes(Copy(kLogDocFile, n), std::vector<uint8_t>(n, static_cast<uint8_t>(n)));
    WriteBytes(kLogKeyFile, std::vector<uint8_t>(6400, 0));
    LogWrite(2);
    EXPECT_EQ(ListDir(kLogDocDir).size(), 11u);   // ten of mdvr.log, key.log
    EXPECT_EQ(FileSize(kLogDocFile), 32);
    EXPECT_EQ(FileSize(Copy(kLogDocFile, 1)), 6400);
    for (int n = 2; n <= 9; ++n)
        EXPECT_EQ(ReadBytes(Copy(kLogDocFile, n)), std::vector<uint8_t>(n - 1, static_cast<uint8_t>(n - 1))) << n;
    EXPECT_EQ(FileSize(kLogKeyFile), 6400);
    LogWrite(9, 1u, 2u);
    EXPECT_EQ(FileSize(Copy(kLogKeyFile, 1)), 6400);
    EXPECT_EQ(FileSize(kLogKeyFile), 32);
}

// An unmounted area loses its records without a word; the other destination is still written.
TEST_F(LogTest, UnmountedAreaLosesRecordsSilently) {
    for (const char* dir : {kLogDiskDir, kLogDocDir}) {
        SCOPED_TRACE(dir);
        const char* other = dir == kLogDiskDir ? kLogDocDir : kLogDiskDir;
        ASSERT_EQ(umount2(dir, MNT_DETACH), 0);
        testing::internal::CaptureStderr();
        LogWrite(44, 3u);      // disk only
        LogWrite(9, 1u, 2u);   // key log only
        LogWrite(2);           // flash, then disk
        if (dir == kLogDocDir) {
            EXPECT_EQ(ClearLogFile(), 1u);
        }
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_TRUE(ListDir(dir).empty());
        EXPECT_EQ(ReadRecords(other).size(), 2u);
        ASSERT_EQ(mount("tmpfs", dir, "tmpfs", 0, nullptr), 0);
        for (const std::string& name : ListDir(other)) unlink((std::string(other) + "/" + name).c_str());
    }
}

// Failures are reported with their texts, and the semaphore is given back on every path (the
// fixture checks it).
TEST_F(LogTest, FailuresAreReported) {
    LogRecord r{kLogMagic, 1588334400, 2, {}};
    ASSERT_EQ(mkdir(kLogDocFile, 0755), 0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(LoggerToDOC(&r), 1u);
    EXPECT_EQ(LoggerToHDD(&r), 0u);
    ASSERT_EQ(mount("tmpfs", "/proc", "tmpfs", 0, nullptr), 0);   // hides /proc/mounts
    EXPECT_EQ(LoggerToHDD(&r), 1u);
    umount2("/proc", MNT_DETACH);
    rmdir(kLogDocFile);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Err (liblog    /log:1230) Can't open log file \"/mnt/doc/mdvr.log\"\n"
              "Err (liblog    /log:1054) Can't open /proc/mounts\n");
    EXPECT_EQ(ReadRecords(kLogDiskDir).size(), 1u);
}

TEST_F(LogTest, WriterWaitsForSemaphoreHeldElsewhere) {
    ASSERT_EQ(Down(kLogSemaphore, kRecorderIpcId), 0);
    pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        LogWrite(10, 77u);
        _exit(0);
    }
    usleep(300 * 1000);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, WNOHANG), 0) << "the writer did not wait";
    EXPECT_EQ(FileSize(kLogDocFile), -1);
    ASSERT_EQ(Up(kLogSemaphore, kRecorderIpcId), 0);
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_EQ(ReadRecords(kLogDocFile).size(), 1u);
    EXPECT_EQ(ReadRecords(kLogDiskDir).size(), 1u);
}

TEST_F(LogTest, DeleteLOGFileUpToAndIncludingDay) {
    for (const char* name : {"20231231.log", "20240430.log", "20240501.log", "20240502.log", "20240101.pos",
                             "notes.log", "1log"})
        WriteBytes(std::string(kLogDiskDir) + "/" + name, {1});
    testing::internal::CaptureStderr();
    EXPECT_EQ(DeleteLOGFile(2024, 5, 1), 0u);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Info(liblog    ) LOG filename to delete : /mnt/pos/1log\n"
              "Info(liblog    ) LOG filename to delete : /mnt/pos/20231231.log\n"
              "Info(liblog    ) LOG filename to delete : /mnt/pos/20240430.log\n"
              "Info(liblog    ) LOG filename to delete : /mnt/pos/20240501.log\n");
    EXPECT_EQ(ListDir(kLogDiskDir), (std::vector<std::string>{"20240101.pos", "20240502.log", "notes.log"}));
}

TEST_F(LogTest, ClearLogFileRemovesBothSeries) {
    for (const std::string& name : {std::string(kLogDocFile), Copy(kLogDocFile, 9), std::string(kLogKeyFile),
                                    Copy(kLogKeyFile, 1), std::string(kLogDocDir) + "/other.txt"})
        WriteBytes(name, {1});
    EXPECT_EQ(ClearLogFile(), 0u);
    EXPECT_EQ(ListDir(kLogDocDir), std::vector<std::string>{"other.txt"});
}

TEST(LeaveUpLog, KeepsTheLastTenStarts) {
    ShareUpHistory history{};
    history.nStarts = 5;
    std::vector<uint32_t> stored;
    for (uint32_t i = 1; i <= 11; ++i) {
        fakeclock::SetUptime(1000 + i);
        stored.push_back(LeaveUpLog(&history));
    }
    fakeclock::UseReal();
    EXPECT_EQ(history.nStarts, 16u);
    for (int k = 0; k < kUpHistoryDepth; ++k) {
        EXPECT_EQ(history.adwUptime[k], 1011u - k) << k;
        EXPECT_EQ(history.adwTime[k], stored[10 - k]) << k;
    }
}

}  // namespace
