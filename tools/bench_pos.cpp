// Sustained text-insertion throughput: records per second that ptz_cntl stores in the daily file
// while a client offers text as fast as the process takes it. Runs in the sandbox; not a test.
//
//   tools/sandbox.sh build/bench_pos [RECORDS] [RUNS]      (default 500 records, 3 runs)
//
// The ceiling is the design's, not the machine's: a pass of the process's loop reads the text
// input once (at most 256 bytes), one read makes at most one record, and every pass ends in a
// wait of about 10 ms. So there is at most one record per pass, a little under 100 per second,
// and feeding faster cannot raise it:
// - FIFO (network models): lines written before the process has read the previous one come in the
//   same read, and all but the first line of a read are lost. The client therefore offers the
//   next line only once the previous one is stored (seen through inotify on /mnt/pos). The flood
//   row shows what writing without that pacing gives.
// - Serial line (canonical input): each read returns one line, so lines may queue on the line;
//   the client keeps a few lines ahead of the stored records.
// Each run clears the daily files, feeds RECORDS numbered lines, reads the files back and checks
// that every line became exactly one record, in order. The rate counts the records between the
// first and the last one stored; the loop's passes per second (one voluntary wait each) are
// measured over the same span.
#include <poll.h>
#include <signal.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "core/ptz_cntl.h"
#include "tools/sim/pos_sim.h"
#include "tools/sim/proc_stats.h"
#include "tools/sim/recorder.h"
#include "tools/sim/sandbox_guard.h"
#include "tools/sim/serial_line.h"

namespace {
constexpr int kStallMs = 2000;     // no new record for this long ends a run as stalled
constexpr int kFloodQuietMs = 500; // a flood is over when no record came for this long

// Wakes when a daily file was written and closed, which the process does once per record.
class RecordWatch {
public:
    RecordWatch() : m_fd(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        if (m_fd >= 0) inotify_add_watch(m_fd, "/mnt/pos", IN_CLOSE_WRITE);
    }
    ~RecordWatch() {
        if (m_fd >= 0) close(m_fd);
    }
    RecordWatch(const RecordWatch&) = delete;
    RecordWatch& operator=(const RecordWatch&) = delete;
    bool Ok() const { return m_fd >= 0; }
    // False when nothing was written within timeout_ms.
    bool Wait(int timeout_ms) {
        struct pollfd p = {m_fd, POLLIN, 0};
        if (poll(&p, 1, timeout_ms) <= 0) return false;
        char buf[4096];
        while (read(m_fd, buf, sizeof buf) > 0) {
        }
        return true;
    }

private:
    int m_fd;
};

std::string Token(size_t i) {
    char s[32];
    std::snprintf(s, sizeof s, "N%07zu", i);
    return s;
}

struct Setup {
    const char* sName;
    uint32_t nModel;
    uint32_t nPortAssign;
    const char* sTag;                  // record tag, for the read-back check
    size_t nAhead;                     // lines offered beyond the stored records
    std::string (*Line)(size_t i);     // the i-th line, carrying Token(i)
};

const Setup kSetups[] = {
    {"general TCP 6001, FIFO, 1 line in flight", 9, 0, "MGT|", 1,
     [](size_t i) { return std::to_string(i % 100) + "|BENCH|" + Token(i) + "|1|" + std::to_string(i) + ".00\n"; }},
    {"AVE VSI-Pro, /dev/ttyS0, 8 lines ahead", 1, kPortAssignPosOnS0, "AVEVSI|", 8,
     [](size_t i) { return Token(i) + " 1.00\r\n"; }},
};

struct RunResult {
    double dRate = 0;          // records per second between the first and the last record
    double dPassRate = 0;      // loop passes per second over the same span
    size_t nStored = 0;
    std::string sProblem;      // empty when every line became its record, in order
};

// Reads the files back: exactly one record per line, in order, of the expected model.
std::string Verify(const Setup& s, size_t count) {
    const std::vector<std::string> records = WaitPosRecords(count, 0);
    if (records.size() != count)
        return std::to_string(records.size()) + " records for " + std::to_string(count) + " lines";
    for (size_t i = 0; i < count; ++i)
        if (records[i].rfind(s.sTag, 0) != 0 || records[i].find(Token(i)) == std::string::npos)
            return "record " + std::to_string(i) + " is " + records[i];
    return "";
}

RunResult OneRun(const Setup& s, size_t count, Recorder& rec, const std::function<bool(const std::string&)>& send) {
    RunResult r;
    PosClearRecords();
    RecordWatch watch;
    if (!watch.Ok()) {
        r.sProblem = "no inotify";
        return r;
    }
    size_t nWritten = 0, nFirst = 0;
    double tFirst = 0, tLast = 0;
    ProcStats psFirst, psLast;
    while (r.nStored < count) {
        for (; nWritten < count && nWritten < r.nStored + s.nAhead; ++nWritten) {
            if (!send(s.Line(nWritten))) {
                r.sProblem = "cannot write line " + std::to_string(nWritten);
                return r;
            }
        }
        if (!watch.Wait(kStallMs)) break;
        const size_t n = PosRecordCount();
        if (n == r.nStored) continue;
        tLast = MonotonicSeconds();
        ReadProcStats(rec.Pid(), &psLast);
        if (r.nStored == 0) {
            tFirst = tLast;
            psFirst = psLast;
            nFirst = n;
        }
        r.nStored = n;
        rec.Output(0);   // keep the process's standard error drained
    }
    if (tLast > tFirst) {
        r.dRate = static_cast<double>(r.nStored - nFirst) / (tLast - tFirst);
        r.dPassRate = static_cast<double>(psLast.voluntarySwitches - psFirst.voluntarySwitches) / (tLast - tFirst);
    }
    r.sProblem = Verify(s, count);
    return r;
}

bool StartProcess(Recorder& rec, const Setup& s) {
    rec.Share().nPosModel = s.nModel;
    rec.Share().nPortAssign = s.nPortAssign;
    rec.Share().bPosStore = 1;
    return rec.Start(DefaultPtzCntlBinary()) && rec.WaitFor(kMsgStarted, 5000).has_value();
}

std::string LoadAverage() {
    char buf[64] = "?";
    if (FILE* f = std::fopen("/proc/loadavg", "r")) {
        if (!std::fgets(buf, sizeof buf, f)) buf[0] = '\0';
        std::fclose(f);
    }
    std::string s(buf);
    return s.substr(0, s.find(' ', s.find(' ', s.find(' ') + 1) + 1));
}

// Every line written at once into the FIFO, as a client that does not wait would do.
void Flood(const Setup& s, size_t count, PosFifoWriter& fifo) {
    PosClearRecords();
    RecordWatch watch;
    const double t0 = MonotonicSeconds();
    for (size_t i = 0; i < count; ++i) {
        while (!fifo.Write(s.Line(i))) usleep(1000);   // pipe full: the process drains it
    }
    const double tWritten = MonotonicSeconds();
    double tLast = tWritten;
    while (watch.Wait(kFloodQuietMs)) tLast = MonotonicSeconds();
    const size_t n = PosRecordCount();
    std::printf("  FIFO flooded: %zu lines written in %.1f ms -> %zu records in %.2f s "
                "(%.1f records/s; the lines of one read make one record)\n",
                count, (tWritten - t0) * 1000.0, n, tLast - t0, static_cast<double>(n) / (tLast - t0));
}
}  // namespace

