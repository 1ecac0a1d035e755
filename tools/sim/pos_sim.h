// The text-insertion side of the simulated recorder: the FIFO that the network services feed, the
// service registrations made through the platform script, and the daily record files.
// Sandbox only (the paths are the real recorder's).
#pragma once
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

// The writing end of /tmp/pos_fifo, as the internet super-server's tee holds it.
class PosFifoWriter {
public:
    PosFifoWriter() = default;
    ~PosFifoWriter();
    PosFifoWriter(const PosFifoWriter&) = delete;
    PosFifoWriter& operator=(const PosFifoWriter&) = delete;

    // Opens the FIFO once a reader has it open, waiting at most timeout_ms.
    bool Open(int timeout_ms);
    // Writes the text in one piece (a client's packet or line).
    bool Write(const std::string& text);

private:
    int m_fd = -1;
};

// Removes the daily record files and the registration log, for a test that starts afresh.
void PosClearRecords();
// Path of the daily record file for a time, by local date.
std::string PosDayFile(time_t t);
// Record texts of a daily file, one per 128-byte slot (empty when the file is missing).
std::vector<std::string> PosRecords(const std::string& path);
// Record texts of every daily file under /mnt/pos in name order, waiting up to timeout_ms until
// there are at least count of them.
std::vector<std::string> WaitPosRecords(size_t count, int timeout_ms);
// Arguments of each call of the stand-in registration script (one string per call).
std::vector<std::string> InetdRegistrations();
// Seconds of a record's time ("TAG|seconds.hh|..."), 0 when it has none.
uint32_t PosRecordSeconds(const std::string& record);
