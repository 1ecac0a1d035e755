// Resource readings of a running process from /proc, for the benchmarks.
#pragma once
#include <sys/types.h>

#include <cstdint>
#include <vector>

struct ProcStats {
    double cpuSeconds = 0;          // time on a processor (scheduler account, ns precision)
    uint64_t voluntarySwitches = 0; // one per wait of a polling loop
    uint64_t rssKiB = 0;
};

bool ReadProcStats(pid_t pid, ProcStats* out);
double Median(std::vector<double> v);
double Percentile(std::vector<double> v, double p);   // p in 0..100, nearest rank
