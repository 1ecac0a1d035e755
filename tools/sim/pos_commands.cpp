// dvrsim commands of text insertion: a terminal, controller or ATM feeding the first serial line or
// the FIFO that the network services fill, and the records the process stored.
// `text` sends what it is given at once, as a client would: lines that reach the FIFO within one
// pass of the process come in one read, and only the first of them becomes a record. `textfile`
// and `atmjournal` pause between lines, as terminals do.
#include <signal.h>

#include <cstdio>
#include <ctime>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "tools/sim/pos_sim.h"
#include "tools/sim/session.h"

namespace {
constexpr int kLinePauseMs = 100;   // between the lines of a file or journal, as a terminal sends them

// The FIFO's writing end, held like the super-server's tee holds it: opened when first needed and
// kept, so that the process's reopening on a model change does not end the stream.
std::unique_ptr<PosFifoWriter> tFifo;

bool WriteFifo(const std::string& bytes) {
    for (int nTry = 0; nTry < 2; ++nTry) {
        if (!tFifo) {
            signal(SIGPIPE, SIG_IGN);   // a reader gone between two lines must not end the simulator
            tFifo = std::make_unique<PosFifoWriter>();
            if (!tFifo->Open(500)) {
                tFifo.reset();
                std::fprintf(stderr, "nobody reads /tmp/pos_fifo (process not running, or a serial model)\n");
                return false;
            }
        }
        if (tFifo->Write(bytes)) return true;
        tFifo.reset();   // the reader went away: open anew once
    }
    std::fprintf(stderr, "cannot write /tmp/pos_fifo\n");
    return false;
}

// Sends bytes to "S0" (the first serial line) or "fifo" and shows them; false when it failed.
bool SendTo(SimSession& sim, const std::string& target, const std::string& bytes) {
    bool bOk;
    if (target == "S0") bOk = sim.lines[0]->Write(std::vector<uint8_t>(bytes.begin(), bytes.end()));
    else if (target == "fifo") bOk = WriteFifo(bytes);
    else {
        std::fprintf(stderr, "target S0 or fifo\n");
        return false;
    }
    if (bOk) sim.Print(MonotonicSeconds(), target == "S0" ? "ttyS0" : "pos_fifo", "<- " + PosEscape(bytes));
    return bOk;
}

std::string JoinWords(const SimArgs& a, size_t nFrom) {
    std::string s;
    for (size_t i = nFrom; i < a.size(); ++i) s += (i > nFrom ? " " : "") + a[i];
    return s;
}

void Text(SimSession& sim, const SimArgs& a) {
    if (SimNeed(a, 3, "S0|fifo TEXT...")) SendTo(sim, a[1], PosUnescape(JoinWords(a, 2)));
}

// Each line of the file goes as it stands, with its own line end, then a pause.
void TextFile(SimSession& sim, const SimArgs& a) {
    if (!SimNeed(a, 3, "S0|fifo FILE [MS]")) return;
    std::ifstream f(a[2], std::ios::binary);
    if (!f) return void(std::fprintf(stderr, "cannot read %s\n", a[2].c_str()));
    const int nPause = a.size() > 3 ? static_cast<int>(SimNum(a[3])) : kLinePauseMs;
    for (std::string line; std::getline(f, line);) {
        if (!f.eof()) line += '\n';
        if (!SendTo(sim, a[1], line)) return;
        sim.Pump(nPause);
    }
}

void Aper(SimSession& sim, const SimArgs& a) {
    static const char kUsage[] = "[baddata|badsum|badend] N1 N2 N3 TEXT...";
    size_t k = 1;
    AperFault fault = AperFault::kNone;
    if (a.size() > 1 && a[1].rfind("bad", 0) == 0) {
        if (a[1] == "baddata") fault = AperFault::kDataSum;
        else if (a[1] == "badsum") fault = AperFault::kTransportSum;
        else if (a[1] == "badend") fault = AperFault::kEndMarker;
        else return void(std::fprintf(stderr, "usage: aper %s\n", kUsage));
        k = 2;
    }
    if (!SimNeed(a, k + 3, kUsage)) return;
    const std::string p = AperPacket(static_cast<uint8_t>(SimNum(a[k])), static_cast<uint8_t>(SimNum(a[k + 1])),
                                     static_cast<uint16_t>(SimNum(a[k + 2])), PosUnescape(JoinWords(a, k + 3)), fault);
    if (!sim.lines[0]->Write(std::vector<uint8_t>(p.begin(), p.end()))) return;
    sim.Print(MonotonicSeconds(), "ttyS0", "<- " + HexBytes(reinterpret_cast<const uint8_t*>(p.data()), p.size()));
    if (p.find('\r') != std::string::npos)
        sim.Print(MonotonicSeconds(), "sim", "note: the model's line setting (IGNCR) drops the packet's 0D bytes");
    if (fault == AperFault::kEndMarker)
        sim.Print(MonotonicSeconds(), "sim", "note: without its FF the line hands the packet over at the next line end");
}

// A withdrawal as the ATM journals it, one line per read of the FIFO.
void AtmJournalCmd(SimSession& sim, const SimArgs& a) {
    if (!SimNeed(a, 2, "ACCOUNT|- [DENOMxCOUNT...]")) return;
    std::vector<AtmNotes> notes;
    for (size_t i = 2; i < a.size(); ++i) {
        AtmNotes n{};
        char cEnd = 0;
        if (std::sscanf(a[i].c_str(), "%dx%d%c", &n.nDenomination, &n.nCount, &cEnd) != 2)
            return void(std::fprintf(stderr, "notes as DENOMxCOUNT, e.g. 1000x3\n"));
        notes.push_back(n);
    }
    for (const std::string& line : AtmJournal(time(nullptr), a[1] == "-" ? "" : a[1], notes)) {
        if (!SendTo(sim, "fifo", line)) return;
        sim.Pump(kLinePauseMs);
    }
}

void Records(SimSession& sim, const SimArgs& a) {
    std::string path = PosDayFile(time(nullptr));
    if (a.size() > 1) {
        if (a[1].size() != 8 || a[1].find_first_not_of("0123456789") != std::string::npos)
            return void(std::fprintf(stderr, "date as YYYYMMDD\n"));
        path = "/mnt/pos/" + a[1] + ".pos";
    }
    const std::vector<std::string> records = PosRecords(path);
    sim.Caption(path + ": " + std::to_string(records.size()) + " records, under the active model's layout");
    if (!records.empty()) std::fputs(PosRecordTable(PosLayoutColumns(sim.rec.Share().abPosLayout), records).c_str(), stdout);
    std::fflush(stdout);
}

const SimCommand kPos[] = {
    {"text", "S0|fifo TEXT...   bytes as a terminal or client sends them: words joined by one\n"
             "               space, escapes \\n \\r \\t \\e \\\\ \\xHH, no line end added",
     Text},
    {"textfile", "S0|fifo FILE [MS]   a file line by line, MS ms apart (default 100)", TextFile},
    {"aper", "[baddata|badsum|badend] N1 N2 N3 TEXT...   an APER Chomguard packet on S0: numbers\n"
             "               at byte 4, byte 11 and 16 bits at 9, optionally a bad checksum or end",
     Aper},
    {"atmjournal", "ACCOUNT|- [DENOMxCOUNT...]   a Friendly Info ATM withdrawal, line by line to\n"
                   "               the FIFO (no notes: an inquiry; -: no account line)",
     AtmJournalCmd},
    {"records", "[YYYYMMDD]   a daily record file (default today) under the active layout", Records},
    {nullptr, nullptr, nullptr},
};
}  // namespace

const SimCommand* PosSimCommands() { return kPos; }
