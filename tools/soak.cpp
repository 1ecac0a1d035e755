// Soak test of the real ptz_cntl: the simulated recorder runs it in the KTT variant under random
// traffic and watches it. Runs in the sandbox.
//
//   tools/sandbox.sh build/soak [SECONDS] [BINARY]      (default 600 s, ptz_cntl beside the tools)
//
// Three phases:
//   1. traffic (all but the last ~35 s), about 40 messages a second: PTZ messages with random codes and parameters on every
//      channel and every model index, configuration writes (models, addresses, channel count,
//      key flags, keypad and text-insertion model changes), keypad-line noise with valid frames
//      mixed in, KTT-line noise, text lines into the FIFO, KTT messages (which write the event
//      log), and a liveness query every 200 ms;
//   2. lost stops: every model with a builder, sixteen channels at a time, gets a move followed
//      by its stop; each stop's frame, as the driver builds it, must reach the wire (within 10 s);
//   3. busy line: all 16 channels on Pelco-D at 2400 baud, one command per channel per second,
//      and the wire drained at the line's real rate (a pseudo-terminal passes bytes at once):
//      the delay from each stop message to its frame leaving the wire is measured.
// Every second it samples the process's resident size, open descriptors and CPU time. It fails
// on a crash, a liveness query unanswered for 1 s (unless the machine's load held the process or
// the observer back, see Liveness), RSS or descriptors growing past their level
// after warm-up, a lost stop, or an unclean exit. Exit status 0 when everything held.
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "core/ptz_cntl.h"
#include "keypad/keypad_model.h"
#include "pos/pos_model.h"
#include "ptz/ptz_data.h"
#include "ptz/ptz_model.h"
#include "tools/sim/proc_stats.h"
#include "tools/sim/recorder.h"
#include "tools/sim/sandbox_guard.h"
#include "tools/sim/serial_line.h"

namespace {
constexpr uint32_t kPelcoD2400 = 12;
constexpr double kLineBytesPerSecond2400 = 2400 / 10.0;   // 8N1: ten bits a byte
constexpr uint64_t kRssSlackKiB = 256;

struct Sample {
    double t;
    uint64_t rssKiB;
    int fds;
    double cpuPct;
};

int CountFds(pid_t pid) {
    const std::string dir = "/proc/" + std::to_string(pid) + "/fd";
    DIR* d = opendir(dir.c_str());
    if (d == nullptr) return -1;
    int n = 0;
    while (dirent* e = readdir(d)) n += e->d_name[0] != '.';
    closedir(d);
    return n;
}

// Time the process has spent runnable but waiting for a processor, from the scheduler's account.
double RunDelaySeconds(pid_t pid) {
    const std::string path = "/proc/" + std::to_string(pid) + "/schedstat";
    FILE* f = std::fopen(path.c_str(), "r");
    if (f == nullptr) return 0;
    unsigned long long run = 0, wait = 0;
    const int n = std::fscanf(f, "%llu %llu", &run, &wait);
    std::fclose(f);
    return n == 2 ? static_cast<double>(wait) / 1e9 : 0;
}

class Soak {
public:
    Soak(double seconds, std::string binary) : m_dSeconds(seconds), m_sBinary(std::move(binary)), m_rng(12345) {}
    int Run();

private:
    // --- the process
    bool Start();
    bool Alive();
    void Fail(const std::string& why) {
        if (m_asFailures.size() < 20) m_asFailures.push_back(why);
    }
    // --- every tick: mail, liveness, samples, line drains
    void Tick(bool bPaceLine);
    void DrainMail();
    void Liveness();
    void SampleProcess();
    void DrainLine(bool bPaced);
    // --- the phases
    void Traffic(double tEnd);
    void LostStops();
    void BusyLine(double tEnd);
    // --- traffic pieces
    void RandomPtz();
    void RandomConfig();
    void KeypadNoise();
    void KttNoise();
    void FifoText();
    uint32_t R(uint32_t n) { return std::uniform_int_distribution<uint32_t>(0, n - 1)(m_rng); }
    bool Send(uint32_t code, uint32_t p1 = 0, uint32_t p2 = 0, uint32_t p3 = 0, uint32_t p4 = 0, uint32_t p5 = 0);
    // The frames a fresh channel of this model sends for the commands, the last command's only.
    std::vector<std::vector<uint8_t>> Expected(uint32_t model, uint32_t address, std::vector<std::array<uint32_t, 2>> cmds);
    void Report();

