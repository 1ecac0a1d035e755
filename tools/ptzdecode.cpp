// ptzdecode: reads the bytes of a PTZ camera line and prints them as camera commands.
//
//   ptzdecode [--model N | --protocol NAME] [--raw] [FILE | -]
//   ptzdecode [--model N | --protocol NAME] --line DEVICE [--baud B] [--parity P] [--stop-bits N]
//
// Input is hex text as installers paste it from a terminal, a raw capture file (--raw), or a serial
// port read live until interrupted (--line; the port is only read, never written). Each frame
// becomes one line: byte offset, camera address, the command in words, check good or bad, the
// bytes. Noise and cut frames are shown as such and reading goes on. Without --model or --protocol
// every protocol reads the bytes and the ones that read them with good checks are ranked: "what is
// this camera speaking?"; a file is then decoded with the best, a live line with all of them.
// Exit status: 0 frames decoded, 1 no frame found, 2 bad usage or unreadable input.
#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "ptz/ptz_model.h"
#include "tools/sim/ptz_decode.h"
#include "tools/sim/ptz_line.h"
#include "tools/sim/serial_line.h"

namespace {

// A line that has been quiet this long has no frame half-way through.
constexpr double kQuietSeconds = 0.2;

struct Options {
    const PtzProtocol* ptProtocol = nullptr;   // null: guess
    int nModel = -1;
    bool bRaw = false;
    std::string sFile = "-";
    bool bFileGiven = false;
    std::string sLine;
    uint32_t dwBaud = 0;                        // termios code; 0: not given
    int nParity = -1;                           // 0 none, PARENB, PARENB | PARODD; -1 not given
    int nStopBits = 0;                          // 1 or 2; 0 not given
};

[[noreturn]] void Fail(const std::string& sWhy) {
    std::fprintf(stderr, "ptzdecode: %s\n", sWhy.c_str());
    std::exit(2);
}

// --- Names and help ------------------------------------------------------------------------------

std::string Squeezed(const std::string& s) {
    std::string out;
    for (char c : s)
        if (std::isalnum(static_cast<unsigned char>(c))) out += static_cast<char>(std::tolower(c));
    return out;
}

// A protocol by its name, with case, blanks and punctuation not minded ("pelco-d", "PelcoD").
const PtzProtocol* FindProtocol(const std::string& sName) {
    if (const PtzProtocol* p = ProtocolNamed(sName)) return p;
    for (const PtzProtocol& p : PtzProtocols())
        if (!Squeezed(sName).empty() && Squeezed(p.sName) == Squeezed(sName)) return &p;
    return nullptr;
}

// "models 12-14, 37" for the models that speak a protocol.
std::string ModelsOf(const PtzProtocol* ptProtocol) {
    std::string s;
    bool bMany = false;
    for (uint32_t m = 0; m < kPTZModelCount; ++m) {
        if (ProtocolOfModel(m) != ptProtocol) continue;
        uint32_t nLast = m;
        while (nLast + 1 < kPTZModelCount && ProtocolOfModel(nLast + 1) == ptProtocol) ++nLast;
        bMany = bMany || !s.empty() || nLast > m;
        s += (s.empty() ? "" : ", ") + std::to_string(m);
        if (nLast > m) s += "-" + std::to_string(nLast);
        m = nLast;
    }
    return s.empty() ? "no model" : (bMany ? "models " : "model ") + s;
}

std::string LineOfModel(uint32_t nModel) {
    return DescribeLine(PTZModelEntry(nModel).dwLineFlags | CS8);
}

void Help() {
    std::printf(
        "usage: ptzdecode [--model N | --protocol NAME] [--raw] [FILE | -]\n"
        "       ptzdecode [--model N | --protocol NAME] --line DEVICE [--baud B] [--parity P]\n"
        "                 [--stop-bits N]\n"
        "\n"
        "Prints the bytes of a PTZ camera line as camera commands, one line per frame: byte\n"
        "offset, camera address, the command, check good or bad, the bytes. FILE (standard\n"
        "input for - or none) holds hex text: bytes with or without blanks, commas or line\n"
        "breaks between them, 0x prefixes allowed, # starting a comment. Without --model or\n"
        "--protocol the protocols that read the bytes with good checks are ranked first.\n"
        "\n"
        "  --model N        decode as camera model N speaks (table below); with --line its line\n"
        "                   setting is the default\n"
        "  --protocol NAME  decode as protocol NAME (case, blanks and hyphens do not matter)\n"
        "  --raw            FILE holds the raw bytes of a capture, not hex text\n"
        "  --line DEVICE    read the serial port DEVICE live until interrupted (read only)\n"
        "  --baud B         1200, 2400, 4800, 9600, 19200, 38400, 57600 or 115200\n"
        "  --parity P       none (default), even or odd\n"
        "  --stop-bits N    1 (default) or 2\n"
        "\n"
        "Exit status: 0 frames decoded, 1 no frame found, 2 bad usage or unreadable input.\n"
        "\nProtocols:\n");
    for (const PtzProtocol& p : PtzProtocols())
        std::printf("  %-18s %s  %s\n", p.sName, p.bChecked ? "check byte   " : "no check byte",
                    ModelsOf(&p).c_str());
    std::printf("\nModels:\n  %3s  %-34s %-18s %s\n", "#", "name", "protocol", "line");
    std::string sWithout;
    for (uint32_t m = 1; m < kPTZModelCount; ++m) {
        const PtzProtocol* p = ProtocolOfModel(m);
        if (p == nullptr) {
            sWithout += (sWithout.empty() ? "" : " ") + std::to_string(m);
            continue;
        }
        std::printf("  %3u  %-34s %-18s %s\n", m, PTZModelEntry(m).sName, p->sName,
                    LineOfModel(m).c_str());
    }
    if (!sWithout.empty()) std::printf("\nModels without a decoder: %s\n", sWithout.c_str());
}

// --- Command line --------------------------------------------------------------------------------

bool Number(const std::string& s, long* n) {
    if (s.empty() || s.size() > 9) return false;
    for (char c : s)
        if (!std::isdigit(static_cast<unsigned char>(c))) return false;
    *n = std::strtol(s.c_str(), nullptr, 10);
    return true;
}

uint32_t BaudCode(const std::string& s) {
    const struct { const char* s; uint32_t dw; } kBauds[] = {
        {"1200", B1200},   {"2400", B2400},   {"4800", B4800},   {"9600", B9600},
        {"19200", B19200}, {"38400", B38400}, {"57600", B57600}, {"115200", B115200},
    };
    for (const auto& b : kBauds)
        if (s == b.s) return b.dw;
    Fail("unsupported baud rate \"" + s + "\" (1200 to 115200)");
}

Options Parse(int argc, char** argv) {
    Options o;
    for (int i = 1; i < argc; ++i) {
        std::string sArg = argv[i], sValue;
        const bool bOption = sArg.size() > 2 && sArg.compare(0, 2, "--") == 0;
        const size_t nEq = sArg.find('=');
        bool bInline = bOption && nEq != std::string::npos;
        if (bInline) {
            sValue = sArg.substr(nEq + 1);
            sArg = sArg.substr(0, nEq);
        }
        auto value = [&]() {
            if (bInline) return sValue;
            if (i + 1 >= argc) Fail(sArg + " needs an argument");
            return std::string(argv[++i]);
        };
        if (sArg == "--help" || sArg == "-h") {
            Help();
            std::exit(0);
        } else if (sArg == "--model") {
            const std::string s = value();
            long n;
            if (!Number(s, &n) || n >= static_cast<long>(kPTZModelCount))
                Fail("no model \"" + s + "\" (models are 0-" +
                     std::to_string(kPTZModelCount - 1) + ")");
            o.nModel = static_cast<int>(n);
        } else if (sArg == "--protocol") {
            const std::string s = value();
            o.ptProtocol = FindProtocol(s);
            if (o.ptProtocol == nullptr) Fail("unknown protocol \"" + s + "\" (see --help)");
        } else if (sArg == "--raw") {
            if (bInline) Fail("--raw takes no argument");
            o.bRaw = true;
        } else if (sArg == "--line") {
            o.sLine = value();
        } else if (sArg == "--baud") {
            o.dwBaud = BaudCode(value());
        } else if (sArg == "--parity") {
            const std::string s = value();
            if (s == "none") o.nParity = 0;
            else if (s == "even") o.nParity = PARENB;
            else if (s == "odd") o.nParity = PARENB | PARODD;
            else Fail("parity is none, even or odd, not \"" + s + "\"");
        } else if (sArg == "--stop-bits") {
            const std::string s = value();
            if (s != "1" && s != "2") Fail("stop bits are 1 or 2, not \"" + s + "\"");
            o.nStopBits = s[0] - '0';
        } else if (sArg.size() > 1 && sArg[0] == '-') {
            Fail("unknown option \"" + sArg + "\" (see --help)");
        } else {
            if (o.bFileGiven) Fail("one input at a time: \"" + o.sFile + "\" and \"" + sArg + "\"");
            o.sFile = sArg;
            o.bFileGiven = true;
        }
    }
    if (o.nModel >= 0 && o.ptProtocol != nullptr) Fail("--model or --protocol, not both");
    if (o.nModel >= 0) {
        o.ptProtocol = ProtocolOfModel(static_cast<uint32_t>(o.nModel));
        if (o.ptProtocol == nullptr)
            Fail("model " + std::to_string(o.nModel) + " (" + PTZModelEntry(o.nModel).sName +
                 ") has no decoder");
    }
    const bool bLineSetting = o.dwBaud != 0 || o.nParity >= 0 || o.nStopBits != 0;
    if (o.sLine.empty() && bLineSetting) Fail("--baud, --parity and --stop-bits go with --line");
    if (!o.sLine.empty()) {
        if (o.bFileGiven || o.bRaw) Fail("--line reads the device: no FILE and no --raw with it");
        if (o.dwBaud == 0 && o.nModel < 0)
            Fail("--line needs --baud (or --model for its line setting)");
    }
    return o;
}

// --- Output --------------------------------------------------------------------------------------

void PrintHeader(bool bWithProtocol) {
    std::printf("%8s  ", "offset");
    if (bWithProtocol) std::printf("%-16s  ", "protocol");
    std::printf("%-7s  %-40s  %-5s  %s\n", "address", "command", "check", "bytes");
}

void PrintPiece(const PtzPiece& p, bool bWithProtocol) {
    const std::string sBytes = HexBytes(p.abData.data(), p.abData.size());
    std::printf("%8llu  ", static_cast<unsigned long long>(p.nOffset));
    if (bWithProtocol) std::printf("%-16s  ", p.ptProtocol ? p.ptProtocol->sName : "-");
    switch (p.eKind) {
    case PtzPieceKind::Frame: {
        const char* sCheck = !p.ptProtocol->bChecked ? "none" : p.tText.bBadCheck ? "BAD" : "good";
        std::printf("%-7u  %-40s  %-5s  %s\n", p.tText.nAddress, p.tText.sWords.c_str(), sCheck,
                    sBytes.c_str());
        break;
    }
    case PtzPieceKind::Noise:
        std::printf("%-7s  %-40s  %-5s  %s\n", "-", "(noise)", "-", sBytes.c_str());
        break;
    case PtzPieceKind::Cut:
        std::printf("%-7s  %-40s  %-5s  %s\n", "-", "(cut frame)", "-", sBytes.c_str());
        break;
    }
}

struct Printer {
    bool bWithProtocol;
    uint64_t nFrames = 0;
    void Print(const std::vector<PtzPiece>& pieces) {
        for (const PtzPiece& p : pieces) {
            PrintPiece(p, bWithProtocol);
            nFrames += p.eKind == PtzPieceKind::Frame;
        }
        std::fflush(stdout);
    }
};

void PrintRanking(const std::vector<PtzProtocolScore>& ranking, uint64_t nBytes) {
    if (ranking.empty()) {
        std::printf("No protocol reads these %llu bytes in frames with a good check.\n",
                    static_cast<unsigned long long>(nBytes));
        return;
    }
    std::printf("Protocols that read these %llu bytes, by the share in frames with a good check:\n",
                static_cast<unsigned long long>(nBytes));
    for (size_t i = 0; i < ranking.size(); ++i) {
        const PtzProtocolScore& s = ranking[i];
        // Protocols that read the bytes equally well share a rank: their frames look alike.
        size_t nRank = 1;
        while (nRank <= i && ranking[nRank - 1].dScore > s.dScore) ++nRank;
        std::printf("  %2zu  %-18s %5.1f %%  %llu frame%s, %llu with a bad check%s  %s\n", nRank,
                    s.ptProtocol->sName, 100.0 * s.dShare,
                    static_cast<unsigned long long>(s.nFrames), s.nFrames == 1 ? "" : "s",
                    static_cast<unsigned long long>(s.nBadFrames),
                    s.ptProtocol->bChecked ? "" : " (no check byte: counts half)",
                    ModelsOf(s.ptProtocol).c_str());
    }
}

std::vector<const PtzProtocol*> AllProtocols() {
    std::vector<const PtzProtocol*> out;
    for (const PtzProtocol& p : PtzProtocols()) out.push_back(&p);
    return out;
}

// --- Files ---------------------------------------------------------------------------------------

std::vector<uint8_t> ReadInput(const Options& o) {
    const bool bStdin = o.sFile == "-";
    FILE* f = bStdin ? stdin : std::fopen(o.sFile.c_str(), "rb");
    if (f == nullptr) Fail("cannot read \"" + o.sFile + "\": " + std::strerror(errno));
    std::vector<uint8_t> ab;
    uint8_t buf[65536];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) ab.insert(ab.end(), buf, buf + n);
    const bool bError = std::ferror(f) != 0;
    const int nErrno = errno;
    if (!bStdin) std::fclose(f);
    if (bError) Fail("cannot read \"" + o.sFile + "\": " + std::strerror(nErrno));
    if (o.bRaw) return ab;
    std::vector<uint8_t> out;
    std::string sError;
    if (!ParseHexText(std::string(ab.begin(), ab.end()), &out, &sError))
        Fail(sError + " of " + (bStdin ? std::string("standard input") : "\"" + o.sFile + "\""));
    return out;
}

