// dvrsim: the recorder simulator. Plays the recorder's main application and monitor for one
// ptz_cntl process inside the test sandbox, and shows readably what crosses the mailboxes and the
// serial lines.
//
//   tools/sandbox.sh build/dvrsim [--script FILE] [--binary PATH]
//
// Commands come from the script or, without one, from standard input; `help` lists them.
#include <poll.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "lib/ipc/MessageQueue.h"
#include "ptz/ptz_model.h"
#include "tools/sim/names.h"
#include "tools/sim/ptz_line.h"
#include "tools/sim/recorder.h"
#include "tools/sim/sandbox_guard.h"
#include "tools/sim/serial_line.h"

namespace {

using Args = std::vector<std::string>;

struct Sim {
    Recorder rec;
    std::unique_ptr<SerialLine> lines[3];   // /dev/ttyS0, /dev/ttyS1, /dev/ttyS4
    std::string binary = DefaultPtzCntlBinary();
    double t0 = MonotonicSeconds();
    size_t nOutputShown = 0;

    Sim() {
        const char* paths[3] = {"/dev/ttyS0", "/dev/ttyS1", "/dev/ttyS4"};
        for (int i = 0; i < 3; ++i) lines[i] = std::make_unique<SerialLine>(paths[i]);
    }

    void Print(double t, const std::string& who, const std::string& what) {
        std::printf("[%8.3f] %-9s %s\n", t - t0, who.c_str(), what.c_str());
        std::fflush(stdout);
    }

    // Which line the PTZ cameras hang on, as the process chooses it.
    int PtzLineIndex() { return rec.Share().nPortAssign == kPortAssignPtzOnS0 ? 0 : 1; }

    void ShowMail(const Mail& m) {
        char buf[256];
        std::string name = MessageName(m.nCode);
        std::snprintf(buf, sizeof buf, "<- %s (0x%X) from %u: %u %u %u %u %u", name.empty() ? "?" : name.c_str(),
                      m.nCode, m.nFrom, m.p[0], m.p[1], m.p[2], m.p[3], m.p[4]);
        Print(m.tSeconds, "mbox " + std::to_string(m.nMailbox), buf);
    }

    void ShowSerial(int idx, const SerialChunk& c) {
        const std::string who = lines[idx]->Path().substr(5);
        if (idx == PtzLineIndex()) {
            for (const auto& f : SplitPtzFrames(c, rec.Share()))
                Print(f.tSeconds, who,
                      "-> " + HexBytes(f.abData.data(), f.abData.size()) + "   " + f.Describe() + "   [" +
                          f.sSetting + "]");
        } else {
            Print(c.tSeconds, who, "-> " + HexBytes(c.abData.data(), c.abData.size()) + "   [" + c.sSetting + "]");
        }
    }

