// APER Chomguard packets: reassembly across reads, checks, and the debug lines on standard error.
#include <cstdio>
#include <string>
#include <vector>

#include "tests/unit/pos/pos_test_util.h"

namespace {
// A packet around a data block (the L bytes from offset 7), with correct checksums.
std::string RawPacket(uint8_t b4, const std::string& sBlock) {
    std::string s = std::string("\x00\x43\x47\x86", 4) + static_cast<char>(b4) +
                    static_cast<char>(sBlock.size() >> 8) + static_cast<char>(sBlock.size()) + sBlock;
    uint8_t yData = 0, yTransport = 0;
    for (unsigned char c : sBlock) yData = static_cast<uint8_t>(yData + c);
    s += static_cast<char>(yData);
    for (unsigned char c : s) yTransport = static_cast<uint8_t>(yTransport + c);
    return s + static_cast<char>(yTransport) + '\xFF';
}
std::string Packet(uint8_t b4, uint8_t b11, uint16_t w9, const std::string& sText) {
    return RawPacket(b4, std::string{'\x5A', '\x3C', static_cast<char>(w9 >> 8), static_cast<char>(w9), static_cast<char>(b11)} + sText);
}
std::string Hex2(int v) {
    char s[8];
    std::snprintf(s, sizeof s, "%02x", v & 0xFF);
    return s;
}

const std::string kDoor = Packet(3, 7, 42, "door open");
std::string Door() { return "APER|" + postest::Stamp() + "|3|7|00042|DOOR OPEN|#\n"; }
std::string Echo(const std::string& sRecord) { return "POSDBG : " + sRecord; }
const std::string kMore = "POSDBG : Need more data in buffer\n";
std::string Fail(const std::string& s4) { return "POSDBG : STX & APER group number detection fail (" + s4 + ")\n"; }

struct Read {
    std::string sBytes;
    std::string sRecord;   // "" = none
    std::string sDebug;
};

class Aper : public testing::Test {
protected:
    // The buffer lives for the whole process: noise and one packet leave it empty.
    void SetUp() override {
        postest::SetClock(postest::kT0);
        postest::Stderr([] {
            postest::Record(ProcCmd_APER_Chomguard, std::string(256, '\x11'));
            postest::Record(ProcCmd_APER_Chomguard, kDoor);
        });
    }
    static void Run(const std::vector<Read>& reads) {
        for (const Read& r : reads) {
            std::string sRecord;
            const std::string sErr = postest::Stderr([&] { sRecord = postest::Record(ProcCmd_APER_Chomguard, r.sBytes); });
            EXPECT_EQ(sRecord, r.sRecord) << &r - reads.data();
            EXPECT_EQ(sErr, r.sDebug) << &r - reads.data();
        }
    }
};

TEST_F(Aper, Reassembly) {
    const std::string sWindow = Packet(255, 200, 65535, "Window");
    const std::string sWindowRecord = "APER|" + postest::Stamp() + "|255|200|65535|WINDOW|#\n";
    Run({// noise before a packet
         {"\x01\x02\x03" + kDoor, Door(), "POSDBG : delete first 3 data\n" + Echo(Door())},
         // two packets in one read (the second longer): one record per call
         {sWindow + kDoor, sWindowRecord, Echo(sWindowRecord)},
         {"", Door(), Echo(Door())},
         {"", "", Fail("00 00 00 00")},
         // a packet split over reads, the start pattern too
         {kDoor.substr(0, 2), "", Fail("00 43 00 00")},
         {kDoor.substr(2, 3), "", kMore},
         {kDoor.substr(5, 18), "", kMore},
         {kDoor.substr(23), Door(), Echo(Door())},
         // noise alone stays until a packet follows
         {"ABCD", "", Fail("41 42 43 44")},
         {kDoor, Door(), "POSDBG : delete first 4 data\n" + Echo(Door())}});
}

// A broken packet is dropped whole with the message of the first failing check; the packet
// after it is handled at once.
TEST_F(Aper, BrokenPacketsAreDropped) {
    const size_t nL = kDoor.size() - 10;
    const int yData = static_cast<uint8_t>(kDoor[7 + nL]), yTransport = static_cast<uint8_t>(kDoor[8 + nL]);
    struct Case { std::vector<std::pair<size_t, int>> aChanges; std::string sDebug; };
    const Case cases[] = {
        {{{9 + nL, 0xFE}, {7 + nL, 0}, {8 + nL, 0}}, "POSDBG : End of data(fe) is not 0xff\n"},
        {{{14, 'X'}, {8 + nL, 0}},
         "POSDBG : Data payload checksum mismatch (s=" + Hex2(yData) + " / d=" + Hex2(yData + 'X' - 'o') + ")\n"},
        {{{4, 9}},
         "POSDBG : Transport packet checksum mismatch (s=" + Hex2(yTransport) + " / d=" + Hex2(yTransport + 6) + ")\n"},
    };
    for (const Case& c : cases) {
        std::string sBad = kDoor;
        for (const auto& [nAt, y] : c.aChanges) sBad[nAt] = static_cast<char>(y);
        Run({{sBad + kDoor, "", c.sDebug}, {"", Door(), Echo(Door())}});
    }
}

TEST_F(Aper, TextLengthFollowsL) {
    const std::string sHead = "APER|" + postest::Stamp() + "|1|2|00003|";
    // A packet shorter than its fields (L = 0) reads zeros past its end, not an earlier packet.
    const std::string sShort = "APER|" + postest::Stamp() + "|6|0|65280||#\n";
    Run({{Packet(1, 2, 3, ""), sHead + "|#\n", Echo(sHead + "|#\n")},
         {Packet(1, 2, 3, std::string("ab\0cd", 5)), sHead + "AB|#\n", Echo(sHead + "AB|#\n")},
         {Packet(1, 2, 3, std::string(195, 'q')), sHead + std::string(126 - sHead.size(), 'Q'),
          Echo(sHead + std::string(126 - sHead.size(), 'Q'))},
         {RawPacket(6, ""), sShort, Echo(sShort)}});
}

// The buffer keeps at most 256 bytes: older bytes are pushed out, and the line recovers, also from
// a packet announced longer than the buffer.
TEST_F(Aper, OverfullBufferDropsItsOldestBytes) {
    const std::string sDelete = "POSDBG : delete first " + std::to_string(256 - kDoor.size()) + " data\n";
    Run({{std::string(300, '\x11'), "", Fail("11 11 11 11")},
         {kDoor, Door(), sDelete + Echo(Door())},
         {std::string("\x00\x43\x47\x86\x01\x03\xE8", 7) + std::string(200, '\x11'), "", kMore},
         {std::string(49, '\x11'), "", kMore},
         {std::string(1, '\x11'), "", Fail("43 47 86 01")},
         {kDoor, Door(), sDelete + Echo(Door())}});
}
}  // namespace