int main(int argc, char** argv) {
    RequireSandbox(argv[0]);
    signal(SIGPIPE, SIG_IGN);   // a process that ends early shows as a failed write, not as our death
    const size_t count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 500;
    const int runs = argc > 2 ? std::atoi(argv[2]) : 3;
    if (count < 2 || runs < 1) {
        std::fprintf(stderr, "usage: %s [RECORDS>=2] [RUNS>=1]\n", argv[0]);
        return 2;
    }
    std::printf("text insertion into the daily file: %zu records per run, %d runs, load average %s at start\n", count,
                runs, LoadAverage().c_str());
    bool bAllGood = true;
    for (const Setup& s : kSetups) {
        SerialLine s0("/dev/ttyS0"), s1("/dev/ttyS1"), s4("/dev/ttyS4");
        Recorder rec;
        PosFifoWriter fifo;
        if (!rec.Ok() || !StartProcess(rec, s) || (s.nPortAssign == 0 && !fifo.Open(2000))) {
            std::fprintf(stderr, "bench_pos: ptz_cntl did not start with model %u\n", s.nModel);
            return 1;
        }
        const auto send = [&](const std::string& line) {
            return s.nPortAssign == 0 ? fifo.Write(line) : s0.Write(std::vector<uint8_t>(line.begin(), line.end()));
        };
        std::vector<double> rates, passes;
        std::string sRates, sProblems;
        for (int i = 0; i < runs; ++i) {
            const RunResult r = OneRun(s, count, rec, send);
            rates.push_back(r.dRate);
            passes.push_back(r.dPassRate);
            char buf[16];
            std::snprintf(buf, sizeof buf, " %.1f", r.dRate);
            sRates += buf;
            if (!r.sProblem.empty()) sProblems += "\n    run " + std::to_string(i + 1) + ": " + r.sProblem;
        }
        std::printf("  %-42s median %6.1f records/s (runs%s), loop %6.1f passes/s, %.2f records per pass%s\n",
                    s.sName, Median(rates), sRates.c_str(), Median(passes),
                    Median(passes) > 0 ? Median(rates) / Median(passes) : 0.0,
                    sProblems.empty() ? ", every record verified" : sProblems.c_str());
        bAllGood = bAllGood && sProblems.empty();
        if (s.nPortAssign == 0) Flood(s, count, fifo);
        rec.Send(1);
        rec.WaitExit(3000);
    }
    return bAllGood ? 0 : 1;
}
