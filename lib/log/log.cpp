// Event log writing: record building, routing, the daily disk log and the rotating flash logs.
//
// Record (32 bytes, little-endian):
//   0  u32     magic 0x44474F4C ("LOGD")
//   4  u32     event time, seconds since the epoch
//   8  u32     type
//   12 5 x u32 parameters, or text: bytes 12..30 NUL-padded, byte 31 always 0
#include "lib/log/log.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <initializer_list>

#include "lib/ipc/Clock.h"
#include "lib/ipc/IpcKey.h"
#include "lib/ipc/MsgLine.h"
#include "lib/ipc/Semaphore.h"

namespace {

constexpr MsgSource kSource{kTagLog, "log"};
constexpr int kLineMounts = 1054;
constexpr int kLineDocOpen = 1230;
constexpr int kLineHddOpen = 1392;
constexpr int kMountLineMax = 256;   // a /proc/mounts line is examined in pieces of at most 255

int nLocalVendor = 0;

void Put32(uint8_t* p, uint32_t v) {
    p[0] = static_cast<uint8_t>(v);
    p[1] = static_cast<uint8_t>(v >> 8);
    p[2] = static_cast<uint8_t>(v >> 16);
    p[3] = static_cast<uint8_t>(v >> 24);
}

uint32_t Get32(const uint8_t* p) {
    return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 |
           static_cast<uint32_t>(p[2]) << 16 | static_cast<uint32_t>(p[3]) << 24;
}

// True when a line of /proc/mounts names dir. Read through a descriptor and a fixed line buffer
// so that the KTT path, which logs, allocates nothing.
bool IsMounted(const char* dir) {
    int fd = open("/proc/mounts", O_RDWR);   // read-update, as the recorder has always opened it
    if (fd < 0) {
        ErrLine(kSource, kLineMounts, "Can't open /proc/mounts");
        return false;
    }
    char line[kMountLineMax];
    int len = 0;
    bool found = false;
    char chunk[512];
    ssize_t n;
    while (!found && (n = read(fd, chunk, sizeof chunk)) > 0) {
        for (ssize_t i = 0; i < n && !found; ++i) {
            line[len++] = chunk[i];
            if (chunk[i] == '\n' || len == kMountLineMax - 1) {
                line[len] = '\0';
                found = std::strstr(line, dir) != nullptr;
                len = 0;
            }
        }
    }
    if (!found && len > 0) {
        line[len] = '\0';
        found = std::strstr(line, dir) != nullptr;
    }
    close(fd);
    return found;
}

bool IsRegular(const char* path, struct stat* st) {
    return stat(path, st) == 0 && S_ISREG(st->st_mode);
}

// Moves the numbered copies up by one (the ninth is deleted) and makes the file copy 1.
void RotateFlashLog(const char* path) {
    struct stat st;
    if (!IsRegular(path, &st) || st.st_size < kLogRotateSize) return;
    char from[80];
    char to[80];
    for (int n = kLogRotateCopies; n >= 1; --n) {
        std::snprintf(from, sizeof from, "%s.%d", path, n);
        if (!IsRegular(from, &st)) continue;
        if (n == kLogRotateCopies) {
            unlink(from);
        } else {
            std::snprintf(to, sizeof to, "%s.%d", path, n + 1);
            rename(from, to);
        }
    }
    std::snprintf(to, sizeof to, "%s.%d", path, 1);
    rename(path, to);
}

// Appends one record to path under the log semaphore. The flash log is rotated first and its
// data forced to the medium; the disk log is neither.
uint32_t AppendRecord(const char* path, const LogRecord* record, bool bFlash, int nLineOpen) {
    LogSemaphoreGuard guard;
    if (bFlash) RotateFlashLog(path);
    int fd = open(path, O_RDWR | O_APPEND | O_CREAT, 0666);
    if (fd < 0) {
        ErrLine(kSource, nLineOpen, "Can't open log file \"%s\"", path);
        return 1;
    }
    uint8_t bytes[kLogRecordSize];
    LogRecordToBytes(record, bytes);
    // A short write is a failure too (a full medium); nothing is said, as for an unmounted one.
    bool bOk = write(fd, bytes, sizeof bytes) == static_cast<ssize_t>(sizeof bytes);
    if (bFlash) fdatasync(fd);
    if (close(fd) != 0) bOk = false;
    return bOk ? 0 : 1;
}

constexpr uint8_t kLogStoreFlash = kLogStoreDoc | kLogStoreKey;

// Stores a record where its type's rule says: the flash log first, then the disk log. A failure
// to write one destination does not stop the other.
void Route(const LogRecord* record) {
    const uint8_t yStore = LogRuleOf(record->nType).yStore;
    if (yStore & kLogStoreFlash) LoggerToDOC(record);
    if (yStore & kLogStoreDisk) LoggerToHDD(record);
}

// One record per set bit of mask, lowest first; nParam[0] is the bit's mask or its 1-based number.
void RouteBits(LogRecord* record, uint32_t mask, bool bMaskValue) {
    for (uint32_t bit = 0; bit < 32; ++bit) {
        if (!((mask >> bit) & 1u)) continue;
        record->nParam[0] = bMaskValue ? (1u << bit) : bit + 1;
        Route(record);
    }
}

}  // namespace