int DecodeFile(const Options& o) {
    const std::vector<uint8_t> ab = ReadInput(o);
    const PtzProtocol* ptProtocol = o.ptProtocol;
    std::vector<const PtzProtocol*> atProtocols = {ptProtocol};
    if (ptProtocol == nullptr) {
        const std::vector<PtzProtocolScore> ranking = RankPtzProtocols(ab.data(), ab.size());
        PrintRanking(ranking, ab.size());
        if (ranking.empty()) {
            std::printf("Decoding with every protocol.\n\n");
            atProtocols = AllProtocols();
        } else {
            ptProtocol = ranking[0].ptProtocol;
            atProtocols = {ptProtocol};
            std::string sAlike;
            for (size_t i = 1; i < ranking.size() && ranking[i].dScore == ranking[0].dScore; ++i)
                sAlike += (sAlike.empty() ? " (" : ", ") + std::string(ranking[i].ptProtocol->sName);
            if (!sAlike.empty()) sAlike += " read them as well)";
            std::printf("Decoding as %s%s.\n\n", ptProtocol->sName, sAlike.c_str());
        }
    }
    Printer out{atProtocols.size() > 1};
    PrintHeader(out.bWithProtocol);
    PtzSplitter splitter(atProtocols);
    std::vector<PtzPiece> pieces;
    splitter.Feed(ab.data(), ab.size(), &pieces);
    splitter.Flush(&pieces);
    out.Print(pieces);
    return out.nFrames > 0 ? 0 : 1;
}

