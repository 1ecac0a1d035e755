#include "tools/sim/session.h"

#include <cstdio>
#include <cstdlib>

#include "tools/sim/names.h"
#include "tools/sim/ptz_line.h"

SimSession::SimSession() : t0(MonotonicSeconds()) {
    const char* paths[3] = {"/dev/ttyS0", "/dev/ttyS1", "/dev/ttyS4"};
    for (int i = 0; i < 3; ++i) lines[i] = std::make_unique<SerialLine>(paths[i]);
}

void SimSession::Print(double t, const std::string& who, const std::string& what) {
    std::printf("[%8.3f] %-9s %s\n", t - t0, who.c_str(), what.c_str());
    std::fflush(stdout);
}

void SimSession::Caption(const std::string& text) {
    std::printf("\n== %s\n", text.c_str());
    std::fflush(stdout);
}

int SimSession::PtzLineIndex() { return rec.Share().nPortAssign == kPortAssignPtzOnS0 ? 0 : 1; }

void SimSession::ShowMail(const Mail& m) {
    char buf[256];
    const std::string name = MessageName(m.nCode);
    std::snprintf(buf, sizeof buf, "<- %s (0x%X) from %u: %u %u %u %u %u", name.empty() ? "?" : name.c_str(),
                  m.nCode, m.nFrom, m.p[0], m.p[1], m.p[2], m.p[3], m.p[4]);
    Print(m.tSeconds, "mbox " + std::to_string(m.nMailbox), buf);
}

void SimSession::ShowSerial(int idx, const SerialChunk& c) {
    const std::string who = lines[idx]->Path().substr(5);
    if (idx == PtzLineIndex()) {
        for (const auto& f : SplitPtzFrames(c, rec.Share()))
            Print(f.tSeconds, who,
                  "-> " + HexBytes(f.abData.data(), f.abData.size()) + "   " + f.Describe() + "   [" + f.sSetting +
                      "]");
    } else {
        Print(c.tSeconds, who, "-> " + HexBytes(c.abData.data(), c.abData.size()) + "   [" + c.sSetting + "]");
    }
}

void SimSession::Pump(int ms) {
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

uint32_t SimNum(const std::string& s) { return static_cast<uint32_t>(std::strtoul(s.c_str(), nullptr, 0)); }

bool SimNeed(const SimArgs& a, size_t n, const char* usage) {
    if (a.size() >= n) return true;
    std::fprintf(stderr, "usage: %s %s\n", a.empty() ? "" : a[0].c_str(), usage);
    return false;
}
