// Log file reader: validates and collects records of single files, rotating series and daily logs.
#include "lib/log/log_reader.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "lib/ipc/MsgLine.h"

namespace {

constexpr MsgSource kSource{kTagLog, "log"};
// Line numbers of the reader's two messages (the writer's lie below 1400).
constexpr int kLineNotAligned = 1610;
constexpr int kLineBadMagic = 1622;

// Reads up to 32 bytes, across short reads; returns the count (less only at the end or on error).
ssize_t ReadRecord(int fd, uint8_t* bytes) {
    ssize_t got = 0;
    while (got < kLogRecordSize) {
        ssize_t n = read(fd, bytes + got, kLogRecordSize - got);
        if (n <= 0) break;
        got += n;
    }
    return got;
}

bool Append(LogSearchList* result, const char* name, uint32_t index, const LogRecord& record) {
    if (result->nCount == result->nRoom) {
        uint32_t room = result->nRoom ? result->nRoom * 2 : 256;
        void* grown = std::realloc(result->ptItem, room * sizeof(LogSearchItem));
        if (grown == nullptr) return false;
        result->ptItem = static_cast<LogSearchItem*>(grown);
        result->nRoom = room;
    }
    LogSearchItem& item = result->ptItem[result->nCount++];
    std::memset(&item, 0, sizeof item);
    std::snprintf(item.sFile, sizeof item.sFile, "%s", name);
    item.nIndex = index;
    item.tData = record;
    return true;
}

uint32_t ReadOpenFile(int fd, const char* path, LogSearchList* result) {
    struct stat st;
    if (fstat(fd, &st) == 0 && st.st_size % kLogRecordSize != 0)
        ErrLine(kSource, kLineNotAligned, "LOG file size is not aligned");
    const char* slash = std::strrchr(path, '/');
    const char* name = slash ? slash + 1 : path;
    uint8_t bytes[kLogRecordSize];
    for (uint32_t index = 0; ReadRecord(fd, bytes) == kLogRecordSize; ++index) {
        LogRecord record;
        LogRecordFromBytes(bytes, &record);
        if (record.nMagic != kLogMagic) {
            ErrLine(kSource, kLineBadMagic, "Invalid log magic code detected");
            continue;
        }
        if (!Append(result, name, index, record)) return 1;
    }
    return 0;
}

}  // namespace

uint32_t LogReadFile(const char* path, bool bLock, LogSearchList* result) {
    if (path == nullptr || result == nullptr) return 1;
    auto readFile = [&]() -> uint32_t {
        int fd = open(path, O_RDONLY);
        if (fd < 0) return 1;
        uint32_t rc = ReadOpenFile(fd, path, result);
        close(fd);
        return rc;
    };
    if (!bLock) return readFile();
    LogSemaphoreGuard guard;
    return readFile();
}

uint32_t LogReadSeries(const char* base, bool bLock, LogSearchList* result) {
    uint32_t rc = 0;
    char path[300];
    for (int n = kLogRotateCopies; n >= 0; --n) {
        if (n > 0)
            std::snprintf(path, sizeof path, "%s.%d", base, n);
        else
            std::snprintf(path, sizeof path, "%s", base);
        if (access(path, F_OK) != 0) continue;
        if (LogReadFile(path, bLock, result) != 0) rc = 1;
    }
    return rc;
}

uint32_t LogReadDaily(const char* dir, bool bLock, LogSearchList* result) {
    struct dirent** list = nullptr;
    int count = LogScanDaily(dir, &list);
    if (count < 0) return 1;
    char path[600];
    for (int i = 0; i < count; ++i) {
        std::snprintf(path, sizeof path, "%s/%s", dir, list[i]->d_name);
        LogReadFile(path, bLock, result);
        std::free(list[i]);
    }
    std::free(list);
    return 0;
}

void LogDescribeParams(const LogRecord& record, char* out, size_t size) {
    if (size == 0) return;
    out[0] = '\0';
    const LogTypeRule rule = LogRuleOf(record.nType);
    int nWords = 0;
    switch (rule.eFields) {
        case LogFields::Text:
        case LogFields::EventTimeText:
        case LogFields::SkipText: {
            char text[kLogTextMax + 1];
            LogRecordText(&record, text);
            std::snprintf(out, size, "\"%s\"", text);
            return;
        }
        case LogFields::Numbers:
            nWords = rule.nNumbers;
            break;
        case LogFields::BitMasks:
        case LogFields::BitNumbers:
        case LogFields::Channel:
            nWords = 1;
            break;
        case LogFields::None:
        case LogFields::EventTime:
            break;
    }
    size_t used = 0;
    for (int i = 0; i < nWords && used < size; ++i)
        used += static_cast<size_t>(std::snprintf(out + used, size - used, i > 0 ? " %u" : "%u", record.nParam[i]));
}
