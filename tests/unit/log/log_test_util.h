// Helpers shared by the event-log and KTT tests: empty log directories and a fresh semaphore set
// 47 per test, and raw access to the files the library writes.
#pragma once
#include <dirent.h>
#include <fcntl.h>
#include <sys/sem.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "lib/ipc/IpcKey.h"
#include "lib/ipc/Semaphore.h"
#include "lib/log/log.h"

namespace logtest {

inline std::vector<std::string> ListDir(const std::string& dir) {
    std::vector<std::string> names;
    if (DIR* d = opendir(dir.c_str())) {
        while (struct dirent* e = readdir(d))
            if (e->d_name[0] != '.') names.push_back(e->d_name);
        closedir(d);
    }
    std::sort(names.begin(), names.end());
    return names;
}

inline long FileSize(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 ? static_cast<long>(st.st_size) : -1;
}

inline std::vector<uint8_t> ReadBytes(const std::string& path) {
    std::vector<uint8_t> bytes(std::max(FileSize(path), 0L));
    int fd = open(path.c_str(), O_RDONLY);
    if (fd >= 0 && read(fd, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) bytes.clear();
    if (fd >= 0) close(fd);
    return bytes;
}

inline void WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
    int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    ASSERT_GE(fd, 0) << path;
    ASSERT_EQ(write(fd, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    close(fd);
}

// Records of one file, or of every file of a directory in name order.
inline std::vector<LogRecord> ReadRecords(const std::string& path) {
    std::vector<LogRecord> records;
    struct stat st;
    if (stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) {
        for (const std::string& name : ListDir(path))
            for (const LogRecord& r : ReadRecords(path + "/" + name)) records.push_back(r);
        return records;
    }
    std::vector<uint8_t> bytes = ReadBytes(path);
    for (size_t off = 0; off + kLogRecordSize <= bytes.size(); off += kLogRecordSize) {
        records.emplace_back();
        LogRecordFromBytes(bytes.data() + off, &records.back());
    }
    return records;
}

inline int SemValue(int sem) { return semctl(semget(IpcKey(kRecorderIpcId), 0, 0), sem, GETVAL); }

class LogTest : public testing::Test {
protected:
    void SetUp() override {
        for (const char* dir : {kLogDiskDir, kLogDocDir})
            for (const std::string& name : ListDir(dir))
                if (unlink((std::string(dir) + "/" + name).c_str()) != 0) rmdir((std::string(dir) + "/" + name).c_str());
        RemoveSems(kRecorderIpcId);
        const int32_t values[2] = {1, 1};
        ASSERT_EQ(Semaphores(values, 2, kRecorderIpcId), 0);
    }
    void TearDown() override {
        EXPECT_EQ(SemValue(kLogSemaphore), 1) << "the log semaphore was not given back";
        RemoveSems(kRecorderIpcId);
    }
};

}  // namespace logtest