// --- A live line ---------------------------------------------------------------------------------

volatile sig_atomic_t g_bStop = 0;

void OnSignal(int) { g_bStop = 1; }

int OpenLine(const Options& o, uint32_t* pdwFlags) {
    const int fd = open(o.sLine.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK);
    if (fd < 0) Fail("cannot open \"" + o.sLine + "\": " + std::strerror(errno));
    struct termios t;
    if (tcgetattr(fd, &t) != 0) Fail("\"" + o.sLine + "\" is not a serial line");
    // The model's setting, with what was given on the command line in its place.
    const uint32_t dwModel =
        o.nModel >= 0 ? PTZModelEntry(static_cast<uint32_t>(o.nModel)).dwLineFlags : 0;
    const uint32_t dwBaud = o.dwBaud != 0 ? o.dwBaud : (dwModel & CBAUD);
    const uint32_t dwParity =
        o.nParity >= 0 ? static_cast<uint32_t>(o.nParity) : (dwModel & PARENB);
    const uint32_t dwStop = o.nStopBits != 0 ? (o.nStopBits == 2 ? CSTOPB : 0) : (dwModel & CSTOPB);
    cfmakeraw(&t);
    t.c_cflag = dwBaud | dwParity | dwStop | CS8 | CREAD | CLOCAL;
    cfsetispeed(&t, dwBaud);
    cfsetospeed(&t, dwBaud);
    t.c_cc[VMIN] = 0;
    t.c_cc[VTIME] = 0;
    if (tcsetattr(fd, TCSANOW, &t) != 0)
        Fail("cannot set \"" + o.sLine + "\" to " + DescribeLine(t.c_cflag) + ": " +
             std::strerror(errno));
    *pdwFlags = static_cast<uint32_t>(t.c_cflag);
    return fd;
}