LogSemaphoreGuard::LogSemaphoreGuard() : bTaken(Down(kLogSemaphore, kRecorderIpcId) == 0) {}

LogSemaphoreGuard::~LogSemaphoreGuard() {
    if (bTaken) Up(kLogSemaphore, kRecorderIpcId);
}

void LogRecordToBytes(const LogRecord* record, uint8_t bytes[kLogRecordSize]) {
    Put32(bytes, record->nMagic);
    Put32(bytes + 4, record->tTime);
    Put32(bytes + 8, record->nType);
    for (int i = 0; i < 5; ++i) Put32(bytes + 12 + 4 * i, record->nParam[i]);
}

void LogRecordFromBytes(const uint8_t bytes[kLogRecordSize], LogRecord* record) {
    record->nMagic = Get32(bytes);
    record->tTime = Get32(bytes + 4);
    record->nType = Get32(bytes + 8);
    for (int i = 0; i < 5; ++i) record->nParam[i] = Get32(bytes + 12 + 4 * i);
}

void LogRecordSetText(LogRecord* record, const char* text) {
    std::memset(record->nParam, 0, sizeof record->nParam);
    if (text == nullptr) return;
    for (int i = 0; i < kLogTextMax && text[i] != '\0'; ++i)
        record->nParam[i / 4] |= static_cast<uint32_t>(static_cast<uint8_t>(text[i])) << (8 * (i % 4));
}

void LogRecordText(const LogRecord* record, char out[kLogTextMax + 1]) {
    for (int i = 0; i < kLogTextMax; ++i)
        out[i] = static_cast<char>(record->nParam[i / 4] >> (8 * (i % 4)));
    out[kLogTextMax] = '\0';
}

int LogScanDaily(const char* dir, struct dirent*** list) {
    auto isDaily = [](const struct dirent* e) -> int {
        return e->d_name[0] >= '0' && e->d_name[0] <= '9' && std::strstr(e->d_name, "log") != nullptr;
    };
    // Plain byte order, whatever the locale: the names then sort by date.
    auto byName = [](const struct dirent** a, const struct dirent** b) -> int {
        return std::strcmp((*a)->d_name, (*b)->d_name);
    };
    return scandir(dir, list, isDaily, byName);
}

uint32_t LeaveUpLog(LogUpHistory* block) {
    const uint32_t now = GetWallTime().dwTime;
    if (block == nullptr) return now;
    for (int i = kUpHistoryDepth - 1; i > 0; --i) {
        block->adwUptime[i] = block->adwUptime[i - 1];
        block->adwTime[i] = block->adwTime[i - 1];
    }
    block->adwUptime[0] = GetUptime();
    block->adwTime[0] = now;
    block->nStarts = block->nStarts + 1;
    return now;
}

