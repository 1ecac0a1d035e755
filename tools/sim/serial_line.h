// One serial line of the simulated recorder: a pseudo-terminal whose slave end is bound onto the
// device path the process opens (/dev/ttyS0, /dev/ttyS1, /dev/ttyS4); we hold the master end and
// see every byte the process writes, with the time it arrived.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

struct SerialChunk {
    double tSeconds;              // monotonic time of arrival
    std::vector<uint8_t> abData;
    std::string sSetting;         // line setting in force when it was read, e.g. "9600 8N1"
};

class SerialLine {
public:
    explicit SerialLine(const std::string& devicePath);   // sandbox only
    ~SerialLine();
    SerialLine(const SerialLine&) = delete;
    SerialLine& operator=(const SerialLine&) = delete;

    const std::string& Path() const { return m_sPath; }
    int MasterFd() const { return m_nMaster; }
    bool Ok() const { return m_nMaster >= 0; }

    // Reads whatever has arrived, waiting at most timeout_ms for the first byte.
    std::vector<SerialChunk> Read(int timeout_ms);
    // Sends bytes towards the process (as a keypad or a terminal on the line would).
    bool Write(const std::vector<uint8_t>& bytes);
    // The slave side's current line setting, read through the master.
    std::string Setting() const;
    uint32_t ControlFlags() const;

private:
    std::string m_sPath;
    int m_nMaster = -1;
    int m_nSlave = -1;   // held open so the line never hangs up between the process's opens
};

// A pseudo-terminal keeps no parity: the kernel clears PARENB whatever is asked. A program run with
// the UART shim preloaded (tests/support/uart_shim.cpp) keeps the parity it set, as on a UART, and
// records the control word it asked of each pseudo-terminal in this directory, by device number.
constexpr const char* kPtySettingDir = "/tmp/.uart-shim";
// The control word of the pseudo-terminal whose master is fdMaster, its parity as recorded by
// the shim where there is a record (0 when it cannot be read).
uint32_t PtyControlFlags(int fdMaster);
// Drops the record of a pseudo-terminal, for a fresh one whose number an earlier one had.
void PtyForgetSetting(int fdMaster);

double MonotonicSeconds();
std::string HexBytes(const uint8_t* bytes, size_t n);
// Describes a termios control word as "9600 8N1", "2400 8E1", "9600 8N2".
std::string DescribeLine(uint32_t cflag);
