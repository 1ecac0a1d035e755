// Record builders of the line protocols: AVE VSI-Pro and Hydra, TVC 2066D, Atop, WSI Inspector,
// the general TCP/UDP protocol and the KTT CDMA entry.
#include <string>

#include "tests/unit/pos/pos_test_util.h"

namespace {
struct LineCase {
    PosProcCmdFn fn;
    std::string sInput;
    const char* sExpected;   // record with "@" standing for "TAG|seconds.hh"; "" = no record
};

const LineCase kCases[] = {
    // AVE VSI-Pro: the point decides between ADD/ITEM/BILL/ERR1 and TIME/CLERK/ERR2
    {ProcCmd_AVE_VSIPro, "  TOTAL    12.50\n", "@|BILL|TOTAL|12.50|#\n"},
    {ProcCmd_AVE_VSIPro, "COLA 1.20\n", "@|ITEM|COLA|1.20|#\n"},
    {ProcCmd_AVE_VSIPro, "DIET COLA  x2 2.40\nTEA 1.00\n", "@|ITEM|DIET COLA  x2|2.40|#\n"},
    {ProcCmd_AVE_VSIPro, "  12.50\n", "@|BILL||12.50|#\n"},
    {ProcCmd_AVE_VSIPro, "COLA 1.20 \n", "@|ITEM|COLA 1.20||#\n"},
    {ProcCmd_AVE_VSIPro, "  2 @ 1.50\n", "@|ADD|  2 @ 1.50||#\n"},
    {ProcCmd_AVE_VSIPro, "TOTAL12.50\n", "@|ERR1|TOTAL12.50||#\n"},
    {ProcCmd_AVE_VSIPro, "12:30 2024-02-29\n", "@|TIME|12:30 2024-02-29||#\n"},
    {ProcCmd_AVE_VSIPro, "12:30 1.5-2\n", "@|ITEM|12:30|1.5-2|#\n"},
    {ProcCmd_AVE_VSIPro, "N @ 7A\n", "@|CLERK|N @ 7A||#\n"},
    {ProcCmd_AVE_VSIPro, "CASHIER 0\n", "@|ERR2|CASHIER 0||#\n"},
    {ProcCmd_AVE_VSIPro, "CASHIER X\n", "@|ERR2|CASHIER X||#\n"},
    {ProcCmd_AVE_VSIPro, "COLA 1.20", ""},
    {ProcCmd_AVE_VSIPro, std::string(128, 'A') + "\n", ""},
    // AVE Hydra: a binary register byte, then the VSI-Pro rules on at most 127 characters
    {ProcCmd_AVE_Hydra, "\x05" "COLA 1.20\n", "@|05|ITEM|COLA|1.20|#\n"},
    {ProcCmd_AVE_Hydra, "\xC8" "  TOTAL 9.99\n", "@|200|BILL|TOTAL|9.99|#\n"},
    {ProcCmd_AVE_Hydra, std::string(1, '\0') + "X\n", "@|00|ERR2|X||#\n"},
    {ProcCmd_AVE_Hydra, "\x01" + std::string(127, 'B') + "\n", ""},
    {ProcCmd_AVE_Hydra, "\x05", ""},
    // TVC 2066D: terminal number from field 0, fields 1-4 by tabs; missing fields recorded empty
    {ProcCmd_TVC_2066D, "12AB\tCOLA\t1.20\t3.60\tC1\n", "@|12|COLA|1.20|3.60|C1|#\n"},
    {ProcCmd_TVC_2066D, " 7\tA\tB\tC\tD\tE\n", "@|07|A|B|C|D\tE|#\n"},
    {ProcCmd_TVC_2066D, "A3\tA\tB\tC\tD", "@|03|A|B|C|D|#\n"},
    {ProcCmd_TVC_2066D, "9Z\tA\nB\tC\tD\tE\n", "@|90|A||||#\n"},
    {ProcCmd_TVC_2066D, "", "@|00|||||#\n"},
    // Atop: the first four colons; with fewer, the line end is cut and the rest is empty
    {ProcCmd_AC_Atop, "1:DOOR OPEN:1234:10.0.0.5:extra\r\n", "@|1|DOOR OPEN|1234|10.0.0.5|#\n"},
    {ProcCmd_AC_Atop, "2:ALARM:77\r\n", "@|2|ALARM|77||#\n"},
    {ProcCmd_AC_Atop, "A\n:B:C:D:", "@|A\n|B|C|D|#\n"},
    // WSI: fields 1 and 2 as numbers (blanks, sign; none gives 0; saturated)
    {ProcCmd_WSI_Inspector, "DEV1\t12\tabc\tOK\tX\n", "@|12|DEV1|0|OK\tX|#\n"},
    {ProcCmd_WSI_Inspector, "D\t  -5\t99999999999\tC", "@|-5|D|2147483647|C|#\n"},
    {ProcCmd_WSI_Inspector, "DEV1\n12\t3\tC\n", "@|0|DEV1|0||#\n"},
    // General protocol: id with two digits at least, the first line of a read only
    {ProcCmd_MLV_TCP6001, "7|A|B|1|2\n8|C|D|3|4\n", "@|07|A|B|1|2|#\n"},
    {ProcCmd_MLV_TCP6001, "123|a|b|c|d|e", "@|123|a|b|c|d|e|#\n"},
    {ProcCmd_MLV_TCP6001, "x|A\n8|C|D|3|4\n", "@|00|A||||#\n"},
    {ProcCmd_MLV_UDP6002, "7|A|B|1|2\n", "@|07|A|B|1|2|#\n"},
    // KTT CDMA module: consumed, never a record
    {ProcCmd_KTT_CDMA, "CEEVT 1\r\n", ""},
};

const char* Tag(PosProcCmdFn fn) {
    if (fn == ProcCmd_AVE_VSIPro) return "AVEVSI";
    if (fn == ProcCmd_AVE_Hydra) return "AVEHYD";
    if (fn == ProcCmd_TVC_2066D) return "TVC";
    if (fn == ProcCmd_AC_Atop) return "AC_ATOP";
    if (fn == ProcCmd_WSI_Inspector) return "WSI";
    return fn == ProcCmd_MLV_UDP6002 ? "MGU" : "MGT";
}

TEST(LineBuilders, RecordEveryLineType) {
    postest::SetClock(postest::kT0);
    for (const LineCase& c : kCases) {
        std::string sExpected = c.sExpected;
        if (!sExpected.empty()) sExpected.replace(0, 1, std::string(Tag(c.fn)) + "|" + postest::Stamp());
        EXPECT_EQ(postest::Record(c.fn, c.sInput), sExpected) << testing::PrintToString(c.sInput);
    }
}

// Long lines: the builders take 128 characters (Hydra 127 after its byte), the record line is
// cut at 126 and loses its terminator; hundredths are milliseconds / 10, truncated.
TEST(LineBuilders, LimitsAndTime) {
    postest::SetClock(postest::kT0, 999);
    EXPECT_EQ(postest::Record(ProcCmd_AVE_Hydra, "\x01" + std::string(126, 'B') + "\n"),
              "AVEHYD|1700000000.99|01|ERR2|" + std::string(97, 'B'));
    postest::SetClock(postest::kT0, 9);
    EXPECT_EQ(postest::Record(ProcCmd_MLV_TCP6001, "1|" + std::string(200, 'T')),
              "MGT|1700000000.00|01|" + std::string(105, 'T'));
    // the count bounds the read even without a NUL
    char sRecord[kPosRecordSize];
    const char sText[] = {'C', 'O', 'L', 'A', ' ', '1', '.', '2', '\n'};
    EXPECT_EQ(ProcCmd_AVE_VSIPro(sRecord, sText, 8), 0u);
    EXPECT_EQ(ProcCmd_AVE_VSIPro(sRecord, sText, 9), postest::kT0);
    EXPECT_EQ(ProcCmd_AVE_Hydra(sRecord, sText, 0), 0u);
}
}  // namespace
