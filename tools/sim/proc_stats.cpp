#include "tools/sim/proc_stats.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

bool ReadProcStats(pid_t pid, ProcStats* out) {
    char path[64];
    std::snprintf(path, sizeof path, "/proc/%d/stat", static_cast<int>(pid));
    FILE* f = std::fopen(path, "r");
    if (!f) return false;
    char buf[1024];
    const size_t n = std::fread(buf, 1, sizeof buf - 1, f);
    std::fclose(f);
    buf[n] = '\0';
    // Fields after the command name (which may hold blanks) start behind the last ')'.
    const char* p = std::strrchr(buf, ')');
    if (!p) return false;
    unsigned long utime = 0, stime = 0;
    if (std::sscanf(p + 2, "%*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %lu %lu", &utime, &stime) != 2)
        return false;
    out->cpuSeconds = static_cast<double>(utime + stime) / static_cast<double>(sysconf(_SC_CLK_TCK));
    // The scheduler's own account is in nanoseconds; the tick-based one above is only a fallback.
    std::snprintf(path, sizeof path, "/proc/%d/schedstat", static_cast<int>(pid));
    if (FILE* fs = std::fopen(path, "r")) {
        unsigned long long ns;
        if (std::fscanf(fs, "%llu", &ns) == 1) out->cpuSeconds = static_cast<double>(ns) / 1e9;
        std::fclose(fs);
    }

    std::snprintf(path, sizeof path, "/proc/%d/status", static_cast<int>(pid));
    f = std::fopen(path, "r");
    if (!f) return false;
    char line[256];
    while (std::fgets(line, sizeof line, f)) {
        unsigned long long v;
        if (std::sscanf(line, "VmRSS: %llu", &v) == 1) out->rssKiB = v;
        if (std::sscanf(line, "voluntary_ctxt_switches: %llu", &v) == 1) out->voluntarySwitches = v;
    }
    std::fclose(f);
    return true;
}

double Median(std::vector<double> v) { return Percentile(std::move(v), 50); }

double Percentile(std::vector<double> v, double p) {
    if (v.empty()) return 0;
    std::sort(v.begin(), v.end());
    size_t rank = static_cast<size_t>(std::ceil(p / 100.0 * static_cast<double>(v.size())));
    if (rank < 1) rank = 1;
    return v[std::min(rank, v.size()) - 1];
}