    double m_dSeconds;
    std::string m_sBinary;
    std::mt19937 m_rng;
    std::unique_ptr<SerialLine> m_ttyS0, m_ttyS1, m_ttyS4;
    std::unique_ptr<Recorder> m_rec;
    pid_t m_nPid = -1;
    int m_nExit = -1;
    double m_t0 = 0;
    std::vector<std::string> m_asFailures;

    // liveness
    double m_tAliveSent = -1;   // -1: no query outstanding
    double m_tNextAlive = 0;
    std::vector<double> m_adAliveLatency;
    double m_dAliveWorst = 0, m_tAliveWorstAt = 0;
    double m_tLastLiveness = 0;       // this observer's last turn
    bool m_bObserverLate = false;     // it missed half a second since the query went out
    double m_dRunDelayAtQuery = 0;
    uint64_t m_nStarvedQueries = 0;
    // samples
    double m_tNextSample = 0;
    ProcStats m_tLastStats{};
    double m_tLastStatsAt = 0;
    std::vector<Sample> m_atSamples;
    // the PTZ line as read from the wire: bytes with the time each left the line
    std::deque<std::pair<uint8_t, double>> m_aWire;
    bool m_bKeepWire = false;
    double m_dLineCredit = 0;
    double m_tLineAt = 0;
    uint64_t m_nWireBytes = 0;
    // counters
    uint64_t m_nSent = 0, m_nSendFailed = 0, m_nMail = 0, m_nFifoLines = 0, m_nKeypadBytes = 0, m_nKttBytes = 0;
    // results of the phases
    std::vector<double> m_adStopDelay;
    int m_nLostStops = 0;
    int m_nStopModels = 0;   // models whose stop was checked
    uint64_t m_nBusyCommands = 0;
    double m_dBusySeconds = 0;
};

bool Soak::Send(uint32_t code, uint32_t p1, uint32_t p2, uint32_t p3, uint32_t p4, uint32_t p5) {
    const bool ok = m_rec->Send(code, p1, p2, p3, p4, p5);
    (ok ? m_nSent : m_nSendFailed)++;
    return ok;
}

bool Soak::Start() {
    ShareBlock& s = m_rec->Share();
    s.nVariant = kVariantKtt;   // KTT link, event log and text input all active
    s.nKttEventEnable = 1;
    s.nKeypadModel = 1;
    s.nPosModel = 9;            // a text model that reads the FIFO
    for (uint32_t ch = 0; ch < kMaxChannels; ++ch) {
        s.atPtz[ch].nPtzModel = 12 + ch % 11;
        s.atPtz[ch].nPtzAddress = ch + 1;
    }
    m_nPid = fork();
    if (m_nPid < 0) return false;
    if (m_nPid == 0) {
        // Its reports go to a file of the sandbox: a pipe nobody reads would stall it.
        const int fd = open("/tmp/ptz_cntl.out", O_WRONLY | O_CREAT | O_TRUNC, 0644);
        dup2(fd, 1);
        dup2(fd, 2);
        close_range(3, ~0u, 0);   // our lines' ends and queues are not the process's
        execl(m_sBinary.c_str(), "ptz_cntl", "7", static_cast<char*>(nullptr));
        _exit(127);
    }
    const double tEnd = MonotonicSeconds() + 10;
    while (MonotonicSeconds() < tEnd) {
        while (auto m = m_rec->Receive(0)) {
            if (m->nCode == kMsgStarted) return true;
        }
        if (!Alive()) return false;
        usleep(5000);
    }
    return false;
}

bool Soak::Alive() {
    if (m_nPid <= 0) return false;
    int st;
    if (waitpid(m_nPid, &st, WNOHANG) == m_nPid) {
        m_nExit = WIFEXITED(st) ? WEXITSTATUS(st) : 128 + WTERMSIG(st);
        m_nPid = -1;
        return false;
    }
    return true;
}

void Soak::DrainMail() {
    while (auto m = m_rec->Receive(0)) {
        ++m_nMail;
        if (m->nCode == kMsgAliveAnswer && m_tAliveSent >= 0) {
            m_adAliveLatency.push_back(m->tSeconds - m_tAliveSent);
            if (m_adAliveLatency.back() >= m_dAliveWorst) {
                m_dAliveWorst = m_adAliveLatency.back();
                m_tAliveWorstAt = m_tAliveSent - m_t0;
            }
            m_tAliveSent = -1;
        }
    }
}

// A query unanswered for 1 s is a hang, unless the machine held the process back: when it spent
// more than half of that time waiting for a processor (the scheduler's run delay), or this
// observer was itself kept from running for more than half a second, the query is counted as
// starved by the machine's load instead. A process blocked in a call, or busy without answering,
// is not waiting for a processor and fails.
void Soak::Liveness() {
    const double now = MonotonicSeconds();
    const double gap = m_tLastLiveness > 0 ? now - m_tLastLiveness : 0;
    m_tLastLiveness = now;
    if (gap > 0.5) m_bObserverLate = true;
    if (m_tAliveSent >= 0 && now - m_tAliveSent > 1.0) {
        const double waited = RunDelaySeconds(m_nPid) - m_dRunDelayAtQuery;
        if (m_bObserverLate || waited > 0.5 * (now - m_tAliveSent)) {
            ++m_nStarvedQueries;
        } else {
            Fail("hang: liveness query unanswered for 1 s at t=" + std::to_string(static_cast<int>(now - m_t0)) +
                 " s (it waited " + std::to_string(static_cast<int>(1000 * waited)) + " ms for a processor)");
        }
        m_tAliveSent = -1;
    }
    if (m_tAliveSent < 0 && now >= m_tNextAlive) {
        m_dRunDelayAtQuery = RunDelaySeconds(m_nPid);
        m_bObserverLate = false;
        if (m_rec->Send(kMsgAlive)) m_tAliveSent = MonotonicSeconds();
        m_tNextAlive = now + 0.2;
    }
}

void Soak::SampleProcess() {
    const double now = MonotonicSeconds();
    if (now < m_tNextSample || m_nPid <= 0) return;
    m_tNextSample = now + 1.0;
    ProcStats st;
    if (!ReadProcStats(m_nPid, &st)) return;
    const double cpu = m_tLastStatsAt > 0 ? 100.0 * (st.cpuSeconds - m_tLastStats.cpuSeconds) / (now - m_tLastStatsAt) : 0;
    m_atSamples.push_back({now - m_t0, st.rssKiB, CountFds(m_nPid), cpu});
    m_tLastStats = st;
    m_tLastStatsAt = now;
    if (m_dSeconds >= 300 && m_atSamples.size() % 60 == 0) {
        const Sample& s = m_atSamples.back();
        std::printf("  t=%5.0f s  rss %llu KiB  fds %d  cpu %.2f %%  sent %llu\n", s.t,
                    static_cast<unsigned long long>(s.rssKiB), s.fds, s.cpuPct, static_cast<unsigned long long>(m_nSent));
        std::fflush(stdout);
    }
}

// Reads the PTZ line: at once, or at the pace of a 2400-baud line (with a 16-byte transmit FIFO
// of credit, so an idle line cannot save up).
void Soak::DrainLine(bool bPaced) {
    const int fd = m_ttyS1->MasterFd();
    const double now = MonotonicSeconds();
    size_t nAllowed = 4096;
    if (bPaced) {
        m_dLineCredit = std::min(16.0, m_dLineCredit + (now - m_tLineAt) * kLineBytesPerSecond2400);
        nAllowed = static_cast<size_t>(m_dLineCredit);
    }
    m_tLineAt = now;
    while (nAllowed > 0) {
        uint8_t buf[512];
        const ssize_t n = read(fd, buf, std::min(nAllowed, sizeof buf));
        if (n <= 0) break;
        nAllowed -= static_cast<size_t>(n);
        if (bPaced) m_dLineCredit -= static_cast<double>(n);
        m_nWireBytes += static_cast<uint64_t>(n);
        if (m_bKeepWire)
            for (ssize_t i = 0; i < n; ++i) m_aWire.emplace_back(buf[i], now);
    }
    // The other lines: KTT echoes, nothing on ttyS0.
    uint8_t sink[512];
    while (read(m_ttyS4->MasterFd(), sink, sizeof sink) > 0) {
    }
    while (read(m_ttyS0->MasterFd(), sink, sizeof sink) > 0) {
    }
}

void Soak::Tick(bool bPaceLine) {
    DrainMail();
    Liveness();
    SampleProcess();
    DrainLine(bPaceLine);
    if (!Alive()) Fail("crash: the process ended with status " + std::to_string(m_nExit));
}

void Soak::RandomPtz() {
    // Any code but 0..127 now and then, any channel but mostly the real ones, parameters small or any.
    uint32_t code = R(8) == 0 ? static_cast<uint32_t>(m_rng()) : R(128);
    const uint32_t ch = R(20) == 0 ? R(40) : R(kMaxChannels);
    auto P = [&]() { return R(4) == 0 ? static_cast<uint32_t>(m_rng()) : R(20); };
    Send(kMsgPtzCommand, ch, code, P(), P(), P());
}

void Soak::RandomConfig() {
    ShareBlock& s = m_rec->Share();
    switch (R(10)) {
    case 0: case 1: case 2: s.atPtz[R(kMaxChannels)].nPtzModel = R(10) == 0 ? R(100) : R(kPTZModelCount); break;
    case 3: s.atPtz[R(kMaxChannels)].nPtzAddress = R(4) == 0 ? static_cast<uint32_t>(m_rng()) : R(256); break;
    case 4: s.nChannels = R(10) == 0 ? R(40) : kMaxChannels; break;
    case 5: s.dwKeyFlags = R(8); break;
    case 6: Send(kMsgKeypadModel, R(kKeypadModelCount + 2)); break;
    case 7: Send(kMsgPosModel, R(10) == 0 ? R(20) : (R(2) ? 9 : 6)); break;
    case 8: Send(kMsgKeypadId, R(3)); break;
    default: s.dwKeypadMenuState = R(4) == 0 ? 0x10 : 0; break;
    }
}

void Soak::KeypadNoise() {
    std::vector<uint8_t> b;
    const uint32_t kind = R(4);
    if (kind == 0) {
        const uint8_t f[] = {0xAA, 0x01, static_cast<uint8_t>(R(150)), static_cast<uint8_t>(R(20))};
        b.assign(f, f + 4);
        b.push_back(static_cast<uint8_t>(f[0] + f[1] + f[2] + f[3]));
    } else if (kind == 1) {
        uint8_t f[] = {0xAA, 0x01, 0x80, static_cast<uint8_t>(1 + R(17)), static_cast<uint8_t>(R(2) ? 128 : R(256)),
                       static_cast<uint8_t>(R(256)), static_cast<uint8_t>(R(256))};
        b.assign(f, f + 7);
        uint8_t sum = 0;
        for (uint8_t x : b) sum = static_cast<uint8_t>(sum + x);
        b.push_back(sum);
    } else if (kind == 2) {
        const uint8_t f[] = {0xA1, static_cast<uint8_t>(R(3)), static_cast<uint8_t>(R(145)), static_cast<uint8_t>(R(256)), 0xAF};
        b.assign(f, f + 5);
    } else {
        for (uint32_t i = 0, n = 1 + R(30); i < n; ++i) b.push_back(static_cast<uint8_t>(m_rng()));
    }
    m_nKeypadBytes += b.size();
    m_ttyS1->Write(b);
}

void Soak::KttNoise() {
    std::vector<uint8_t> b;
    for (uint32_t i = 0, n = 1 + R(40); i < n; ++i) b.push_back(static_cast<uint8_t>(m_rng()));
    m_nKttBytes += b.size();
    m_ttyS4->Write(b);
}

void Soak::FifoText() {
    // The FIFO has a reader only while a FIFO model is selected; without one the line is dropped.
    const int fd = open("/tmp/pos_fifo", O_WRONLY | O_NONBLOCK);
    if (fd < 0) return;
    static const char* const kLines[] = {"7|A|B|1|2\n", "Transaction start\n", "REQ|CWD|01|02|1234567|99\n",
                                         " Money presented NTD1000x3\n", "Transaction end\n", "x|A\n"};
    std::string s = kLines[R(6)];
    if (R(3) == 0)
        for (uint32_t i = 0, n = R(200); i < n; ++i) s += static_cast<char>(1 + R(255));
    if (write(fd, s.data(), s.size()) > 0) ++m_nFifoLines;
    close(fd);
}

void Soak::Traffic(double tEnd) {
    // The process takes one message per pass, at most 100 a second: the traffic stays well below
    // that (about 40 a second with the liveness queries), as the recorder's own does.
    while (MonotonicSeconds() < tEnd && m_nPid > 0) {
        if (R(10) < 3) RandomPtz();
        if (R(50) == 0) RandomConfig();
        if (R(3) == 0) KeypadNoise();
        if (R(10) == 0) KttNoise();
        if (R(10) == 0) FifoText();
        if (R(50) == 0) Send(kMsgKtt, R(256), R(256), R(6));   // an event: queued and logged
        Tick(false);
        usleep(10000);
    }
}

std::vector<std::vector<uint8_t>> Soak::Expected(uint32_t model, uint32_t address, std::vector<std::array<uint32_t, 2>> cmds) {
    PTZInitChannels();   // this process's own channel table: a channel's state as at start
    PTZChannelState s = tGlobal.atChannel[0];
    std::vector<std::vector<uint8_t>> out;
    for (const auto& c : cmds) {
        PTZPacket p[kPTZPacketsPerCall] = {};
        s.nCmd = c[0];
        s.nParam1 = static_cast<int32_t>(c[1]);
        const int32_t n = ptPTZModelDatabase[model].BuildCmd(address, p, &s, 0);
        out.clear();
        for (int32_t i = 0; i < n; ++i) out.emplace_back(p[i].abData, p[i].abData + p[i].nLength);
    }
    return out;
}

void Soak::LostStops() {
    ShareBlock& s = m_rec->Share();
    // Let the queues of the traffic run out, then give every channel a camera with a builder.
    for (double t = MonotonicSeconds() + 2.5; MonotonicSeconds() < t;) {
        Tick(false);
        usleep(5000);
    }
    std::vector<uint32_t> built;
    for (uint32_t m = 1; m < kPTZModelCount; ++m)
        if (ptPTZModelDatabase[m].BuildCmd != nullptr) built.push_back(m);
    s.nChannels = kMaxChannels;
    // Every model with a builder in turn, sixteen channels at a time.
    for (size_t first = 0; first < built.size(); first += kMaxChannels) {
        std::vector<std::vector<uint8_t>> stops(kMaxChannels);
        for (uint32_t ch = 0; ch < kMaxChannels; ++ch) {
            const uint32_t model = built[(first + ch) % built.size()];
            s.atPtz[ch].nPtzModel = model;
            s.atPtz[ch].nPtzAddress = ch + 1;
            const auto frames = Expected(model, ch + 1, {{PTZCmd_Left, 4}, {PTZCmd_LeftStop, 0}});
            if (!frames.empty()) stops[ch] = frames.back();
        }
        m_aWire.clear();
        m_bKeepWire = true;
        for (uint32_t ch = 0; ch < kMaxChannels; ++ch) {
            Send(kMsgPtzCommand, ch, PTZCmd_Left, 4);
            Send(kMsgPtzCommand, ch, PTZCmd_LeftStop, 0);
        }
        // Each stop's frame must reach the wire; a loaded machine gets up to 10 s for all of them.
        std::vector<uint8_t> wire;
        auto seen = [&](uint32_t ch) {
            return stops[ch].empty() ||   // a driver that sends nothing for a stop
                   std::search(wire.begin(), wire.end(), stops[ch].begin(), stops[ch].end()) != wire.end();
        };
        for (double t = MonotonicSeconds() + 10; MonotonicSeconds() < t;) {
            Tick(false);
            usleep(5000);
            wire.clear();
            for (const auto& [b, at] : m_aWire) wire.push_back(b);
            bool bAll = true;
            for (uint32_t ch = 0; ch < kMaxChannels && bAll; ++ch) bAll = seen(ch);
            if (bAll) break;
        }
        for (uint32_t ch = 0; ch < kMaxChannels; ++ch) {
            if (!seen(ch)) {
                ++m_nLostStops;
                Fail("lost stop: channel " + std::to_string(ch) + " (model " + std::to_string(s.atPtz[ch].nPtzModel) +
                     ") never sent " + HexBytes(stops[ch].data(), stops[ch].size()));
            }
        }
        m_nStopModels += static_cast<int>(std::min<size_t>(kMaxChannels, built.size() - first));
    }
    m_bKeepWire = false;
    m_aWire.clear();
}

void Soak::BusyLine(double tEnd) {
    ShareBlock& s = m_rec->Share();
    for (uint32_t ch = 0; ch < kMaxChannels; ++ch) {
        s.atPtz[ch].nPtzModel = kPelcoD2400;
        s.atPtz[ch].nPtzAddress = ch + 1;
    }
    std::vector<std::vector<uint8_t>> stopFrame(kMaxChannels);
    for (uint32_t ch = 0; ch < kMaxChannels; ++ch) stopFrame[ch] = Expected(kPelcoD2400, ch + 1, {{PTZCmd_LeftStop, 0}}).at(0);
    std::vector<double> tStopSent(kMaxChannels, -1);   // -1: no stop outstanding
    const uint32_t kMoves[] = {PTZCmd_Left, PTZCmd_Right, PTZCmd_Up, PTZCmd_Down};
    m_aWire.clear();
    m_bKeepWire = true;
    m_tLineAt = MonotonicSeconds();
    m_dLineCredit = 0;
    const double tStart = MonotonicSeconds();
    double tNext = tStart;
    uint32_t ch = 0;
    // One command every 1/16 s, channel after channel: each channel gets one per second.
    while (MonotonicSeconds() < tEnd && m_nPid > 0) {
        if (MonotonicSeconds() >= tNext) {
            tNext += 1.0 / kMaxChannels;
            if (tStopSent[ch] < 0) {
                if (R(4) == 0) {
                    if (Send(kMsgPtzCommand, ch, PTZCmd_LeftStop, 0)) tStopSent[ch] = MonotonicSeconds();
                } else {
                    Send(kMsgPtzCommand, ch, kMoves[R(4)], 1 + R(8));
                }
                ++m_nBusyCommands;
            }
            ch = (ch + 1) % kMaxChannels;
        }
        Tick(true);
        // Frames that have left the wire: match stops against their frames.
        while (m_aWire.size() >= 7) {
            bool bMatched = false;
            for (uint32_t c = 0; c < kMaxChannels && !bMatched; ++c) {
                if (tStopSent[c] < 0) continue;
                const auto& f = stopFrame[c];
                if (std::equal(f.begin(), f.end(), m_aWire.begin(), [](uint8_t a, const auto& w) { return a == w.first; })) {
                    m_adStopDelay.push_back(m_aWire[f.size() - 1].second - tStopSent[c]);
                    tStopSent[c] = -1;
                    bMatched = true;
                }
            }
            m_aWire.pop_front();
        }
        usleep(2000);
    }
    m_dBusySeconds = MonotonicSeconds() - tStart;
    // Stops still on their way get a few more seconds of wire.
    for (double t = MonotonicSeconds() + 5; MonotonicSeconds() < t;) {
        Tick(true);
        while (m_aWire.size() >= 7) {
            for (uint32_t c = 0; c < kMaxChannels; ++c) {
                const auto& f = stopFrame[c];
                if (tStopSent[c] >= 0 &&
                    std::equal(f.begin(), f.end(), m_aWire.begin(), [](uint8_t a, const auto& w) { return a == w.first; })) {
                    m_adStopDelay.push_back(m_aWire[f.size() - 1].second - tStopSent[c]);
                    tStopSent[c] = -1;
                }
            }
            m_aWire.pop_front();
        }
        usleep(2000);
    }
    for (uint32_t c = 0; c < kMaxChannels; ++c) {
        if (tStopSent[c] >= 0) {
            ++m_nLostStops;
            Fail("lost stop on the busy line: channel " + std::to_string(c));
        }
    }
    m_bKeepWire = false;
}

void Soak::Report() {
    std::printf("\nsoak: %.0f s, %llu messages sent (%llu refused by a full queue), %llu received, "
                "%llu bytes on the PTZ line\n",
                MonotonicSeconds() - m_t0, static_cast<unsigned long long>(m_nSent),
                static_cast<unsigned long long>(m_nSendFailed), static_cast<unsigned long long>(m_nMail),
                static_cast<unsigned long long>(m_nWireBytes));
    std::printf("      keypad noise %llu bytes, KTT noise %llu bytes, FIFO lines %llu\n",
                static_cast<unsigned long long>(m_nKeypadBytes), static_cast<unsigned long long>(m_nKttBytes),
                static_cast<unsigned long long>(m_nFifoLines));
    if (!m_atSamples.empty()) {
        const Sample& a = m_atSamples.front();
        const Sample& z = m_atSamples.back();
        std::vector<double> cpu;
        for (size_t i = 1; i < m_atSamples.size(); ++i) cpu.push_back(m_atSamples[i].cpuPct);
        std::printf("      rss %llu KiB at start, %llu KiB at end; fds %d at start, %d at end; "
                    "cpu median %.2f %% of a core (%zu samples, max %.2f %%)\n",
                    static_cast<unsigned long long>(a.rssKiB), static_cast<unsigned long long>(z.rssKiB), a.fds, z.fds,
                    Median(cpu), m_atSamples.size(), cpu.empty() ? 0 : *std::max_element(cpu.begin(), cpu.end()));
    }
    if (!m_adAliveLatency.empty())
        std::printf("      liveness answered %zu times: median %.1f ms, 99th percentile %.1f ms, worst %.1f ms (at t=%.0f s)\n",
                    m_adAliveLatency.size(), 1000 * Median(m_adAliveLatency), 1000 * Percentile(m_adAliveLatency, 99),
                    1000 * m_dAliveWorst, m_tAliveWorstAt);
    if (m_nStarvedQueries > 0)
        std::printf("      liveness queries held up by the machine's load (not counted as hangs): %llu\n",
                    static_cast<unsigned long long>(m_nStarvedQueries));
    std::printf("      busy 2400-baud line: %llu commands in %.0f s on 16 channels (%.0f %% of the line), "
                "%zu stops: delay median %.0f ms, worst %.0f ms\n",
                static_cast<unsigned long long>(m_nBusyCommands), m_dBusySeconds,
                m_dBusySeconds > 0 ? 100.0 * 7 * static_cast<double>(m_nBusyCommands) / m_dBusySeconds / kLineBytesPerSecond2400 : 0,
                m_adStopDelay.size(), 1000 * Median(m_adStopDelay), 1000 * Percentile(m_adStopDelay, 100));
    std::printf("      lost stops %d (stops of %d models checked)\n", m_nLostStops, m_nStopModels);
}

int Soak::Run() {
    m_ttyS0 = std::make_unique<SerialLine>("/dev/ttyS0");
    m_ttyS1 = std::make_unique<SerialLine>("/dev/ttyS1");
    m_ttyS4 = std::make_unique<SerialLine>("/dev/ttyS4");
    m_rec = std::make_unique<Recorder>();
    if (!m_ttyS0->Ok() || !m_ttyS1->Ok() || !m_ttyS4->Ok() || !m_rec->Ok()) {
        std::fprintf(stderr, "soak: cannot set up the recorder and its lines\n");
        return 2;
    }
    m_t0 = MonotonicSeconds();
    if (!Start()) {
        std::fprintf(stderr, "soak: %s did not start\n", m_sBinary.c_str());
        return 1;
    }
    const double kTail = std::min(35.0, m_dSeconds / 2);
    Traffic(m_t0 + m_dSeconds - kTail);
    if (m_nPid > 0) LostStops();
    if (m_nPid > 0) BusyLine(m_t0 + m_dSeconds);

    // Growth: after a warm-up of a tenth of the run (at least 5 s), nothing may rise above its
    // level over the next tenth by more than a little resident slack; descriptors not at all.
    if (m_atSamples.size() >= 10) {
        const double tWarm = std::max(5.0, m_dSeconds / 10);
        uint64_t rssBase = 0;
        int fdBase = 0;
        for (const Sample& s : m_atSamples) {
            if (s.t >= tWarm && s.t < 2 * tWarm) {
                rssBase = std::max(rssBase, s.rssKiB);
                fdBase = std::max(fdBase, s.fds);
            }
        }
        for (const Sample& s : m_atSamples) {
            if (s.t < 2 * tWarm) continue;
            if (s.rssKiB > rssBase + kRssSlackKiB) {
                Fail("RSS grew from " + std::to_string(rssBase) + " KiB to " + std::to_string(s.rssKiB) + " KiB at t=" +
                     std::to_string(static_cast<int>(s.t)) + " s");
                break;
            }
            if (s.fds > fdBase) {
                Fail("descriptors grew from " + std::to_string(fdBase) + " to " + std::to_string(s.fds) + " at t=" +
                     std::to_string(static_cast<int>(s.t)) + " s");
                break;
            }
        }
    }
    if (m_nPid > 0) {
        m_rec->Send(kMsgStop);
        bool bEnded = false;
        for (double t = MonotonicSeconds() + 5; MonotonicSeconds() < t && !bEnded;) {
            DrainLine(false);
            while (auto m = m_rec->Receive(0)) bEnded |= m->nCode == kMsgEnded;
            usleep(5000);
        }
        for (double t = MonotonicSeconds() + 2; Alive() && MonotonicSeconds() < t;) usleep(5000);
        if (!bEnded || m_nExit != 0) Fail("no orderly end after the stop message (exit " + std::to_string(m_nExit) + ")");
        if (m_nPid > 0) {
            kill(m_nPid, SIGKILL);
            waitpid(m_nPid, nullptr, 0);
        }
    }
    Report();
    for (const auto& f : m_asFailures) std::printf("FAIL: %s\n", f.c_str());
    std::printf("soak: %s\n", m_asFailures.empty() ? "passed" : "FAILED");
    return m_asFailures.empty() ? 0 : 1;
}
}  // namespace

int main(int argc, char** argv) {
    RequireSandbox(argv[0]);
    signal(SIGPIPE, SIG_IGN);
    const double seconds = argc > 1 ? std::atof(argv[1]) : 600;
    const std::string binary = argc > 2 ? argv[2] : DefaultPtzCntlBinary();
    if (seconds < 20) {
        std::fprintf(stderr, "usage: %s [SECONDS >= 20] [BINARY]\n", argv[0]);
        return 2;
    }
    return Soak(seconds, binary).Run();
}
