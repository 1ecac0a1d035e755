// Event-log records as table rows in local time, for logdump and dvrsim.
#pragma once
#include "lib/log/log.h"

// The column titles, then one row per record: file, index, local time, type, and the text or the
// parameters its type sets.
void PrintLogHeader();
void PrintLogItem(const LogSearchItem& item);
// Every record of the recorder's logs: the daily disk logs, then the flash series (oldest first).
// Reads under the log semaphore, as the recorder's writers use it. Returns the number printed.
uint32_t PrintRecorderLogs();
