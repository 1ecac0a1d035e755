// The record builders but Geniron: the line protocols (AVE VSI-Pro and Hydra, TVC 2066D, Atop,
// WSI Inspector, the general TCP/UDP protocol, the KTT CDMA entry), the Friendly Info ATM journal
// and the APER Chomguard packets.
#include <array>
#include <numeric>
#include <vector>

#include "tests/unit/pos/pos_test_util.h"

namespace {
struct LineCase { PosProcCmdFn fn; std::string sInput, sExpected; };   // "@": "seconds.hh"; "": no record

const LineCase kCases[] = {
    // AVE VSI-Pro: the point decides between ADD/ITEM/BILL/ERR1 and TIME/CLERK/ERR2
    {ProcCmd_AVE_VSIPro, "  TOTAL    12.50\n", "AVEVSI|@|BILL|TOTAL|12.50|#\n"},
    {ProcCmd_AVE_VSIPro, "DIET COLA  x2 2.40\nTEA 1.00\n", "AVEVSI|@|ITEM|DIET COLA  x2|2.40|#\n"},
    {ProcCmd_AVE_VSIPro, "  2 @ 1.50\n", "AVEVSI|@|ADD|  2 @ 1.50||#\n"},
    {ProcCmd_AVE_VSIPro, "TOTAL12.50\n", "AVEVSI|@|ERR1|TOTAL12.50||#\n"},
    {ProcCmd_AVE_VSIPro, "12:30 2024-02-29\n", "AVEVSI|@|TIME|12:30 2024-02-29||#\n"},
    {ProcCmd_AVE_VSIPro, "12:30 1.5-2\n", "AVEVSI|@|ITEM|12:30|1.5-2|#\n"},
    {ProcCmd_AVE_VSIPro, "N @ 7A\n", "AVEVSI|@|CLERK|N @ 7A||#\n"},
    {ProcCmd_AVE_VSIPro, "CASHIER 0\n", "AVEVSI|@|ERR2|CASHIER 0||#\n"},
    {ProcCmd_AVE_VSIPro, "COLA 1.20", ""},
    {ProcCmd_AVE_VSIPro, std::string(128, 'A') + "\n", ""},
    // AVE Hydra: an unsigned register byte, then the VSI-Pro rules on at most 127 characters
    {ProcCmd_AVE_Hydra, "\xC8" "COLA 1.20\n", "AVEHYD|@|200|ITEM|COLA|1.20|#\n"},
    {ProcCmd_AVE_Hydra, std::string(1, '\0') + "X\n", "AVEHYD|@|00|ERR2|X||#\n"},
    {ProcCmd_AVE_Hydra, '\x01' + std::string(127, 'B') + '\n', ""},
    // TVC 2066D: terminal number from field 0, fields 1-4 by tabs; missing fields recorded empty
    {ProcCmd_TVC_2066D, "12AB\tCOLA\t1.20\t3.60\tC1\n", "TVC|@|12|COLA|1.20|3.60|C1|#\n"},
    {ProcCmd_TVC_2066D, " 7\tA\tB\tC\tD\tE\n", "TVC|@|07|A|B|C|D\tE|#\n"},
    {ProcCmd_TVC_2066D, "A3\tA\tB\tC\tD", "TVC|@|03|A|B|C|D|#\n"},
    {ProcCmd_TVC_2066D, "9Z\tA\nB\tC\tD\tE\n", "TVC|@|90|A||||#\n"},
    // Atop: the first four colons; with fewer, the rest is empty
    {ProcCmd_AC_Atop, "1:DOOR OPEN:1234:10.0.0.5:extra\r\n", "AC_ATOP|@|1|DOOR OPEN|1234|10.0.0.5|#\n"},
    {ProcCmd_AC_Atop, "2:ALARM:77\r\n", "AC_ATOP|@|2|ALARM|77||#\n"},
    // WSI: fields 1 and 2 as numbers (blanks, sign; none gives 0; saturated)
    {ProcCmd_WSI_Inspector, "DEV1\t12\tabc\tOK\tX\n", "WSI|@|12|DEV1|0|OK\tX|#\n"},
    {ProcCmd_WSI_Inspector, "D\t  -5\t99999999999\tC", "WSI|@|-5|D|2147483647|C|#\n"},
    // General protocol: id with two digits at least, the first line of a read only
    {ProcCmd_MLV_TCP6001, "7|A|B|1|2\n8|C|D|3|4\n", "MGT|@|07|A|B|1|2|#\n"},
    {ProcCmd_MLV_UDP6002, "x|A\n8|C|D|3|4\n", "MGU|@|00|A||||#\n"},
    // KTT CDMA module: consumed, never a record
    {ProcCmd_KTT_CDMA, "CEEVT 1\r\n", ""},
};

// Hundredths are milliseconds / 10, truncated, with two digits.
TEST(LineBuilders, RecordEveryLineType) {
    postest::SetClock(postest::kT0, 95);
    for (LineCase c : kCases) {
        if (const size_t n = c.sExpected.find('@'); n != std::string::npos) c.sExpected.replace(n, 1, "1700000000.09");
        EXPECT_EQ(postest::Record(c.fn, c.sInput), c.sExpected) << testing::PrintToString(c.sInput);
    }
}

// The journal makes one record per withdrawal, stamped with its start; its values live for the
// whole process.
TEST(LineBuilders, FriInfoTransactions) {
    struct Line { uint32_t nAt; std::string sLine, sFields = ""; uint32_t nStartAt = 0; };   // "" = no record
    const std::string kStart = "Transaction start\n", kEnd = "Transaction end\n";
    const std::vector<Line> lines = {
        {0, "08:00 " + kStart}, {3, "REQ|CWD|01|02|1234567|99\n"}, {7, " Money presented NTD1000x3 NTD100x5\n"},
        // the transaction closes; the next repeats what it does not bring itself
        {12, kEnd, "DRAW|1234567|3500", 0}, {20, kStart}, {21, kEnd, "DRAW|1234567|3500", 20},
        // outside a transaction only a start counts; a line with a start and an end is a start
        {30, "REQ|CWD|a|b|999|\n"}, {30, " Money presented NTD9x9\n"}, {30, kEnd}, {31, "Transaction start Transaction end\n"},
        {32, kEnd, "DRAW|1234567|3500", 31},
        // a second start restarts the time; a REQ|CWD line that also ends is only REQ|CWD;
        // no fifth bar gives no account, fewer than four bars a message
        {40, kStart}, {41, kStart}, {41, "REQ|CWD|a|b|42| Transaction end\n"}, {42, kEnd, "DRAW|42|3500", 41},
        {43, kStart}, {44, "REQ|CWD|a|b|no fifth bar\n"}, {44, kEnd, "DRAW||3500", 43},
        // the amount: every NTD from the second character that reads as two numbers
        {45, kStart}, {46, "REQ|CWD|only three\n"}, {46, "NTD1000x2 Money presented\n"}, {46, kEnd, "DRAW||0", 45},
        {47, kStart}, {48, " Money presented NTDx3 NTD5x NTD5y3 NTD-5x2 NTD 7x 3 NTDNTD1x1\n"}, {48, kEnd, "DRAW||12", 47},
        // a line counts only with its newline, and only up to it
        {50, "Transaction start"}, {51, kEnd}, {52, kStart}, {54, kEnd + kStart, "DRAW||12", 52}, {55, kEnd}};
    const std::string sErr = postest::Stderr([&] {
        for (const Line& l : lines) {
            postest::SetClock(postest::kT0 + l.nAt, 250);
            const std::string sExpected =
                l.sFields.empty() ? "" : "ATM-FI|" + std::to_string(postest::kT0 + l.nStartAt) + ".25|" + l.sFields + "|#\n";
            EXPECT_EQ(postest::Record(ProcCmd_ATM_FriInfo, l.sLine), sExpected) << l.nAt << l.sLine;
        }
    });
    EXPECT_EQ(sErr, "Err (ptz_cntl  /sm_ATM_FriInfo:110) fail to get account\n");
}

// APER Chomguard packets: reassembly across reads, checks, and the debug lines on standard error.
// A packet around a data block (the L bytes from offset 7), with correct checksums.
std::string RawPacket(uint8_t b4, const std::string& sBlock) {
    std::string s = std::string("\x00\x43\x47\x86", 4) + static_cast<char>(b4) +
                    static_cast<char>(sBlock.size() >> 8) + static_cast<char>(sBlock.size()) + sBlock;
    s += static_cast<char>(std::accumulate(sBlock.begin(), sBlock.end(), 0));
    s += static_cast<char>(std::accumulate(s.begin(), s.end(), 0));
    return s + '\xFF';
}
std::string Packet(uint8_t b4, uint8_t b11, uint16_t w9, const std::string& sText) {
    return RawPacket(b4, std::string{'\x5A', '\x3C', static_cast<char>(w9 >> 8), static_cast<char>(w9), static_cast<char>(b11)} + sText);
}
std::string Dbg(const std::string& s) { return "POSDBG : " + s; }
std::string Fail(const std::string& s4) { return Dbg("STX & APER group number detection fail (" + s4 + ")\n"); }
std::string Rec(const std::string& sFields) { return "APER|" + postest::Stamp() + "|" + sFields + "|#\n"; }
std::string Hex(int v) { return {"0123456789abcdef"[(v >> 4) & 15], "0123456789abcdef"[v & 15]}; }
std::string Sums(const char* w, int s, int d) { return Dbg(w + (" checksum mismatch (s=" + Hex(s) + " / d=" + Hex(d) + ")\n")); }

// One read per row: its bytes, the record expected ("" none) and the standard error expected.
// The buffer lives for the whole process: noise that overfills it (the oldest bytes are dropped)
// and one packet empty it first.
TEST(Aper, Reassembly) {
    postest::SetClock(postest::kT0);
    const std::string kDoor = Packet(3, 7, 42, "door open"), sDoor = Rec("3|7|00042|DOOR OPEN"), kMore = Dbg("Need more data in buffer\n");
    const size_t nL = kDoor.size() - 10;
    const int yData = static_cast<uint8_t>(kDoor[7 + nL]), yTransport = static_cast<uint8_t>(kDoor[8 + nL]);
    auto Broken = [&](std::vector<std::pair<size_t, int>> aChanges) {
        std::string s = kDoor;
        for (const auto& [nAt, y] : aChanges) s[nAt] = static_cast<char>(y);
        return s;
    };
    const std::string sWindow = Rec("255|200|65535|WINDOW"), sLong = Rec("1|2|00003|" + std::string(104, 'Q')).substr(0, 126);
    const std::vector<std::array<std::string, 3>> reads = {
        {std::string(256, '\x11'), "", Fail("11 11 11 11")},
        {kDoor, sDoor, Dbg("delete first " + std::to_string(256 - kDoor.size()) + " data\n") + Dbg(sDoor)},
        // noise before a packet
        {"\x01\x02\x03" + kDoor, sDoor, Dbg("delete first 3 data\n") + Dbg(sDoor)},
        // two packets in one read (the second longer): one record per call
        {Packet(255, 200, 65535, "Window") + kDoor, sWindow, Dbg(sWindow)},
        {"", sDoor, Dbg(sDoor)},
        {"", "", Fail("00 00 00 00")},
        // a packet split over reads, the start pattern too
        {kDoor.substr(0, 2), "", Fail("00 43 00 00")},
        {kDoor.substr(2, 3), "", kMore},
        {kDoor.substr(5, 18), "", kMore},
        {kDoor.substr(23), sDoor, Dbg(sDoor)},
        // the text stops at a NUL and at the record limit; L = 0 reads zeros past the packet
        {Packet(1, 2, 3, std::string("ab\0cd", 5)), Rec("1|2|00003|AB"), Dbg(Rec("1|2|00003|AB"))},
        {Packet(1, 2, 3, std::string(195, 'q')), sLong, Dbg(sLong)},
        {RawPacket(6, ""), Rec("6|0|65280|"), Dbg(Rec("6|0|65280|"))},
        // a broken packet is dropped whole with the message of the first failing check
        {Broken({{9 + nL, 0xFE}, {7 + nL, 0}, {8 + nL, 0}}), "", Dbg("End of data(fe) is not 0xff\n")},
        {Broken({{14, 'X'}, {8 + nL, 0}}), "", Sums("Data payload", yData, yData + 'X' - 'o')},
        {Broken({{4, 9}}), "", Sums("Transport packet", yTransport, yTransport + 6)},
        {kDoor, sDoor, Dbg(sDoor)}};
    for (size_t i = 0; i < reads.size(); ++i) {
        std::string sGot;
        EXPECT_EQ(postest::Stderr([&] { sGot = postest::Record(ProcCmd_APER_Chomguard, reads[i][0]); }), reads[i][2]) << i;
        EXPECT_EQ(sGot, reads[i][1]) << i;
    }
}
}  // namespace
