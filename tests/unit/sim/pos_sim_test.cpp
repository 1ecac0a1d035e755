// The simulator's text-insertion side: what it sends is accepted, or refused when broken on
// purpose, by the process's own record builders; typed escapes become bytes; records are shown
// under the layout the shared block holds.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "pos/pos_model.h"
#include "tools/sim/pos_sim.h"

// A builder call shaped like the polling read's: the bytes NUL-terminated, and their count.
// Returns the record with its time replaced by "T", or without one what went to standard error.
static std::string Feed(PosProcCmdFn fn, const std::string& bytes) {
    char sText[257] = {}, sRecord[128] = {};
    const size_t n = std::min<size_t>(bytes.size(), 256);
    std::memcpy(sText, bytes.data(), n);
    testing::internal::CaptureStderr();
    const bool bRecord = fn(sRecord, sText, static_cast<int>(n)) != 0;
    const std::string sErr = testing::internal::GetCapturedStderr();
    if (!bRecord) return sErr;
    const std::string s(sRecord, strnlen(sRecord, sizeof sRecord));
    const size_t nFrom = s.find('|') + 1;
    return s.substr(0, nFrom) + "T" + s.substr(s.find('|', nFrom));
}

// Checksums worked out by hand: data block 00 00 00 2A 07 "door open" sums to B7, the whole
// packet up to the data checksum to 8F. A good packet makes a record, a broken one the message.
TEST(PosSim, AperPacketsJudgedByTheBuilder) {
    const struct { AperFault fault; const char* sOut; } kCases[] = {
        {AperFault::kNone, "APER|T|3|7|00042|DOOR OPEN|#\n"},
        {AperFault::kDataSum, "POSDBG : Data payload checksum mismatch (s=b8 / d=b7)\n"},
        {AperFault::kTransportSum, "POSDBG : Transport packet checksum mismatch (s=90 / d=8f)\n"},
        {AperFault::kEndMarker, "POSDBG : End of data(fe) is not 0xff\n"},
    };
    for (const auto& c : kCases)
        EXPECT_EQ(Feed(ProcCmd_APER_Chomguard, AperPacket(3, 7, 42, "door open", c.fault)), c.sOut);
    // An empty text is a data block of five bytes.
    EXPECT_EQ(Feed(ProcCmd_APER_Chomguard, AperPacket(1, 2, 3, "")), "APER|T|1|2|00003||#\n");
}

// One record per withdrawal, made by its end line; an inquiry (no account, no notes) repeats the
// previous withdrawal's values, so it must leave them alone.
TEST(PosSim, AtmJournalMakesOneRecordPerTransaction) {
    const struct { const char* sAccount; std::vector<AtmNotes> notes; size_t nLines;
                   const char* sRecord; } kCases[] = {
        {"889", {{500, 1}, {100, 12}, {2000, 2}}, 4, "ATM-FI|T|DRAW|889|5700|#\n"},
        {"", {}, 2, "ATM-FI|T|DRAW|889|5700|#\n"},
    };
    for (const auto& c : kCases) {
        const std::vector<std::string> lines = AtmJournal(time(nullptr), c.sAccount, c.notes);
        ASSERT_EQ(lines.size(), c.nLines);
        for (size_t i = 0; i < lines.size(); ++i)
            EXPECT_EQ(Feed(ProcCmd_ATM_FriInfo, lines[i]), i + 1 < c.nLines ? "" : c.sRecord);
    }
}

TEST(PosSim, EscapesBecomeBytes) {
    const std::pair<const char*, std::string> kCases[] = {
        {"\\x4G\\x02A\\x00", std::string("\x04G\x02" "A\0", 5)},
        {"\\xZ \\q \\e[ end\\", "\\xZ \\q \x1b[ end\\"},
        {"a\\\\n\\t", "a\\n\t"},
    };
    for (const auto& [sTyped, sBytes] : kCases) EXPECT_EQ(PosUnescape(sTyped), sBytes) << sTyped;
    std::string sAll;
    for (int i = 0; i < 256; ++i) sAll += static_cast<char>(i);
    const std::string sShown = PosEscape(sAll);
    for (char c : sShown) ASSERT_TRUE(c >= ' ' && c <= '~') << static_cast<int>(c);
    EXPECT_EQ(PosUnescape(sShown), sAll);
}

// Times in local time (two hours east of UTC here), each column aligned as the layout says, a
// short record padded, a long one's surplus in the last column; no layout: records as they are.
TEST(PosSim, RecordTableUnderTheSharedLayout) {
    setenv("TZ", "UTC-2", 1);
    tzset();
    uint8_t ay[452] = {};
    const std::vector<std::string> records = {"MGT|1700000000.12|07|A|Bravo|1|250|#\n",
                                              "MGT|1700000061.05|12|cash|x|10|5|e|f|#\n",
                                              "AVEVSI|1700000000.50|ITEM|#\n"};
    EXPECT_EQ(PosRecordTable(PosLayoutColumns(ay), records),
              records[0] + records[1] + records[2]);
    std::memcpy(ay, &DPRCSet_MLV_TCP6001, sizeof ay);
    EXPECT_EQ(PosRecordTable(PosLayoutColumns(ay), records),
              "TAG        TIME       ID   TEXT1  TEXT2  NUM1  NUM2  +\n"
              "MGT     00:13:20.12   07   A      Bravo     1   250\n"
              "MGT     00:14:21.05   12   cash   x        10     5  e|f\n"
              "AVEVSI  00:13:20.50  ITEM\n");
}

// At most eight columns, whatever the count says; a label may fill its 32 bytes without a NUL.
TEST(PosSim, LayoutColumnsFromTheSharedBytes) {
    uint8_t ay[452] = {9};
    std::memset(ay + 4 + 56 * 7, 'L', 32);
    const std::vector<PosColumn> columns = PosLayoutColumns(ay);
    ASSERT_EQ(columns.size(), 8u);
    EXPECT_EQ(columns[7].sLabel, std::string(32, 'L'));
}
