// Friendly Info ATM journal: one record per withdrawal transaction.
#include <string>
#include <vector>

#include "tests/unit/pos/pos_test_util.h"

namespace {
using postest::kT0;

struct Line {
    uint32_t nAt;               // seconds after kT0 at which the line arrives
    std::string sLine;
    std::string sFields = "";   // expected record fields; "" = no record
    uint32_t nStartAt = 0;      // seconds after kT0 of the recorded transaction's start
};

// The journal keeps its values across transactions for the whole process: close any open
// transaction and leave type DRAW, no account and amount 0 behind.
void Journal(const std::vector<Line>& lines) {
    for (const char* s : {"Transaction start\n", "REQ|CWD|||||\n", " Money presented\n", "Transaction end\n"}) {
        postest::Record(ProcCmd_ATM_FriInfo, s);
    }
    for (const Line& l : lines) {
        postest::SetClock(kT0 + l.nAt, 250);
        const std::string sExpected =
            l.sFields.empty() ? "" : "ATM-FI|" + std::to_string(kT0 + l.nStartAt) + ".25|" + l.sFields + "|#\n";
        EXPECT_EQ(postest::Record(ProcCmd_ATM_FriInfo, l.sLine), sExpected) << l.sLine;
    }
}

TEST(FriInfo, Transactions) {
    Journal({{0, "08:00 Transaction start\n"},
         {3, "REQ|CWD|01|02|1234567|99\n"},
         {7, " Money presented NTD1000x3 NTD100x5\n"},
         {12, "Transaction end\n", "DRAW|1234567|3500", 0},
         // the next transaction repeats what it does not bring itself
         {20, "Transaction start\n"},
         {21, "Transaction end\n", "DRAW|1234567|3500", 20},
         // outside a transaction only a start counts; a line with a start and an end is a start
         {30, "REQ|CWD|a|b|999|\n"},
         {30, " Money presented NTD9x9\n"},
         {30, "Transaction end\n"},
         {31, "Transaction start Transaction end\n"},
         // a second start restarts the time; a REQ|CWD line that also ends is only REQ|CWD
         {40, "Transaction start\n"},
         {41, "REQ|CWD|a|b|42| Transaction end\n"},
         {42, "Transaction end\n", "DRAW|42|3500", 40},
         // lines count only up to a newline within 128 characters
         {50, "Transaction start"},
         {51, "Transaction end\n"},
         {52, "Transaction start\n"},
         {53, std::string(128, ' ') + "Transaction end\n"},
         {54, "Transaction end\nTransaction start\n", "DRAW|42|3500", 52},
         {55, "Transaction end\n"}});
}

TEST(FriInfo, AmountSumsEveryNtdFromTheSecondCharacter) {
    struct Case { const char* sLine; const char* sAmount; };
    for (const Case& c : {Case{"NTD1000x2 Money presented\n", "0"},
                          Case{"xNTD1000x2 Money presented\n", "2000"},
                          Case{" Money presented NTDx3 NTD5x NTD5y3 NTD-5x2 NTD 7x 3 NTDNTD1x1\n", "12"},
                          Case{" Money presented NTD2000000000x2 NTD1x1\n", "2147483647"}}) {
        Journal({{0, "Transaction start\n"}, {1, c.sLine}, {2, "Transaction end\n", std::string("DRAW||") + c.sAmount}});
    }
}

TEST(FriInfo, AccountNeedsFourBars) {
    std::string sErr = postest::Stderr([] {
        Journal({{0, "Transaction start\n"},
             {1, "REQ|CWD|a|b|555|\n"},
             {2, "REQ|CWD|a|b|no fifth bar\n"},
             {3, "Transaction end\n", "DRAW||0"}});
    });
    EXPECT_EQ(sErr, "");
    sErr = postest::Stderr([] {
        Journal({{0, "Transaction start\n"},
             {1, "REQ|CWD|a|b|555|\n"},
             {2, "REQ|CWD|only three\n"},
             {3, "Transaction end\n", "DRAW||0"}});
    });
    EXPECT_EQ(sErr, "Err (ptz_cntl  /sm_ATM_FriInfo:110) fail to get account\n");
}
}  // namespace
