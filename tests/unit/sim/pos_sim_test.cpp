// The simulator's text-insertion side: what it sends is accepted (or refused, when broken on
// purpose) by the process's own record builders, typed escapes become the right bytes, and
// records are shown under the layout the shared block holds.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include "pos/pos_model.h"
#include "tools/sim/pos_sim.h"

namespace {
// A builder call shaped like the polling read's: the bytes NUL-terminated, and their count.
// Returns the record with its time checked against the wall clock and replaced by "T"; "" when
// the builder made none.
std::string Feed(PosProcCmdFn fn, const std::string& bytes, std::string* psErr = nullptr) {
    char sText[257] = {};
    std::memcpy(sText, bytes.data(), std::min<size_t>(bytes.size(), 256));
    char sRecord[128] = {};
    const time_t tBefore = time(nullptr);
    testing::internal::CaptureStderr();
    const uint32_t dwTime = fn(sRecord, sText, static_cast<int>(std::min<size_t>(bytes.size(), 256)));
    const std::string sErr = testing::internal::GetCapturedStderr();
    if (psErr) *psErr = sErr;
    if (dwTime == 0) return "";
    EXPECT_GE(dwTime, static_cast<uint32_t>(tBefore));
    EXPECT_LE(dwTime, static_cast<uint32_t>(time(nullptr)));
    std::string s(sRecord, strnlen(sRecord, sizeof sRecord));
    const size_t nFrom = s.find('|') + 1, nTo = s.find('|', nFrom);
    EXPECT_EQ(s.substr(nFrom, nTo - nFrom - 3), std::to_string(dwTime)) << s;
    return s.substr(0, nFrom) + "T" + s.substr(nTo);
}

struct AperCase {
    AperFault fault;
    const char* sRecord;   // "" = none
    const char* sDebug;    // the line on standard error; with a record, "POSDBG : " and the record
};

// Checksums worked out by hand: data block 00 00 00 2A 07 "door open" sums to B7, the whole
// packet up to the data checksum to 8F.
TEST(PosSimAper, PacketsAreJudgedByTheProcessBuilder) {
    const AperCase kCases[] = {
        {AperFault::kNone, "APER|T|3|7|00042|DOOR OPEN|#\n", ""},
        {AperFault::kDataSum, "", "POSDBG : Data payload checksum mismatch (s=b8 / d=b7)\n"},
        {AperFault::kTransportSum, "", "POSDBG : Transport packet checksum mismatch (s=90 / d=8f)\n"},
        {AperFault::kEndMarker, "", "POSDBG : End of data(fe) is not 0xff\n"},
        {AperFault::kNone, "APER|T|3|7|00042|DOOR OPEN|#\n", ""},
    };
    for (const AperCase& c : kCases) {
        std::string sErr;
        const std::string sRecord = Feed(ProcCmd_APER_Chomguard, AperPacket(3, 7, 42, "door open", c.fault), &sErr);
        const int nCase = static_cast<int>(&c - kCases);
        EXPECT_EQ(sRecord, c.sRecord) << nCase;
        if (*c.sRecord) EXPECT_EQ(sErr.substr(0, 9), "POSDBG : ") << nCase;
        else EXPECT_EQ(sErr, c.sDebug) << nCase;
    }
}

TEST(PosSimAper, FieldsLandInTheirRecordColumns) {
    const std::string p = AperPacket(255, 200, 12345, "Panic Btn 2");
    EXPECT_EQ(p.size(), 16u + 10u);
    EXPECT_EQ(Feed(ProcCmd_APER_Chomguard, p), "APER|T|255|200|12345|PANIC BTN 2|#\n");
    // An empty text is a data block of five bytes.
    EXPECT_EQ(Feed(ProcCmd_APER_Chomguard, AperPacket(1, 2, 3, "")), "APER|T|1|2|00003||#\n");
}

// Whole withdrawals as the ATM journals them; only the end line makes a record. An inquiry (no
// account line, no notes) repeats the previous withdrawal's values, which it must leave alone.
TEST(PosSimAtmJournal, OneRecordPerTransaction) {
    struct Case {
        const char* sAccount;
        std::vector<AtmNotes> notes;
        size_t nLines;
        const char* sRecord;
    };
    const Case kCases[] = {
        {"1234567", {{1000, 3}, {100, 5}}, 4, "ATM-FI|T|DRAW|1234567|3500|#\n"},
        {"889", {{500, 1}, {100, 12}, {2000, 2}}, 4, "ATM-FI|T|DRAW|889|5700|#\n"},
        {"", {}, 2, "ATM-FI|T|DRAW|889|5700|#\n"},
    };
    for (const Case& c : kCases) {
        const std::vector<std::string> lines = AtmJournal(time(nullptr), c.sAccount, c.notes);
        ASSERT_EQ(lines.size(), c.nLines);
        for (size_t i = 0; i < lines.size(); ++i) {
            EXPECT_EQ(std::count(lines[i].begin(), lines[i].end(), '\n'), 1) << lines[i];
            EXPECT_EQ(lines[i].back(), '\n');
            EXPECT_EQ(Feed(ProcCmd_ATM_FriInfo, lines[i]), i + 1 == lines.size() ? c.sRecord : "") << lines[i];
        }
    }
}

TEST(PosSimText, EscapesBecomeBytes) {
    const std::pair<const char*, std::string> kCases[] = {
        {"COLA 1.20\\r\\n", "COLA 1.20\r\n"},
        {"\\x02A\\x03", std::string("\x02" "A\x03")},
        {"\\x4G\\x00", std::string("\x04G\0", 3)},
        {"\\xZ \\q \\e[ end\\", "\\xZ \\q \x1b[ end\\"},
        {"a\\\\n\\t", "a\\n\t"},
    };
    for (const auto& [sTyped, sBytes] : kCases) EXPECT_EQ(PosUnescape(sTyped), sBytes) << sTyped;

    std::string sAll;
    for (int i = 0; i < 256; ++i) sAll += static_cast<char>(i);
    const std::string sShown = PosEscape(sAll);
    EXPECT_EQ(sShown.find_first_not_of(" !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`"
                                       "abcdefghijklmnopqrstuvwxyz{|}~"),
              std::string::npos);
    EXPECT_EQ(PosUnescape(sShown), sAll);
}

// Layout bytes written one by one, little-endian, as another process would leave them.
void PutU32(uint8_t* p, uint32_t v) {
    for (int i = 0; i < 4; ++i) p[i] = static_cast<uint8_t>(v >> (8 * i));
}

TEST(PosSimLayout, ColumnsComeFromTheSharedBytes) {
    uint8_t ay[452] = {};
    std::memcpy(ay, &DPRCSet_MLV_TCP6001, sizeof ay);
    std::vector<std::string> labels;
    std::vector<uint32_t> classes, aligns;
    for (const PosColumn& c : PosLayoutColumns(ay)) {
        labels.push_back(c.sLabel);
        classes.push_back(c.nClass);
        aligns.push_back(c.nAlign);
    }
    EXPECT_EQ(labels, (std::vector<std::string>{"TIME", "ID", "TEXT1", "TEXT2", "NUM1", "NUM2"}));
    EXPECT_EQ(classes, (std::vector<uint32_t>{3, 1, 2, 4, 5, 5}));
    EXPECT_EQ(aligns, (std::vector<uint32_t>{2, 2, 1, 1, 3, 3}));

    // A count beyond eight entries and a label filling its 32 bytes without a NUL.
    std::memset(ay, 0, sizeof ay);
    PutU32(ay, 0x109);
    std::memset(ay + 4 + 56 * 7, 'L', 32);
    PutU32(ay + 4 + 56 * 7 + 36, 0x0304);
    PutU32(ay + 4 + 56 * 7 + 40, 0x01000002);
    const std::vector<PosColumn> columns = PosLayoutColumns(ay);
    ASSERT_EQ(columns.size(), 8u);
    EXPECT_EQ(columns[7].sLabel, std::string(32, 'L'));
    EXPECT_EQ(columns[7].nClass, 0x0304u);
    EXPECT_EQ(columns[7].nAlign, 0x01000002u);
}

// Times in local time (two hours east of UTC here), each column aligned as the layout says, a
// short record padded, a long one's surplus in the last column.
TEST(PosSimLayout, RecordTable) {
    setenv("TZ", "UTC-2", 1);
    tzset();
    uint8_t ay[452];
    std::memcpy(ay, &DPRCSet_MLV_TCP6001, sizeof ay);
    const std::vector<std::string> records = {
        "MGT|1700000000.12|07|A|Bravo|1|250|#\n",
        "MGT|1700000061.05|12|cash|x|10|5|e|f|#\n",
        "AVEVSI|1700000000.50|ITEM|#\n",
    };
    EXPECT_EQ(PosRecordTable(PosLayoutColumns(ay), records),
              "TAG        TIME       ID   TEXT1  TEXT2  NUM1  NUM2  +\n"
              "MGT     00:13:20.12   07   A      Bravo     1   250\n"
              "MGT     00:14:21.05   12   cash   x        10     5  e|f\n"
              "AVEVSI  00:13:20.50  ITEM\n");
    // No layout (nothing selected yet): the records as they are.
    std::memset(ay, 0, sizeof ay);
    EXPECT_EQ(PosRecordTable(PosLayoutColumns(ay), records),
              "MGT|1700000000.12|07|A|Bravo|1|250|#\nMGT|1700000061.05|12|cash|x|10|5|e|f|#\n"
              "AVEVSI|1700000000.50|ITEM|#\n");
}
}  // namespace
