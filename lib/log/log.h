// The recorder's event log: fixed 32-byte records in daily disk files and rotating flash files.
#pragma once
#include <cstddef>
#include <cstdint>

constexpr uint32_t kLogMagic = 0x44474F4C;   // "LOGD" in file order
constexpr int kLogRecordSize = 32;
constexpr int kLogTextMax = 19;              // characters of a text record (bytes 12..30)

// On-disk record, little-endian.
struct LogRecord {
    uint32_t nMagic;
    uint32_t tTime;       // seconds since the epoch (UTC)
    uint32_t nType;
    uint32_t nParam[5];   // or, for text types, a NUL-padded string of up to 19 characters
};
static_assert(sizeof(LogRecord) == kLogRecordSize);
static_assert(offsetof(LogRecord, tTime) == 4);
static_assert(offsetof(LogRecord, nType) == 8);
static_assert(offsetof(LogRecord, nParam) == 12);

// One record found by a reader, with the file it came from (in memory only).
struct LogSearchItem {
    char sFile[100];      // base name of the file that holds the record
    uint32_t nIndex;      // position of the record in that file (byte offset / 32)
    LogRecord tData;
};
static_assert(sizeof(LogSearchItem) == 136);
static_assert(offsetof(LogSearchItem, nIndex) == 100);
static_assert(offsetof(LogSearchItem, tData) == 104);

// A reader's result: a growing array of items, released with LogReadAck.
struct LogSearchList {
    LogSearchItem* ptItem;
    uint32_t nCount;
    uint32_t nRoom;
};

// What a type's record holds, as LogWrite fills it from its arguments a1, a2, ... (all 32-bit).
enum class LogFields : uint8_t {
    None,            // no parameters
    Numbers,         // nParam[0 .. nNumbers-1] = a1 ..
    Text,            // the text of the string a1
    EventTime,       // tTime = a1 (the caller's time of the event), no parameters
    EventTimeText,   // tTime = a1, the text of the string a2
    SkipText,        // a1 accepted and discarded, the text of the string a2
    BitMasks,        // one record per set bit i of a1, lowest first: nParam[0] = 1 << i
    BitNumbers,      // one record per set bit i of a1, lowest first: nParam[0] = i + 1
    Channel,         // nParam[0] = a1 + 1, except that a1 = 255 gives 0
};
// Where a type's records are stored.
enum LogStore : uint8_t {
    kLogStoreDoc = 1,    // the rotating flash log mdvr.log
    kLogStoreKey = 2,    // the rotating flash log key.log
    kLogStoreDisk = 4,   // the daily disk log
};
struct LogTypeRule {
    LogFields eFields;
    uint8_t nNumbers;   // LogFields::Numbers: how many arguments are kept
    uint8_t yStore;     // LogStore bits; the flash log is written before the disk log
};
// The rule of a type code; every code has one (codes without a rule of their own carry no
// parameters and go to mdvr.log and the disk).
LogTypeRule LogRuleOf(uint32_t type);

// Record files of the recorder.
constexpr char kLogDiskDir[] = "/mnt/pos";            // daily "%04d%02d%02d.log"
constexpr char kLogDocDir[] = "/mnt/doc";
constexpr char kLogDocFile[] = "/mnt/doc/mdvr.log";   // rotating
constexpr char kLogKeyFile[] = "/mnt/doc/key.log";    // rotating, the key types (kLogStoreKey)
constexpr long kLogRotateSize = 6400;                 // a flash file this long is rotated first
constexpr int kLogRotateCopies = 9;                   // numbered copies ".1" .. ".9"
constexpr int kLogSemaphore = 1;                      // of set 47, guards every log file access

// Holds semaphore 1 of set 47 for one file access and gives it back on every way out. If the
// set is missing the access goes ahead unguarded (no other writer can hold it then either).
class LogSemaphoreGuard {
public:
    LogSemaphoreGuard();
    ~LogSemaphoreGuard();
    LogSemaphoreGuard(const LogSemaphoreGuard&) = delete;
    LogSemaphoreGuard& operator=(const LogSemaphoreGuard&) = delete;

private:
    bool bTaken;
};

// Lists the daily log files of dir (names that begin with a digit and contain "log"), sorted by
// name and so by date. Returns the count and a scandir list the caller frees, or -1.
struct dirent;
int LogScanDaily(const char* dir, struct dirent*** list);

// Wire form of a record: 32 little-endian bytes. Text types keep their characters in file order,
// so the parameter words hold them packed little-endian.
void LogRecordToBytes(const LogRecord* record, uint8_t bytes[kLogRecordSize]);
void LogRecordFromBytes(const uint8_t bytes[kLogRecordSize], LogRecord* record);
// Stores the first 19 characters of text (null = empty) NUL-padded into the parameter area.
void LogRecordSetText(LogRecord* record, const char* text);
// Copies the text of the parameter area into out, NUL-terminated.
void LogRecordText(const LogRecord* record, char out[kLogTextMax + 1]);

// History of a process's starts, newest first (84 bytes). The recorder keeps it in its shared
// system block; this library only updates it in place.
constexpr int kUpHistoryDepth = 10;
struct LogUpHistory {
    uint32_t nStarts;
    uint32_t adwUptime[kUpHistoryDepth];   // uptime in seconds at each start
    uint32_t adwTime[kUpHistoryDepth];     // wall-clock time at each start
};
static_assert(sizeof(LogUpHistory) == 84);
static_assert(offsetof(LogUpHistory, adwUptime) == 4);
static_assert(offsetof(LogUpHistory, adwTime) == 44);

// Records this start in the history: shifts both arrays, stores uptime and time at entry 0,
// counts the start. Returns the time stored.
uint32_t LeaveUpLog(LogUpHistory* block);

// Builds the record(s) of one event and routes each to the flash log, the disk log or both.
// Arguments are 32-bit values or string pointers, as the type requires.
void LogWrite(uint32_t type, ...);
uint32_t LoggerToHDD(const LogRecord* record);   // 0 appended, 1 failed or not mounted
uint32_t LoggerToDOC(const LogRecord* record);   // 0 appended, 1 failed or not mounted
// Deletes the daily disk logs dated on or before the given day; 1 if /mnt/pos cannot be listed.
uint32_t DeleteLOGFile(int year, int month, int day);
// Deletes both flash series with their numbered copies; 1 if the flash area is not mounted.
uint32_t ClearLogFile();
void LogSystemInit(int vendor);
// Releases the memory of a reader's result and empties it.
void LogReadAck(LogSearchList* result);
