#include "tools/sim/serial_line.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>

#include "tools/sim/sandbox_guard.h"

double MonotonicSeconds() {
    struct timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) / 1e9;
}

std::string HexBytes(const uint8_t* bytes, size_t n) {
    std::string s;
    char buf[4];
    for (size_t i = 0; i < n; ++i) {
        std::snprintf(buf, sizeof buf, i ? " %02X" : "%02X", bytes[i]);
        s += buf;
    }
    return s;
}

std::string DescribeLine(uint32_t cflag) {
    const char* sBaud = "?";
    switch (cflag & CBAUD) {
    case B1200: sBaud = "1200"; break;
    case B2400: sBaud = "2400"; break;
    case B4800: sBaud = "4800"; break;
    case B9600: sBaud = "9600"; break;
    case B19200: sBaud = "19200"; break;
    case B38400: sBaud = "38400"; break;
    case B57600: sBaud = "57600"; break;
    case B115200: sBaud = "115200"; break;
    case B0: sBaud = "0"; break;
    }
    int nBits = 8;
    switch (cflag & CSIZE) {
    case CS5: nBits = 5; break;
    case CS6: nBits = 6; break;
    case CS7: nBits = 7; break;
    default: break;
    }
    const char cParity = (cflag & PARENB) ? ((cflag & PARODD) ? 'O' : 'E') : 'N';
    char buf[32];
    std::snprintf(buf, sizeof buf, "%s %d%c%d", sBaud, nBits, cParity, (cflag & CSTOPB) ? 2 : 1);
    return buf;
}

SerialLine::SerialLine(const std::string& devicePath) : m_sPath(devicePath) {
    RequireSandbox("serial line");
    m_nMaster = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (m_nMaster < 0) return;
    grantpt(m_nMaster);
    unlockpt(m_nMaster);
    const char* sSlave = ptsname(m_nMaster);
    m_nSlave = sSlave ? open(sSlave, O_RDWR | O_NOCTTY) : -1;
    struct termios t;
    if (m_nSlave >= 0 && tcgetattr(m_nSlave, &t) == 0) {
        // A UART has no echo and no output processing until the process sets the line up.
        cfmakeraw(&t);
        tcsetattr(m_nSlave, TCSANOW, &t);
    }
    PtyForgetSetting(m_nMaster);
    umount2(devicePath.c_str(), MNT_DETACH);   // an earlier line on the same path, if any
    if (!sSlave || mount(sSlave, devicePath.c_str(), nullptr, MS_BIND, nullptr) != 0) {
        std::perror(("bind " + devicePath).c_str());
        close(m_nMaster);
        m_nMaster = -1;
    }
}

SerialLine::~SerialLine() {
    umount2(m_sPath.c_str(), MNT_DETACH);
    if (m_nSlave >= 0) close(m_nSlave);
    if (m_nMaster >= 0) close(m_nMaster);
}

std::vector<SerialChunk> SerialLine::Read(int timeout_ms) {
    std::vector<SerialChunk> out;
    if (m_nMaster < 0) return out;
    struct pollfd p = {m_nMaster, POLLIN, 0};
    if (poll(&p, 1, timeout_ms) <= 0) return out;
    for (;;) {
        uint8_t buf[512];
        const ssize_t n = read(m_nMaster, buf, sizeof buf);
        if (n <= 0) break;
        out.push_back({MonotonicSeconds(), std::vector<uint8_t>(buf, buf + n), Setting()});
    }
    return out;
}

bool SerialLine::Write(const std::vector<uint8_t>& bytes) {
    if (m_nMaster < 0) return false;
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = write(m_nMaster, bytes.data() + done, bytes.size() - done);
        if (n < 0) {
            struct pollfd p = {m_nMaster, POLLOUT, 0};
            if (poll(&p, 1, 100) <= 0) return false;
            continue;
        }
        done += static_cast<size_t>(n);
    }
    return true;
}

namespace {

// The shim's record of the pseudo-terminal whose master is fdMaster.
std::string PtyRecordPath(int fdMaster) {
    char sSlave[64];
    struct stat st;
    if (ptsname_r(fdMaster, sSlave, sizeof sSlave) != 0 || stat(sSlave, &st) != 0) return "";
    char sPath[128];
    std::snprintf(sPath, sizeof sPath, "%s/%lx", kPtySettingDir,
                  static_cast<unsigned long>(st.st_rdev));
    return sPath;
}

}  // namespace

uint32_t PtyControlFlags(int fdMaster) {
    struct termios t;
    if (fdMaster < 0 || tcgetattr(fdMaster, &t) != 0) return 0;
    uint32_t dwFlags = static_cast<uint32_t>(t.c_cflag);
    const std::string sPath = PtyRecordPath(fdMaster);
    FILE* f = sPath.empty() ? nullptr : std::fopen(sPath.c_str(), "r");
    unsigned long dwAsked = 0;
    if (f != nullptr && std::fscanf(f, "%lx", &dwAsked) == 1)
        dwFlags = (dwFlags & ~static_cast<uint32_t>(PARENB | PARODD)) |
                  (static_cast<uint32_t>(dwAsked) & (PARENB | PARODD));
    if (f != nullptr) std::fclose(f);
    return dwFlags;
}

void PtyForgetSetting(int fdMaster) {
    const std::string sPath = PtyRecordPath(fdMaster);
    if (!sPath.empty()) unlink(sPath.c_str());
}

uint32_t SerialLine::ControlFlags() const { return PtyControlFlags(m_nMaster); }

std::string SerialLine::Setting() const { return DescribeLine(ControlFlags()); }
