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
// Number of records in all daily files together (their sizes in 128-byte slots).
size_t PosRecordCount();

// Text typed in a command, as bytes: \n \r \t \e (ESC) \\ and \xH or \xHH stand for their
// bytes; a backslash before anything else stands for itself.
std::string PosUnescape(const std::string& text);
// The reverse, for display: printable ASCII as it is, the rest as escapes.
std::string PosEscape(const std::string& bytes);

// What an APER Chomguard packet may carry wrong on purpose.
enum class AperFault { kNone, kDataSum, kTransportSum, kEndMarker };
// A whole APER Chomguard packet: start pattern, the three numbers of the record (byte 4, byte 11,
// 16 bits at 9), length, data block with the text, both checksums and the end marker.
std::string AperPacket(uint8_t yFirst, uint8_t ySecond, uint16_t wThird, const std::string& text,
                       AperFault fault = AperFault::kNone);

// One bundle of bank notes paid out by an ATM.
struct AtmNotes {
    int nDenomination;
    int nCount;
};
// The journal lines (each ending in a newline) of one Friendly Info ATM withdrawal starting at
// time t: start, the card request with the account (left out when the account is empty), the
// notes presented (left out when there are none, as for an inquiry), end.
std::vector<std::string> AtmJournal(time_t t, const std::string& account, const std::vector<AtmNotes>& notes);

// One column of a display-and-record layout, as the shared block holds it.
struct PosColumn {
    std::string sLabel;
    uint32_t nClass;   // 1 code or number, 2 short text, 3 time, 4 text, 5 amount
    uint32_t nAlign;   // 1 left, 2 centred, 3 right
};
// Reads a 452-byte layout byte by byte (little-endian); at most 8 columns.
std::vector<PosColumn> PosLayoutColumns(const uint8_t* pyLayout);
// Renders records as a table: a header, then one row per record with its model tag and its
// fields under the layout's labels and alignments, times in local time; fields beyond the layout
// are joined in a last column "+". Without columns the records are listed as they are.
std::string PosRecordTable(const std::vector<PosColumn>& columns, const std::vector<std::string>& records);
