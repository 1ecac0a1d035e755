// dvrsim commands of the recorder itself: configuration, process control, messages, PTZ commands,
// raw bytes on a line, and what the process published.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "core/ptz_cntl.h"
#include "tools/sim/log_view.h"
#include "tools/sim/names.h"
#include "tools/sim/session.h"

namespace {

void Set(SimSession& sim, const SimArgs& a) {
    if (!SimNeed(a, 3, "FIELD VALUE...")) return;
    ShareBlock& s = sim.rec.Share();
    const std::string& f = a[1];
    const uint32_t v = SimNum(a[2]);
    if (f == "ptz") {
        if (!SimNeed(a, 5, "ptz CH MODEL ADDR")) return;
        if (v >= kMaxChannels) return void(std::fprintf(stderr, "channel 0-15\n"));
        s.atPtz[v].nPtzModel = SimNum(a[3]);
        s.atPtz[v].nPtzAddress = SimNum(a[4]);
    } else if (f == "lastcmd") {
        if (!SimNeed(a, 5, "lastcmd CH SOURCE CMD [P1 P2 P3 P4]")) return;
        if (v >= kMaxChannels) return void(std::fprintf(stderr, "channel 0-15\n"));
        SharePtzLastCmd& l = s.atPtzLastCmd[v];
        const auto cmd = PtzCommandCode(a[4]);
        l.nSource = SimNum(a[3]);
        l.nCmd = cmd ? *cmd : 0;
        uint32_t* p[4] = {&l.nParam1, &l.nParam2, &l.nParam3, &l.nParam4};
        for (size_t i = 0; i < 4; ++i) *p[i] = a.size() > 5 + i ? SimNum(a[5 + i]) : 0;
    } else if (f == "channels") s.nChannels = v;
    else if (f == "keypad") s.nKeypadModel = v;
    else if (f == "keypadid") s.nKeypadSystemIdCfg = v;
    else if (f == "text") s.nPosModel = v;
    else if (f == "variant") s.nVariant = v;
    else if (f == "port") s.nPortAssign = v;
    else if (f == "keyflags") s.dwKeyFlags = v;
    else if (f == "features") s.dwFeatures = v;
    else if (f == "store") s.bPosStore = static_cast<uint8_t>(v);
    else if (f == "outputs") s.nSwitchOutputs = v;
    else if (f == "menu") s.dwKeypadMenuState = v;
    else if (f == "kttevents") s.nKttEventEnable = v;
    else if (f == "ptzdebug") s.bPtzDebug = static_cast<uint8_t>(v);
    else if (f == "keypaddebug") s.bKeypadDebug = static_cast<uint8_t>(v);
    else if (f == "lock") s.bPtzLock1 = static_cast<uint8_t>(v);
    else std::fprintf(stderr, "unknown field '%s' (try help)\n", f.c_str());
}

void SendRaw(SimSession& sim, uint32_t code, const uint32_t p[5], uint32_t from) {
    sim.rec.Send(code, p[0], p[1], p[2], p[3], p[4], from);
    char buf[160];
    std::snprintf(buf, sizeof buf, "-> %s (0x%X) from %u: %u %u %u %u %u", MessageName(code).c_str(), code, from,
                  p[0], p[1], p[2], p[3], p[4]);
    sim.Print(MonotonicSeconds(), "mbox 128", buf);
}

void Send(SimSession& sim, const SimArgs& a) {
    if (!SimNeed(a, 2, "CODE|NAME [P1..P5] [from=N]")) return;
    const auto code = MessageCode(a[1]);
    if (!code) return void(std::fprintf(stderr, "unknown message '%s'\n", a[1].c_str()));
    uint32_t p[5] = {0, 0, 0, 0, 0}, from = 1;
    size_t k = 0;
    for (size_t i = 2; i < a.size(); ++i) {
        if (a[i].rfind("from=", 0) == 0) from = SimNum(a[i].substr(5));
        else if (k < 5) p[k++] = SimNum(a[i]);
    }
    SendRaw(sim, *code, p, from);
}

void Alive(SimSession& sim, const SimArgs&) {
    const uint32_t p[5] = {0, 0, 0, 0, 0};
    SendRaw(sim, 2, p, 1);
}

void Start(SimSession& sim, const SimArgs& a) {
    if (!sim.rec.Start(sim.binary, {a.size() > 1 ? a[1] : "7"}))
        std::fprintf(stderr, "cannot start %s\n", sim.binary.c_str());
    else
        sim.Print(MonotonicSeconds(), "sim", "started " + sim.binary + " (pid " + std::to_string(sim.rec.Pid()) + ")");
}

void Stop(SimSession& sim, const SimArgs&) {
    const uint32_t p[5] = {0, 0, 0, 0, 0};
    SendRaw(sim, 1, p, 1);
    const double tEnd = MonotonicSeconds() + 5;
    while (sim.rec.Running() && MonotonicSeconds() < tEnd) sim.Pump(20);
    const int st = sim.rec.WaitExit(100);
    sim.Pump(50);
    sim.Print(MonotonicSeconds(), "sim", "ptz_cntl ended with status " + std::to_string(st));
}

void Ptz(SimSession& sim, const SimArgs& a) {
    if (!SimNeed(a, 3, "CH COMMAND [P1 P2 P3]")) return;
    const auto cmd = PtzCommandCode(a[2]);
    if (!cmd) return void(std::fprintf(stderr, "unknown PTZ command '%s'\n", a[2].c_str()));
    uint32_t p[3] = {0, 0, 0};
    for (size_t i = 0; i < 3 && 3 + i < a.size(); ++i) p[i] = SimNum(a[3 + i]);
    sim.rec.Send(kMsgPtzCommand, SimNum(a[1]), *cmd, p[0], p[1], p[2]);
    char buf[160];
    std::snprintf(buf, sizeof buf, "-> PTZ ch %u %s (%u) %u %u %u", SimNum(a[1]), PtzCommandName(*cmd).c_str(), *cmd,
                  p[0], p[1], p[2]);
    sim.Print(MonotonicSeconds(), "mbox 128", buf);
}

void Tty(SimSession& sim, const SimArgs& a) {
    if (!SimNeed(a, 3, "S0|S1|S4 HEXBYTES...")) return;
    const int idx = a[1] == "S0" ? 0 : a[1] == "S1" ? 1 : a[1] == "S4" ? 2 : -1;
    if (idx < 0) return void(std::fprintf(stderr, "line S0, S1 or S4\n"));
    std::vector<uint8_t> bytes;
    for (size_t i = 2; i < a.size(); ++i)
        bytes.push_back(static_cast<uint8_t>(std::strtoul(a[i].c_str(), nullptr, 16)));
    sim.lines[idx]->Write(bytes);
    sim.Print(MonotonicSeconds(), "tty" + a[1], "<- " + HexBytes(bytes.data(), bytes.size()));
}

void Wait(SimSession& sim, const SimArgs& a) {
    if (SimNeed(a, 2, "MS")) sim.Pump(static_cast<int>(SimNum(a[1])));
}

void Show(SimSession& sim, const SimArgs& a) {
    ShareBlock& s = sim.rec.Share();
    const std::string what = a.size() > 1 ? a[1] : "";
    if (what == "models") {
        std::printf("PTZ models: %u", s.nPtzModelCount);
        for (uint32_t i = 0; i < s.nPtzModelCount && i < 64; ++i)
            std::printf("%s%2u %-30.64s caps %08X", i % 2 ? "   " : "\n  ", i, s.asPtzModelName[i],
                        s.adwPtzModelCaps[i]);
        std::printf("\nkeypad models: %u", s.nKeypadModelCount);
        for (uint32_t i = 0; i < s.nKeypadModelCount && i < 16; ++i) std::printf("\n  %2u %.64s", i, s.asKeypadModelName[i]);
        std::printf("\ntext-insertion models: %u", s.nPosModelCount);
        for (uint32_t i = 0; i < s.nPosModelCount && i < 16; ++i) std::printf("\n  %2u %.64s", i, s.asPosModelName[i]);
        std::printf("\nKTT link models: %u", s.nKttModelCount);
        for (uint32_t i = 0; i < s.nKttModelCount && i < 16; ++i) std::printf("\n  %2u %.64s", i, s.asKttModelName[i]);
        std::printf("\n");
    } else if (what == "history") {
        std::printf("starts: %u (newest first)\n", s.tUpHistory.nStarts);
        for (int i = 0; i < kUpHistoryDepth && s.tUpHistory.adwTime[i] != 0; ++i)
            std::printf("  %d  uptime %u s  time %u\n", i, s.tUpHistory.adwUptime[i], s.tUpHistory.adwTime[i]);
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

void Echo(SimSession& sim, const SimArgs& a) {
    std::string text;
    for (size_t i = 1; i < a.size(); ++i) text += (i > 1 ? " " : "") + a[i];
    sim.Caption(text);
}

void Kill(SimSession& sim, const SimArgs&) { sim.rec.Kill(); }

void Logs(SimSession& sim, const SimArgs&) {
    sim.Pump(0);
    PrintRecorderLogs();
}

const SimCommand kCore[] = {
    {"set", "FIELD VALUE   ptz CH MODEL ADDR | lastcmd CH SRC CMD [P..] | channels | keypad | keypadid |\n"
            "               text | variant | port | keyflags | features | store | outputs | menu |\n"
            "               kttevents | ptzdebug | keypaddebug | lock: a word of the shared block",
     Set},
    {"start", "[PROCNO]      start ptz_cntl (process number, default 7)", Start},
    {"alive", "              liveness query (code 2)", Alive},
    {"stop", "               stop message (code 1); waits for the process to end", Stop},
    {"send", "CODE|NAME [P1..P5] [from=N]   any message to mailbox 128", Send},
    {"ptz", "CH COMMAND [P1 P2 P3]   a PTZ command by name (Left, PresetGo, ...) or code", Ptz},
    {"tty", "S0|S1|S4 HEX...   bytes onto a serial line, towards the process", Tty},
    {"wait", "MS            show what happens for MS milliseconds", Wait},
    {"show", "models|history|lastcmd   what the process published in the shared block", Show},
    {"echo", "TEXT          print a caption", Echo},
    {"kill", "              kill the process", Kill},
    {"logs", "              the event-log records on disk and flash, in local time", Logs},
    {nullptr, nullptr, nullptr},
};
}  // namespace

const SimCommand* CoreSimCommands() { return kCore; }