    // Shows everything that happened, for about ms milliseconds.
    void Pump(int ms) {
        const double tEnd = MonotonicSeconds() + ms / 1000.0;
        do {
            while (auto m = rec.Receive(0)) ShowMail(*m);
            for (int i = 0; i < 3; ++i)
                for (const auto& c : lines[i]->Read(0)) ShowSerial(i, c);
            const auto& out = rec.Output(2);
            for (; nOutputShown < out.size(); ++nOutputShown)
                Print(out[nOutputShown].tSeconds, out[nOutputShown].bStderr ? "stderr" : "stdout",
                      out[nOutputShown].sText);
        } while (MonotonicSeconds() < tEnd);
    }
};

uint32_t Num(const std::string& s) { return static_cast<uint32_t>(std::strtoul(s.c_str(), nullptr, 0)); }

bool Need(const Args& a, size_t n, const char* usage) {
    if (a.size() >= n) return true;
    std::fprintf(stderr, "usage: %s\n", usage);
    return false;
}

void CmdSet(Sim& sim, const Args& a) {
    if (!Need(a, 3, "set FIELD VALUE...")) return;
    ShareBlock& s = sim.rec.Share();
    const std::string& f = a[1];
    if (f == "ptz" && Need(a, 5, "set ptz CH MODEL ADDR")) {
        const uint32_t ch = Num(a[2]);
        if (ch >= kMaxChannels) return void(std::fprintf(stderr, "channel 0-15\n"));
        s.atPtz[ch].nPtzModel = Num(a[3]);
        s.atPtz[ch].nPtzAddress = Num(a[4]);
    } else if (f == "lastcmd" && Need(a, 5, "set lastcmd CH SOURCE CMD [P1 P2 P3 P4]")) {
        const uint32_t ch = Num(a[2]);
        if (ch >= kMaxChannels) return void(std::fprintf(stderr, "channel 0-15\n"));
        SharePtzLastCmd& l = s.atPtzLastCmd[ch];
        l.nSource = Num(a[3]);
        const auto cmd = PtzCommandCode(a[4]);
        l.nCmd = cmd ? *cmd : 0;
        uint32_t* p[4] = {&l.nParam1, &l.nParam2, &l.nParam3, &l.nParam4};
        for (size_t i = 0; i < 4; ++i) *p[i] = a.size() > 5 + i ? Num(a[5 + i]) : 0;
    } else if (f == "channels") s.nChannels = Num(a[2]);
    else if (f == "keypad") s.nKeypadModel = Num(a[2]);
    else if (f == "keypadid") s.nKeypadSystemIdCfg = Num(a[2]);
    else if (f == "text") s.nPosModel = Num(a[2]);
    else if (f == "variant") s.nVariant = Num(a[2]);
    else if (f == "port") s.nPortAssign = Num(a[2]);
    else if (f == "keyflags") s.dwKeyFlags = Num(a[2]);
    else if (f == "features") s.dwFeatures = Num(a[2]);
    else if (f == "store") s.bPosStore = static_cast<uint8_t>(Num(a[2]));
    else if (f == "outputs") s.nSwitchOutputs = Num(a[2]);
    else if (f == "menu") s.dwKeypadMenuState = Num(a[2]);
    else if (f == "kttevents") s.nKttEventEnable = Num(a[2]);
    else if (f == "ptzdebug") s.bPtzDebug = static_cast<uint8_t>(Num(a[2]));
    else if (f == "keypaddebug") s.bKeypadDebug = static_cast<uint8_t>(Num(a[2]));
    else if (f == "lock") s.bPtzLock1 = static_cast<uint8_t>(Num(a[2]));
    else std::fprintf(stderr, "unknown field '%s' (try help)\n", f.c_str());
}

void CmdSend(Sim& sim, const Args& a) {
    if (!Need(a, 2, "send CODE|NAME [P1..P5] [from=N]")) return;
    auto code = MessageCode(a[1]);
    if (!code) return void(std::fprintf(stderr, "unknown message '%s'\n", a[1].c_str()));
    uint32_t p[5] = {0, 0, 0, 0, 0}, from = 1;
    size_t k = 0;
    for (size_t i = 2; i < a.size(); ++i) {
        if (a[i].rfind("from=", 0) == 0) from = Num(a[i].substr(5));
        else if (k < 5) p[k++] = Num(a[i]);
    }
    sim.rec.Send(*code, p[0], p[1], p[2], p[3], p[4], from);
    char buf[160];
    std::snprintf(buf, sizeof buf, "-> %s (0x%X) from %u: %u %u %u %u %u", MessageName(*code).c_str(), *code, from,
                  p[0], p[1], p[2], p[3], p[4]);
    sim.Print(MonotonicSeconds(), "mbox 128", buf);
}

void CmdPtz(Sim& sim, const Args& a) {
    if (!Need(a, 3, "ptz CH COMMAND [P1 P2 P3]")) return;
    auto cmd = PtzCommandCode(a[2]);
    if (!cmd) return void(std::fprintf(stderr, "unknown PTZ command '%s'\n", a[2].c_str()));
    uint32_t p[3] = {0, 0, 0};
    for (size_t i = 0; i < 3 && 3 + i < a.size(); ++i) p[i] = Num(a[3 + i]);
    sim.rec.Send(0x800001, Num(a[1]), *cmd, p[0], p[1], p[2]);
    char buf[160];
    std::snprintf(buf, sizeof buf, "-> PTZ ch %u %s (%u) %u %u %u", Num(a[1]), PtzCommandName(*cmd).c_str(), *cmd,
                  p[0], p[1], p[2]);
    sim.Print(MonotonicSeconds(), "mbox 128", buf);
}

void CmdTty(Sim& sim, const Args& a) {
    if (!Need(a, 3, "tty S0|S1|S4 HEXBYTES...")) return;
    const int idx = a[1] == "S0" ? 0 : a[1] == "S1" ? 1 : a[1] == "S4" ? 2 : -1;
    if (idx < 0) return void(std::fprintf(stderr, "line S0, S1 or S4\n"));
    std::vector<uint8_t> bytes;
    for (size_t i = 2; i < a.size(); ++i) bytes.push_back(static_cast<uint8_t>(std::strtoul(a[i].c_str(), nullptr, 16)));
    sim.lines[idx]->Write(bytes);
    sim.Print(MonotonicSeconds(), "tty" + a[1], "<- " + HexBytes(bytes.data(), bytes.size()));
}

void CmdShow(Sim& sim, const Args& a) {
    ShareBlock& s = sim.rec.Share();
    const std::string what = a.size() > 1 ? a[1] : "";
    if (what == "models") {
        std::printf("PTZ models published: %u\n", s.nPtzModelCount);
        for (uint32_t i = 0; i < s.nPtzModelCount && i < 64; ++i)
            std::printf("  %2u  %-32.64s caps 0x%08X\n", i, s.asPtzModelName[i], s.adwPtzModelCaps[i]);
        std::printf("keypad models: %u, text models: %u, KTT models: %u\n", s.nKeypadModelCount, s.nPosModelCount,
                    s.nKttModelCount);
    } else if (what == "history") {
        std::printf("starts: %u\n", s.tUpHistory.nStarts);
        for (int i = 0; i < kUpHistoryDepth; ++i)
            std::printf("  %d  uptime %u  time %u\n", i, s.tUpHistory.adwUptime[i], s.tUpHistory.adwTime[i]);
    } else if (what == "lastcmd") {
        for (int ch = 0; ch < kMaxChannels; ++ch) {
            const SharePtzLastCmd& l = s.atPtzLastCmd[ch];
            if (l.nCmd != 0)
                std::printf("  ch %2d  from %u  %s (%u) %u %u %u %u\n", ch, l.nSource, PtzCommandName(l.nCmd).c_str(),
                            l.nCmd, l.nParam1, l.nParam2, l.nParam3, l.nParam4);
        }
    } else {
        std::fprintf(stderr, "show models|history|lastcmd\n");
    }
    std::fflush(stdout);
}

void Help() {
    std::puts(
        "commands (one a line; # starts a comment):\n"
        "  set ptz CH MODEL ADDR        camera model and address of a channel\n"
        "  set channels|keypad|keypadid|text|variant|port|keyflags|features|store|outputs|menu|\n"
        "      kttevents|ptzdebug|keypaddebug|lock VALUE     a configuration word of the shared block\n"
        "  set lastcmd CH SRC CMD [P..] the last PTZ command a restart replays\n"
        "  start [PROCNO]               start ptz_cntl (process number, default 7)\n"
        "  alive                        liveness query (code 2)\n"
        "  stop                         stop message (code 1); waits for the process to end\n"
        "  send CODE|NAME [P1..P5] [from=N]   any message to mailbox 128\n"
        "  ptz CH COMMAND [P1 P2 P3]    a PTZ command by name (Left, PresetGo, ...) or code\n"
        "  tty S0|S1|S4 HEX...          bytes onto a serial line, towards the process\n"
        "  wait MS                      show what happens for MS milliseconds\n"
        "  show models|history|lastcmd  what the process published in the shared block\n"
        "  echo TEXT                    print a caption\n"
        "  kill | quit");
}

// Runs one command line; false ends the session.
bool Run(Sim& sim, const std::string& line) {
    std::istringstream in(line);
    Args a;
    for (std::string w; in >> w;) {
        if (w[0] == '#') break;
        a.push_back(w);
    }
    if (a.empty()) return true;
    const std::string& c = a[0];
    if (c == "set") CmdSet(sim, a);
    else if (c == "start") {
        if (!sim.rec.Start(sim.binary, {a.size() > 1 ? a[1] : "7"})) std::fprintf(stderr, "cannot start %s\n", sim.binary.c_str());
        else sim.Print(MonotonicSeconds(), "sim", "started " + sim.binary + " (pid " + std::to_string(sim.rec.Pid()) + ")");
    } else if (c == "alive") CmdSend(sim, {"send", "2"});
    else if (c == "stop") {
        CmdSend(sim, {"send", "1"});
        const double tEnd = MonotonicSeconds() + 5;
        while (sim.rec.Running() && MonotonicSeconds() < tEnd) sim.Pump(20);
        const int st = sim.rec.WaitExit(100);
        sim.Pump(50);
        sim.Print(MonotonicSeconds(), "sim", "ptz_cntl ended with status " + std::to_string(st));
    } else if (c == "send") CmdSend(sim, a);
    else if (c == "ptz") CmdPtz(sim, a);
    else if (c == "tty") CmdTty(sim, a);
    else if (c == "wait" && Need(a, 2, "wait MS")) sim.Pump(static_cast<int>(Num(a[1])));
    else if (c == "show") CmdShow(sim, a);
    else if (c == "echo") {
        const size_t p = line.find("echo");
        std::printf("\n== %s\n", line.substr(p + 5).c_str());
        std::fflush(stdout);
    } else if (c == "kill") sim.rec.Kill();
    else if (c == "quit" || c == "exit") return false;
    else if (c == "help") Help();
    else std::fprintf(stderr, "unknown command '%s' (try help)\n", c.c_str());
    sim.Pump(0);
    return true;
}
}  // namespace

int main(int argc, char** argv) {
    RequireSandbox(argv[0]);
    std::string script;
    Sim sim;
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--script") && i + 1 < argc) script = argv[++i];
        else if (!std::strcmp(argv[i], "--binary") && i + 1 < argc) sim.binary = argv[++i];
        else {
            std::fprintf(stderr, "usage: %s [--script FILE] [--binary PATH]\n", argv[0]);
            return 2;
        }
    }
    if (!sim.rec.Ok()) {
        std::fprintf(stderr, "dvrsim: cannot create the recorder's IPC objects\n");
        return 1;
    }
    if (!script.empty()) {
        std::ifstream f(script);
        if (!f) {
            std::fprintf(stderr, "dvrsim: cannot read %s\n", script.c_str());
            return 2;
        }
        for (std::string line; std::getline(f, line);)
            if (!Run(sim, line)) break;
    } else {
        // Interactive: keep showing events while waiting for the next command.
        std::string line;
        for (;;) {
            struct pollfd p = {0, POLLIN, 0};
            if (poll(&p, 1, 20) > 0) {
                if (!std::getline(std::cin, line) || !Run(sim, line)) break;
            } else {
                sim.Pump(0);
            }
        }
    }
    sim.Pump(50);
    return 0;
}
