// Latency of a PTZ command: from the mailbox message leaving the main application to the first
// byte of its frame on the camera line, with the channel free. Runs in the sandbox; not a test.
//
//   tools/sandbox.sh build/bench_ptz [COMMANDS]      (default 500)
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "core/ptz_cntl.h"
#include "tools/sim/proc_stats.h"
#include "tools/sim/recorder.h"
#include "tools/sim/sandbox_guard.h"
#include "tools/sim/serial_line.h"

int main(int argc, char** argv) {
    RequireSandbox(argv[0]);
    const int count = argc > 1 ? std::atoi(argv[1]) : 500;

    SerialLine s0("/dev/ttyS0"), s1("/dev/ttyS1"), s4("/dev/ttyS4");
    Recorder rec;
    rec.Share().atPtz[0].nPtzModel = 14;   // Pelco-D 9600
    rec.Share().atPtz[0].nPtzAddress = 1;
    if (!rec.Ok() || !rec.Start(DefaultPtzCntlBinary()) || !rec.WaitFor(kMsgStarted, 5000)) {
        std::fprintf(stderr, "bench_ptz: ptz_cntl did not start\n");
        return 1;
    }
    std::vector<double> ms;
    int lost = 0;
    for (int i = 0; i < count; ++i) {
        // Go-to-preset is never suppressed as a repeat; spread the sends over the loop's phase.
        usleep(25000 + static_cast<useconds_t>(i * 7919 % 10000));
        const double t0 = MonotonicSeconds();
        rec.Send(kMsgPtzCommand, 0, 80, 1 + i % 200);
        bool seen = false;
        while (!seen && MonotonicSeconds() - t0 < 1.0) {
            for (const auto& c : s1.Read(50)) {
                if (!seen) ms.push_back((c.tSeconds - t0) * 1000.0);
                seen = true;
            }
        }
        if (!seen) ++lost;
        rec.Output(0);
    }
    std::printf("%d PTZ commands (Pelco-D, channel free): median %.2f ms, p99 %.2f ms, max %.2f ms, lost %d\n",
                count, Median(ms), Percentile(ms, 99), Percentile(ms, 100), lost);
    rec.Send(1);
    rec.WaitExit(3000);
    return lost == 0 ? 0 : 1;
}
