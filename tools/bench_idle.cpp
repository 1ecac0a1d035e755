// Idle cost of ptz_cntl: CPU time per second, passes of its loop per second and resident memory,
// measured beside a bare 10 ms polling loop as the baseline. Runs in the sandbox; not a test.
//
//   tools/sandbox.sh build/bench_idle [SECONDS]      (default 10)
//
// A pass of the loop ends in exactly one wait (a 10 ms poll or sleep), so the process's voluntary
// context switches count its passes.
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "core/ptz_cntl.h"
#include "tools/sim/proc_stats.h"
#include "tools/sim/recorder.h"
#include "tools/sim/sandbox_guard.h"
#include "tools/sim/serial_line.h"

namespace {
struct Window {
    double cpuPct;
    double passesPerSec;
};

// Samples two processes side by side over `windows` windows of one second each.
void Sample(pid_t p1, pid_t p2, int windows, std::vector<Window>* w1, std::vector<Window>* w2) {
    ProcStats a[2], b[2];
    const pid_t pid[2] = {p1, p2};
    std::vector<Window>* out[2] = {w1, w2};
    for (int k = 0; k < 2; ++k) ReadProcStats(pid[k], &a[k]);
    double t = MonotonicSeconds();
    for (int i = 0; i < windows; ++i) {
        usleep(1000000);
        const double now = MonotonicSeconds();
        for (int k = 0; k < 2; ++k) {
            ReadProcStats(pid[k], &b[k]);
            out[k]->push_back({100.0 * (b[k].cpuSeconds - a[k].cpuSeconds) / (now - t),
                               static_cast<double>(b[k].voluntarySwitches - a[k].voluntarySwitches) / (now - t)});
            a[k] = b[k];
        }
        t = now;
    }
}

void Report(const char* name, const std::vector<Window>& w, uint64_t rssKiB) {
    std::vector<double> cpu, passes;
    for (const auto& x : w) {
        cpu.push_back(x.cpuPct);
        passes.push_back(x.passesPerSec);
    }
    std::printf("%-22s cpu %6.3f %% of a core (median of %zu s)   passes %6.1f /s   rss %6.2f MiB\n", name,
                Median(cpu), w.size(), Median(passes), static_cast<double>(rssKiB) / 1024.0);
}
}  // namespace

int main(int argc, char** argv) {
    RequireSandbox(argv[0]);
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 10;

    SerialLine s0("/dev/ttyS0"), s1("/dev/ttyS1"), s4("/dev/ttyS4");
    Recorder rec;
    if (!rec.Ok() || !rec.Start(DefaultPtzCntlBinary()) || !rec.WaitFor(kMsgStarted, 5000)) {
        std::fprintf(stderr, "bench_idle: ptz_cntl did not start\n");
        return 1;
    }
    // The baseline: nothing but a 10 ms poll, in a process of its own.
    const pid_t base = fork();
    if (base == 0) {
        for (;;) poll(nullptr, 0, 10);
    }
    usleep(1000000);   // settle
    ProcStats ps, bs;
    std::vector<Window> wp, wb;
    Sample(rec.Pid(), base, seconds, &wp, &wb);
    ReadProcStats(rec.Pid(), &ps);
    ReadProcStats(base, &bs);
    kill(base, SIGKILL);
    waitpid(base, nullptr, 0);

    std::printf("idle for %d s, side by side (keypad model %u, no cameras, no input)\n", seconds, rec.Share().nKeypadModel);
    Report("ptz_cntl", wp, ps.rssKiB);
    Report("bare 10 ms poll loop", wb, bs.rssKiB);
    std::vector<double> cp, cb;
    for (const auto& x : wp) cp.push_back(x.cpuPct);
    for (const auto& x : wb) cb.push_back(x.cpuPct);
    if (Median(cb) > 0) std::printf("ratio ptz_cntl / baseline cpu: %.2f\n", Median(cp) / Median(cb));
    rec.Send(1);
    rec.WaitExit(3000);
    return 0;
}
