#include "tools/sim/log_view.h"

#include <cstdio>
#include <ctime>

#include "lib/log/log_reader.h"

void PrintLogHeader() { std::printf("%-20s %6s  %-19s  %4s  %s\n", "FILE", "INDEX", "TIME", "TYPE", "PARAMETERS"); }

void PrintLogItem(const LogSearchItem& item) {
    const LogRecord& r = item.tData;
    time_t t = static_cast<time_t>(r.tTime);
    struct tm local;
    char when[32] = "?";
    if (localtime_r(&t, &local) != nullptr) std::strftime(when, sizeof when, "%Y-%m-%d %H:%M:%S", &local);
    char params[64];
    LogDescribeParams(r, params, sizeof params);
    std::printf("%-20s %6u  %s  %4u  %s\n", item.sFile, item.nIndex, when, r.nType, params);
}

uint32_t PrintRecorderLogs() {
    LogSearchList list = {nullptr, 0, 0};
    LogReadDaily(kLogDiskDir, true, &list);
    LogReadSeries(kLogDocFile, true, &list);
    LogReadSeries(kLogKeyFile, true, &list);
    PrintLogHeader();
    for (uint32_t k = 0; k < list.nCount; ++k) PrintLogItem(list.ptItem[k]);
    const uint32_t n = list.nCount;
    LogReadAck(&list);
    std::fflush(stdout);
    return n;
}
