// The recorder's event log: fixed 32-byte records in daily disk files and rotating flash files.
#pragma once
#include <cstddef>
#include <cstdint>

#include "core/share_block.h"

constexpr uint32_t kLogMagic = 0x44474F4C;   // "LOGD" in file order

// On-disk record, little-endian.
struct LogRecord {
    uint32_t nMagic;
    uint32_t tTime;       // seconds since the epoch (UTC)
    uint32_t nType;
    uint32_t nParam[5];   // or, for text types, a NUL-padded string of up to 19 characters
};
static_assert(sizeof(LogRecord) == 32);
static_assert(offsetof(LogRecord, tTime) == 4);
static_assert(offsetof(LogRecord, nType) == 8);
static_assert(offsetof(LogRecord, nParam) == 12);

// Records this start in the history: shifts both arrays, stores uptime and time at entry 0,
// counts the start. Returns the time stored.
uint32_t LeaveUpLog(ShareUpHistory* block);

void LogWrite(uint32_t type, ...);
uint32_t LoggerToHDD(const LogRecord* record);
uint32_t LoggerToDOC(const LogRecord* record);
uint32_t DeleteLOGFile(int year, int month, int day);
uint32_t ClearLogFile();
void LogSystemInit(int vendor);
