// Reading the recorder's log files into a LogSearchList (released with LogReadAck).
// Every record is checked: a file whose length is not a multiple of 32 is reported and its whole
// records are still used; a record without the magic code is reported and left out.
// bLock takes the log semaphore around each file: use it for the recorder's live files, which
// other processes append to; an offline copy needs no lock.
#pragma once
#include <cstddef>
#include <cstdint>

#include "lib/log/log.h"

// Appends the valid records of one file. 0 read, 1 cannot be opened or memory ran out.
uint32_t LogReadFile(const char* path, bool bLock, LogSearchList* result);
// Appends a rotating series oldest first: base.9 .. base.1, then base. Missing members are
// skipped (an empty series is no error); 1 when a member that exists cannot be read.
uint32_t LogReadSeries(const char* base, bool bLock, LogSearchList* result);
// Appends every daily log file of dir in date order. 1 when dir cannot be listed.
uint32_t LogReadDaily(const char* dir, bool bLock, LogSearchList* result);

// The parameter area of a record as its type's rule fills it: the text in double quotes for a
// text type, else the parameters the type sets as decimal numbers separated by blanks (nothing
// for a type without parameters). Cut to size bytes, the NUL included.
void LogDescribeParams(const LogRecord& record, char* out, size_t size);
