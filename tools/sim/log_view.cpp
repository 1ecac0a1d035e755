#include "tools/sim/log_view.h"

#include <cstdio>
#include <ctime>

#include "lib/log/log_reader.h"

void PrintLogItem(const LogSearchItem& item) {
    const LogRecord& r = item.tData;
    time_t t = static_cast<time_t>(r.tTime);
    struct tm local;
    char when[32] = "?";
    if (localtime_r(&t, &local) != nullptr) std::strftime(when, sizeof when, "%Y-%m-%d %H:%M:%S", &local);
    std::printf("%-20s %6u  %s  %4u  ", item.sFile, item.nIndex, when, r.nType);
    if (LogTypeHasText(r.nType)) {
        char text[kLogTextMax + 1];
        LogRecordText(&r, text);
        std::printf("\"%s\"\n", text);
    } else {
        std::printf("%u %u %u %u %u\n", r.nParam[0], r.nParam[1], r.nParam[2], r.nParam[3], r.nParam[4]);
    }
}

uint32_t PrintRecorderLogs() {
    LogSearchList list = {nullptr, 0, 0};
    LogReadDaily(kLogDiskDir, true, &list);
    LogReadSeries(kLogDocFile, true, &list);
    LogReadSeries(kLogKeyFile, true, &list);
    std::printf("%-20s %6s  %-19s  %4s  %s\n", "FILE", "INDEX", "TIME", "TYPE", "PARAMETERS");
    for (uint32_t k = 0; k < list.nCount; ++k) PrintLogItem(list.ptItem[k]);
    const uint32_t n = list.nCount;
    LogReadAck(&list);
    std::fflush(stdout);
    return n;
}