void LogWrite(uint32_t type, ...) {
    LogRecord record{};
    record.nMagic = kLogMagic;
    record.nType = type;
    record.tTime = GetWallTime().dwTime;

    const LogTypeRule rule = LogRuleOf(type);
    va_list ap;
    va_start(ap, type);
    switch (rule.eFields) {
        case LogFields::None:
            break;
        case LogFields::Numbers:
            for (int i = 0; i < rule.nNumbers; ++i) record.nParam[i] = va_arg(ap, uint32_t);
            break;
        case LogFields::Text:
            LogRecordSetText(&record, va_arg(ap, const char*));
            break;
        case LogFields::EventTime:
            record.tTime = va_arg(ap, uint32_t);
            break;
        case LogFields::EventTimeText:
            record.tTime = va_arg(ap, uint32_t);
            LogRecordSetText(&record, va_arg(ap, const char*));
            break;
        case LogFields::SkipText:
            (void)va_arg(ap, uint32_t);
            LogRecordSetText(&record, va_arg(ap, const char*));
            break;
        case LogFields::BitMasks:
        case LogFields::BitNumbers:
            RouteBits(&record, va_arg(ap, uint32_t), rule.eFields == LogFields::BitMasks);
            va_end(ap);
            return;
        case LogFields::Channel: {
            const uint32_t channel = va_arg(ap, uint32_t);
            record.nParam[0] = channel == 255 ? 0 : channel + 1;
            break;
        }
    }
    va_end(ap);
    Route(&record);
}

uint32_t LoggerToHDD(const LogRecord* record) {
    if (record == nullptr || !IsMounted(kLogDiskDir)) return 1;
    time_t t = static_cast<time_t>(record->tTime);
    struct tm local;
    if (localtime_r(&t, &local) == nullptr) return 1;
    char path[48];
    std::snprintf(path, sizeof path, "%s/%04d%02d%02d.log", kLogDiskDir, local.tm_year + 1900,
                  local.tm_mon + 1, local.tm_mday);
    return AppendRecord(path, record, false, kLineHddOpen);
}

uint32_t LoggerToDOC(const LogRecord* record) {
    if (record == nullptr) return 1;
    const char* path = (LogRuleOf(record->nType).yStore & kLogStoreKey) != 0 ? kLogKeyFile : kLogDocFile;
    if (!IsMounted(kLogDocDir)) return 1;
    return AppendRecord(path, record, true, kLineDocOpen);
}

uint32_t DeleteLOGFile(int year, int month, int day) {
    struct dirent** list = nullptr;
    int count = LogScanDaily(kLogDiskDir, &list);
    if (count < 0) return 1;
    char limit[48];
    std::snprintf(limit, sizeof limit, "%04d%02d%02d.log", year, month, day);
    bool bPast = false;
    for (int i = 0; i < count; ++i) {
        if (!bPast && std::strcmp(list[i]->d_name, limit) > 0) bPast = true;
        if (!bPast) {
            char path[300];
            std::snprintf(path, sizeof path, "%s/%s", kLogDiskDir, list[i]->d_name);
            if (unlink(path) == 0) InfoLine(kSource, "LOG filename to delete : %s", path);
        }
        std::free(list[i]);
    }
    std::free(list);
    return 0;
}

uint32_t ClearLogFile() {
    if (!IsMounted(kLogDocDir)) return 1;
    char command[64];
    for (const char* path : {kLogDocFile, kLogKeyFile}) {
        std::snprintf(command, sizeof command, "rm %s*", path);
        (void)std::system(command);
    }
    return 0;
}

void LogSystemInit(int vendor) { nLocalVendor = vendor; }

void LogReadAck(LogSearchList* result) {
    if (result == nullptr) return;
    std::free(result->ptItem);
    result->ptItem = nullptr;
    result->nCount = 0;
    result->nRoom = 0;
}
