// Helpers shared by the event-log and KTT tests: empty log directories and a fresh semaphore set
// 47 per test, and raw access to the files the library writes.
#pragma once
#include <sys/sem.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "lib/ipc/IpcKey.h"
#include "lib/ipc/Semaphore.h"
#include "lib/log/log.h"

namespace logtest {
inline std::set<std::string> ListDir(const std::string& dir) {
    std::set<std::string> names;
    for (const auto& e : std::filesystem::directory_iterator(dir)) names.insert(e.path().filename());
    return names;
}

inline std::vector<uint8_t> ReadBytes(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(f), {}};
}

inline void WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
    ASSERT_TRUE(std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), bytes.size())) << path;
}

// Records of one file, or of every file of a directory in name order.
inline std::vector<LogRecord> ReadRecords(const std::string& path) {
    std::vector<LogRecord> records;
    for (const std::string& name : std::filesystem::is_directory(path) ? ListDir(path) : std::set<std::string>{""}) {
        const std::vector<uint8_t> bytes = ReadBytes(name.empty() ? path : path + "/" + name);
        for (size_t off = 0; off + kLogRecordSize <= bytes.size(); off += kLogRecordSize)
            LogRecordFromBytes(bytes.data() + off, &records.emplace_back());
    }
    return records;
}

class LogTest : public testing::Test {
protected:
    void SetUp() override {
        for (const char* dir : {kLogDiskDir, kLogDocDir})
            for (const std::string& name : ListDir(dir)) std::filesystem::remove_all(std::string(dir) + "/" + name);
        RemoveSems(kRecorderIpcId);
        ASSERT_EQ(Semaphores(std::vector<int32_t>{1, 1}.data(), 2, kRecorderIpcId), 0);
    }
    // Every path must have given the log semaphore back.
    void TearDown() override { EXPECT_EQ(semctl(semget(IpcKey(kRecorderIpcId), 0, 0), kLogSemaphore, GETVAL), 1); }
};
}  // namespace logtest
