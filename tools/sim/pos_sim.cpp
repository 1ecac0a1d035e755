#include "tools/sim/pos_sim.h"

#include <dirent.h>
#include <fcntl.h>
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
