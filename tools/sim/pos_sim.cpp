#include "tools/sim/pos_sim.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

#include "tools/sim/sandbox_guard.h"
#include "tools/sim/serial_line.h"

namespace {
constexpr char kFifo[] = "/tmp/pos_fifo";
constexpr char kPosDir[] = "/mnt/pos";
constexpr char kInetdLog[] = "/tmp/add_inetd.log";   // written by the sandbox's stand-in script
constexpr size_t kRecordSize = 128;

std::string ReadAll(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    std::stringstream ss;
    ss << f.rdbuf();
    return ss.str();
}

// The daily record files, in name order.
std::vector<std::string> PosFileNames() {
    std::vector<std::string> files;
    if (DIR* d = opendir(kPosDir)) {
        while (const dirent* e = readdir(d)) {
            const std::string name = e->d_name;
            if (name.size() > 4 && name.compare(name.size() - 4, 4, ".pos") == 0) files.push_back(name);
        }
        closedir(d);
    }
    std::sort(files.begin(), files.end());
    return files;
}

uint32_t LittleU32(const uint8_t* p) {
    return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 | static_cast<uint32_t>(p[2]) << 16 |
           static_cast<uint32_t>(p[3]) << 24;
}

uint8_t ByteSum(const std::string& s) {
    uint8_t y = 0;
    for (const char c : s) y = static_cast<uint8_t>(y + static_cast<uint8_t>(c));
    return y;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// "seconds.hh" as local time of day with the hundredths; anything else as it is.
std::string LocalTimeOfDay(const std::string& s) {
    char* pEnd = nullptr;
    const unsigned long n = std::strtoul(s.c_str(), &pEnd, 10);
    if (pEnd == s.c_str()) return s;
    const time_t t = static_cast<time_t>(n);
    struct tm tLocal{};
    if (!localtime_r(&t, &tLocal)) return s;
    char buf[32];
    std::strftime(buf, sizeof buf, "%H:%M:%S", &tLocal);
    return buf + std::string(pEnd);
}

std::string Pad(const std::string& s, size_t nWidth, uint32_t nAlign) {
    const size_t nFill = nWidth > s.size() ? nWidth - s.size() : 0;
    const size_t nLeft = nAlign == 3 ? nFill : nAlign == 2 ? nFill / 2 : 0;
    return std::string(nLeft, ' ') + s + std::string(nFill - nLeft, ' ');
}
}  // namespace

PosFifoWriter::~PosFifoWriter() {
    if (m_fd >= 0) close(m_fd);
}

bool PosFifoWriter::Open(int timeout_ms) {
    RequireSandbox("pos fifo");
    const double tEnd = MonotonicSeconds() + timeout_ms / 1000.0;
    // A non-blocking open for writing fails until the process holds the reading end.
    while (m_fd < 0) {
        m_fd = open(kFifo, O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        if (m_fd >= 0 || MonotonicSeconds() > tEnd) break;
        usleep(5000);
    }
    return m_fd >= 0;
}

bool PosFifoWriter::Write(const std::string& text) {
    return m_fd >= 0 && write(m_fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

void PosClearRecords() {
    RequireSandbox("pos records");
    for (const std::string& f : PosFileNames()) unlink((std::string(kPosDir) + "/" + f).c_str());
    unlink(kInetdLog);
}

std::string PosDayFile(time_t t) {
    struct tm tLocal{};
    localtime_r(&t, &tLocal);
    char s[64];
    std::snprintf(s, sizeof s, "%s/%04d%02d%02d.pos", kPosDir, tLocal.tm_year + 1900, tLocal.tm_mon + 1,
                  tLocal.tm_mday);
    return s;
}

std::vector<std::string> PosRecords(const std::string& path) {
    const std::string s = ReadAll(path);
    std::vector<std::string> out;
    for (size_t i = 0; i + kRecordSize <= s.size(); i += kRecordSize) {
        out.emplace_back(s.data() + i, strnlen(s.data() + i, kRecordSize));
    }
    return out;
}

std::vector<std::string> WaitPosRecords(size_t count, int timeout_ms) {
    const double tEnd = MonotonicSeconds() + timeout_ms / 1000.0;
    std::vector<std::string> out;
    for (;;) {
        out.clear();
        for (const std::string& f : PosFileNames()) {
            for (std::string& r : PosRecords(std::string(kPosDir) + "/" + f)) out.push_back(std::move(r));
        }
        if (out.size() >= count || MonotonicSeconds() > tEnd) return out;
        usleep(10000);
    }
}

std::vector<std::string> InetdRegistrations() {
    std::vector<std::string> out;
    std::istringstream in(ReadAll(kInetdLog));
    for (std::string line; std::getline(in, line);) out.push_back(line);
    return out;
}

uint32_t PosRecordSeconds(const std::string& record) {
    const size_t nBar = record.find('|');
    if (nBar == std::string::npos) return 0;
    return static_cast<uint32_t>(std::strtoul(record.c_str() + nBar + 1, nullptr, 10));
}

size_t PosRecordCount() {
    size_t n = 0;
    for (const std::string& f : PosFileNames()) {
        struct stat st;
        if (stat((std::string(kPosDir) + "/" + f).c_str(), &st) == 0) n += static_cast<size_t>(st.st_size) / kRecordSize;
    }
    return n;
}

std::string PosUnescape(const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const char e = i + 1 < text.size() ? text[i + 1] : '\0';
        if (c != '\\' || e == '\0') {
            out += c;
            continue;
        }
        ++i;
        switch (e) {
        case 'n': out += '\n'; break;
        case 'r': out += '\r'; break;
        case 't': out += '\t'; break;
        case 'e': out += '\x1b'; break;
        case '\\': out += '\\'; break;
        case 'x': {
            int nValue = -1, nDigits = 0;
            while (nDigits < 2 && i + 1 < text.size() && HexDigit(text[i + 1]) >= 0) {
                nValue = (nValue < 0 ? 0 : nValue * 16) + HexDigit(text[++i]);
                ++nDigits;
            }
            if (nValue >= 0) out += static_cast<char>(nValue);
            else out += "\\x";
            break;
        }
        default: out += '\\'; out += e; break;
        }
    }
    return out;
}

std::string PosEscape(const std::string& bytes) {
    std::string out;
    for (const char c : bytes) {
        const auto y = static_cast<uint8_t>(c);
        if (c == '\\') out += "\\\\";
        else if (c == '\n') out += "\\n";
        else if (c == '\r') out += "\\r";
        else if (c == '\t') out += "\\t";
        else if (c == '\x1b') out += "\\e";
        else if (y >= 0x20 && y < 0x7F) out += c;
        else {
            char s[8];
            std::snprintf(s, sizeof s, "\\x%02X", y);
            out += s;
        }
    }
    return out;
}

std::string AperPacket(uint8_t yFirst, uint8_t ySecond, uint16_t wThird, const std::string& text, AperFault fault) {
    // Data block: two bytes the receiver does not use, the third and the second number, the text;
    // its length must fit the 16-bit length field.
    std::string sBlock = {'\0', '\0', static_cast<char>(wThird >> 8), static_cast<char>(wThird & 0xFF),
                          static_cast<char>(ySecond)};
    sBlock += text.substr(0, 0xFFFF - sBlock.size());
    std::string p("\x00\x43\x47\x86", 4);
    p += static_cast<char>(yFirst);
    p += static_cast<char>(sBlock.size() >> 8);
    p += static_cast<char>(sBlock.size() & 0xFF);
    p += sBlock;
    p += static_cast<char>(ByteSum(sBlock) + (fault == AperFault::kDataSum ? 1 : 0));
    p += static_cast<char>(ByteSum(p) + (fault == AperFault::kTransportSum ? 1 : 0));
    p += fault == AperFault::kEndMarker ? '\xFE' : '\xFF';
    return p;
}

std::vector<std::string> AtmJournal(time_t t, const std::string& account, const std::vector<AtmNotes>& notes) {
    // Each line carries the ATM's clock; the steps of a withdrawal are a few seconds apart.
    auto Line = [t](int nOffset, const std::string& text) {
        const time_t tLine = t + nOffset;
        struct tm tLocal{};
        localtime_r(&tLine, &tLocal);
        char s[32];
        std::strftime(s, sizeof s, "%Y/%m/%d %H:%M:%S ", &tLocal);
        return s + text + "\n";
    };
    std::vector<std::string> lines = {Line(0, "Transaction start")};
    if (!account.empty()) lines.push_back(Line(3, "REQ|CWD|0001|TWD|" + account + "|00|"));
    if (!notes.empty()) {
        std::string s = "Money presented";
        for (const AtmNotes& n : notes) s += " NTD" + std::to_string(n.nDenomination) + "x" + std::to_string(n.nCount);
        lines.push_back(Line(9, s));
    }
    lines.push_back(Line(12, "Transaction end"));
    return lines;
}

std::vector<PosColumn> PosLayoutColumns(const uint8_t* pyLayout) {
    constexpr size_t kEntries = 8, kEntrySize = 56, kLabelSize = 32;
    const size_t nCount = std::min<size_t>(LittleU32(pyLayout), kEntries);
    std::vector<PosColumn> out;
    for (size_t i = 0; i < nCount; ++i) {
        const uint8_t* e = pyLayout + 4 + kEntrySize * i;
        const char* psLabel = reinterpret_cast<const char*>(e);
        out.push_back({std::string(psLabel, strnlen(psLabel, kLabelSize)), LittleU32(e + 36), LittleU32(e + 40)});
    }
    return out;
}

std::string PosRecordTable(const std::vector<PosColumn>& columns, const std::vector<std::string>& records) {
    std::string out;
    if (columns.empty()) {
        for (const std::string& r : records) out += r.substr(0, r.find('\n')) + "\n";
        return out;
    }
    std::vector<std::vector<std::string>> rows(1, {"TAG"});
    std::vector<uint32_t> aligns = {1};
    for (const PosColumn& c : columns) {
        rows[0].push_back(c.sLabel);
        aligns.push_back(c.nAlign);
    }
    bool bExtra = false;
    for (const std::string& r : records) {
        std::vector<std::string> fields;
        std::istringstream in(r.substr(0, r.find('\n')));
        for (std::string f; std::getline(in, f, '|');) fields.push_back(f);
        if (!fields.empty() && fields.back() == "#") fields.pop_back();
        std::vector<std::string> row(columns.size() + 2);
        for (size_t i = 0; i < fields.size() && i <= columns.size(); ++i)
            row[i] = i > 0 && columns[i - 1].nClass == 3 ? LocalTimeOfDay(fields[i]) : fields[i];
        for (size_t i = columns.size() + 1; i < fields.size(); ++i) {
            row.back() += (i > columns.size() + 1 ? "|" : "") + fields[i];
            bExtra = true;
        }
        rows.push_back(std::move(row));
    }
    if (bExtra) rows[0].push_back("+");
    aligns.push_back(1);
    const size_t nColumns = rows[0].size();
    std::vector<size_t> widths(nColumns, 0);
    for (auto& row : rows) {
        row.resize(nColumns);
        for (size_t i = 0; i < nColumns; ++i) widths[i] = std::max(widths[i], row[i].size());
    }
    for (const auto& row : rows) {
        std::string line;
        for (size_t i = 0; i < nColumns; ++i) line += (i ? "  " : "") + Pad(row[i], widths[i], aligns[i]);
        line.erase(line.find_last_not_of(' ') + 1);
        out += line + "\n";
    }
    return out;
}