int DecodeLine(const Options& o) {
    uint32_t dwFlags = 0;
    const int fd = OpenLine(o, &dwFlags);
    struct sigaction sa = {};
    sa.sa_handler = OnSignal;   // no SA_RESTART: the wait ends at once
    sigaction(SIGINT, &sa, nullptr);
    sigaction(SIGTERM, &sa, nullptr);

    const bool bGuess = o.ptProtocol == nullptr;
    const std::string sWith = bGuess ? "every protocol" : o.ptProtocol->sName;
    std::printf("Reading %s at %s with %s; interrupt to end.\n\n", o.sLine.c_str(),
                DescribeLine(dwFlags).c_str(), sWith.c_str());
    Printer out{bGuess};
    PrintHeader(out.bWithProtocol);
    PtzSplitter splitter(bGuess ? AllProtocols() : std::vector<const PtzProtocol*>{o.ptProtocol});
    PtzGuesser guesser;
    uint64_t nBytes = 0;
    double tLast = MonotonicSeconds();
    std::vector<PtzPiece> pieces;
    while (!g_bStop) {
        struct pollfd p = {fd, POLLIN, 0};
        const int nReady = poll(&p, 1, 50);
        if (nReady > 0) {
            uint8_t buf[512];
            const ssize_t n = read(fd, buf, sizeof buf);
            if (n < 0 && (errno == EAGAIN || errno == EINTR)) continue;
            if (n <= 0) break;   // the line is gone
            nBytes += static_cast<uint64_t>(n);
            splitter.Feed(buf, static_cast<size_t>(n), &pieces);
            if (bGuess) guesser.Feed(buf, static_cast<size_t>(n));
            tLast = MonotonicSeconds();
        } else if (splitter.Pending() > 0 && MonotonicSeconds() - tLast > kQuietSeconds) {
            splitter.Flush(&pieces);
        }
        out.Print(pieces);
        pieces.clear();
    }
    close(fd);
    splitter.Flush(&pieces);
    out.Print(pieces);
    if (bGuess) {
        guesser.Flush();
        std::printf("\n");
        PrintRanking(guesser.Ranking(), nBytes);
    }
    return out.nFrames > 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const Options o = Parse(argc, argv);
    const int nStatus = o.sLine.empty() ? DecodeFile(o) : DecodeLine(o);
    std::fflush(stdout);
    return nStatus;
}
