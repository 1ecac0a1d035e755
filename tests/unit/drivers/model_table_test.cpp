// The model table as the recorder's configuration knows it: every model from 1 to 42 has a driver
// that puts frames on the wire, with the catalogue's line setting, gap and status routine.
#include <termios.h>

#include "ptz/ptz_model.h"
#include "tests/unit/drivers/driver_harness.h"

namespace {

// Index, line flags, least gap and whether the model has a status routine, as catalogued.
struct Catalogued { uint32_t nModel; uint32_t dwLine; uint32_t nGapMs; bool bStatus; };
constexpr Catalogued kCatalogue[] = {
    {1, B9600, 10, true},            {2, B9600, 10, true},   {3, B9600 | CSTOPB, 10, true},
    {4, B9600, 10, false},           {5, B9600, 10, true},   {6, B9600, 10, true},
    {7, B4800, 10, true},            {8, B9600, 10, true},   {9, B9600, 10, true},
    {10, B9600, 10, false},          {11, B9600, 10, false}, {12, B2400, 10, true},
    {13, B4800, 10, true},           {14, B9600, 10, true},  {15, B9600, 60, true},
    {16, B9600, 10, true},           {17, B2400, 10, true},  {18, B4800, 10, true},
    {19, B9600, 10, true},           {20, B2400, 10, true},  {21, B4800, 10, true},
    {22, B9600, 10, true},           {23, B9600, 10, true},  {24, B9600, 10, true},
    {25, B9600, 10, true},           {26, B9600, 10, true},  {27, B9600, 10, true},
    {28, B2400, 15, true},           {29, B4800, 10, true},  {30, B9600, 10, true},
    {31, B9600, 10, true},           {32, B9600, 10, true},  {33, B9600, 10, true},
    {34, B9600, 10, true},           {35, B9600, 10, true},  {36, B9600, 60, true},
    {37, B9600, 0, true},            {38, B9600, 0, false},  {39, B9600 | PARENB, 10, true},
    {40, B9600 | PARENB, 1, true},   {41, B9600, 0, true},   {42, B9600, 10, true},
};

TEST(ModelTable, EveryModelHasItsDriverLineAndGap) {
    ASSERT_EQ(GetNumberOfPTZModel(), 43u);
    EXPECT_STREQ(ptPTZModelDatabase[0].sName, "NONE");
    EXPECT_EQ(ptPTZModelDatabase[0].BuildCmd, nullptr);
    EXPECT_STREQ(ptPTZModelDatabase[12].sName, "PELCO, D Protocol 2400 bps");
    EXPECT_STREQ(ptPTZModelDatabase[42].sName, "BBV, TC 9600 BPS");
    for (const Catalogued& c : kCatalogue) {
        const PTZModel& m = ptPTZModelDatabase[c.nModel];
        SCOPED_TRACE(m.sName);
        EXPECT_NE(m.BuildCmd, nullptr);
        ASSERT_NE(m.ptCntlOpt, nullptr);
        EXPECT_EQ(m.dwLineFlags, c.dwLine);
        EXPECT_EQ(m.ptCntlOpt->nMinGapMs, c.nGapMs);
        EXPECT_EQ(m.CheckStatus != nullptr, c.bStatus);
    }
}

// A driver that sends nothing whatever it is told is no driver: each model must put frames on the
// wire for most of the common commands.
TEST(ModelTable, EveryModelPutsFramesOnTheWire) {
    const uint32_t kCommon[] = {PTZCmd_Left, PTZCmd_LeftStop, PTZCmd_Up, PTZCmd_ZoomTele,
                                PTZCmd_ZoomTeleStop, PTZCmd_FocusNear, PTZCmd_PresetGo};
    for (uint32_t nModel = 1; nModel < kPTZModelCount; ++nModel) {
        int nSending = 0;
        for (uint32_t nCmd : kCommon) nSending += !DriverHarness(nModel, 1).Send(nCmd, 3).empty();
        EXPECT_GE(nSending, 4) << ptPTZModelDatabase[nModel].sName;
    }
}

}  // namespace
