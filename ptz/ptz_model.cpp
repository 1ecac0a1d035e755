// The camera model table. The index of an entry is the model number the recorder stores per
// channel, so the order is part of the configuration format.
#include "ptz/ptz_model.h"

#include <termios.h>

#include "ptz/drivers/pm_drivers.h"

namespace {
// Options records of the catalogue drivers whose frames are not built into this program. Their
// capability words are still published, so the recorder offers the right controls; a command for
// such a model is accepted and sends nothing.
constexpr PTZCntlOpt kOptRvtEZ = {10, 0xFEA0E503};
constexpr PTZCntlOpt kOptMLPIH7x00 = {10, 0x7D580503};
constexpr PTZCntlOpt kOptVCL = {10, 0xFC002002};
constexpr PTZCntlOpt kOptNEC_NC21 = {10, 0xFE000002};
constexpr PTZCntlOpt kOptSK2107 = {10, 0xF4080002};
constexpr PTZCntlOpt kOptCustom1 = {10, 0xFC080002};
constexpr PTZCntlOpt kOptDSC230 = {10, 0xFE8A2002};
constexpr PTZCntlOpt kOptLPTA100L = {10, 0x00082000};
constexpr PTZCntlOpt kOptGC655NP = {10, 0x00002000};
constexpr PTZCntlOpt kOptWPT101 = {10, 0x00080000};
constexpr PTZCntlOpt kOptCNBZOOM = {60, 0xFE002000};
constexpr PTZCntlOpt kOptPSonicCS85x = {10, 0xFE900502};
constexpr PTZCntlOpt kOptHSDN251NP = {10, 0xFC000002};
constexpr PTZCntlOpt kOptCyberDome = {10, 0xFE880002};
constexpr PTZCntlOpt kOptSmartDome = {10, 0xFD482002};
constexpr PTZCntlOpt kOptKRE303 = {15, 0x02A00000};
constexpr PTZCntlOpt kOptADDeltaDome = {10, 0xFC00C002};
constexpr PTZCntlOpt kOptHunt = {10, 0xFD4A0002};
constexpr PTZCntlOpt kOptCustom2 = {10, 0xFE082000};
constexpr PTZCntlOpt kOptLGDome = {10, 0xFEA0C002};
constexpr PTZCntlOpt kOptPTC400C = {10, 0xFC002002};
constexpr PTZCntlOpt kOptNiceCam = {10, 0xFE002002};
constexpr PTZCntlOpt kOptCNBPTZ = {60, 0xFE5A0000};
constexpr PTZCntlOpt kOptPCSiLAN = {0, 0xFE080003};
constexpr PTZCntlOpt kOptICDiLAN = {0, 0x00000000};
constexpr PTZCntlOpt kOptToaCC = {10, 0xFC08E503};
constexpr PTZCntlOpt kOptToaSC = {1, 0x3C080003};
constexpr PTZCntlOpt kOptSC1000 = {0, 0xFE080003};
constexpr PTZCntlOpt kOptBBV = {10, 0xFC080002};


constexpr uint32_t k2400 = B2400;
constexpr uint32_t k4800 = B4800;
constexpr uint32_t k9600 = B9600;
}  // namespace

// clang-format off
const PTZModel ptPTZModelDatabase[kPTZModelCount] = {
    /*  0 */ {0, 0,              nullptr,          nullptr,            nullptr,               0, "NONE"},
    /*  1 */ {0, k9600,          &kOptRvtEZ,       nullptr,            nullptr,               0, "NUVICO, NV Protocol 9600 BPS"},
    /*  2 */ {0, k9600,          &kOptMLPIH7x00,   nullptr,            nullptr,               0, "MERIT LILIN, PIH-7000/7600"},
    /*  3 */ {0, k9600 | CSTOPB, &kOptVCL,         nullptr,            nullptr,               0, "VCL, Orbiter Microsphere"},
    /*  4 */ {0, k9600,         &CntlOpt_SCC641, BuildCmd_SCC641, nullptr, 0, "SAMSUNG, SCC-641"},
    /*  5 */ {0, k9600,          &kOptNEC_NC21,    nullptr,            nullptr,               0, "NEC, NC-21D"},
    /*  6 */ {0, k9600,          &kOptSK2107,      nullptr,            nullptr,               0, "SUNKWANG, SK2107"},
    /*  7 */ {0, k4800,          &kOptCustom1,     nullptr,            nullptr,               0, "RESERVED"},
    /*  8 */ {0, k9600,          &kOptDSC230,      nullptr,            nullptr,               0, "D-MAX, PTZ PROTOCOL"},
    /*  9 */ {0, k9600,          &kOptLPTA100L,    nullptr,            nullptr,               0, "LG, LPT-A100L P/T/Z"},
    /* 10 */ {0, k9600,          &kOptGC655NP,     nullptr,            nullptr,               0, "HONEYWELL, GCC-655N"},
    /* 11 */ {0, k9600,          &kOptWPT101,      nullptr,            nullptr,               0, "WONWOO, PT-101"},
    /* 12 */ {0, k2400,         &CntlOpt_PelcoD, BuildCmd_PelcoD, CheckStatus_PelcoD, 0, "PELCO, D Protocol 2400 bps"},
    /* 13 */ {0, k4800,         &CntlOpt_PelcoD, BuildCmd_PelcoD, CheckStatus_PelcoD, 0, "PELCO, D Protocol 4800 bps"},
    /* 14 */ {0, k9600,         &CntlOpt_PelcoD, BuildCmd_PelcoD, CheckStatus_PelcoD, 0, "PELCO, D Protocol 9600 bps"},
    /* 15 */ {0, k9600,          &kOptCNBZOOM,     nullptr,            nullptr,               0, "C&B TECH, AN200"},
    /* 16 */ {0, k9600,         &CntlOpt_CanonVCC4, BuildCmd_CanonVCC4, CheckStatus_CanonVCC4, 0, "CANON, VC-C4"},
    /* 17 */ {0, k2400,         &CntlOpt_PelcoP, BuildCmd_PelcoP, CheckStatus_PelcoP, 0, "PELCO, P Protocol 2400 bps"},
    /* 18 */ {0, k4800,         &CntlOpt_PelcoP, BuildCmd_PelcoP, CheckStatus_PelcoP, 0, "PELCO, P Protocol 4800 bps"},
    /* 19 */ {0, k9600,         &CntlOpt_PelcoP, BuildCmd_PelcoP, CheckStatus_PelcoP, 0, "PELCO, P Protocol 9600 bps"},
    /* 20 */ {0, k2400,         &CntlOpt_ExtPelcoP, BuildCmd_ExtPelcoP, CheckStatus_ExtPelcoP, 0, "PELCO, EP Protocol 2400 bps"},
    /* 21 */ {0, k4800,         &CntlOpt_ExtPelcoP, BuildCmd_ExtPelcoP, CheckStatus_ExtPelcoP, 0, "PELCO, EP Protocol 4800 bps"},
    /* 22 */ {0, k9600,         &CntlOpt_ExtPelcoP, BuildCmd_ExtPelcoP, CheckStatus_ExtPelcoP, 0, "PELCO, EP Protocol 9600 bps"},
    /* 23 */ {0, k9600,          &kOptPSonicCS85x, nullptr,            nullptr,               0, "PANASONIC, WV-CS/W85x,86x"},
    /* 24 */ {0, k9600,          &kOptHSDN251NP,   nullptr,            nullptr,               0, "HONEYWELL, HSDN-251N/P"},
    /* 25 */ {0, k9600,          &kOptCyberDome,   nullptr,            nullptr,               0, "GE/KALATEL, CyberDome Series"},
    /* 26 */ {0, k9600,          &kOptSmartDome,   nullptr,            nullptr,               0, "DONGYANG ELEC, SmartDome"},
    /* 27 */ {0, k9600,         &CntlOpt_AutoDome, BuildCmd_AutoDome, CheckStatus_AutoDome, 0, "BOSCH, TC8560/TC700"},
    /* 28 */ {0, k2400,          &kOptKRE303,      nullptr,            nullptr,               0, "SYSMANIA, ORX1000"},
    /* 29 */ {0, k4800,          &kOptADDeltaDome, nullptr,            nullptr,               0, "AD, DELTADOME"},
    /* 30 */ {0, k9600,          &kOptHunt,        nullptr,            nullptr,               0, "HUNT, HTZ-2300"},
    /* 31 */ {0, k9600,          &kOptCustom2,     nullptr,            nullptr,               0, "VESTO, RESERVED"},
    /* 32 */ {0, k9600,          &kOptRvtEZ,       nullptr,            nullptr,               0, "RVT, EZ Protocol"},
    /* 33 */ {0, k9600,          &kOptLGDome,      nullptr,            nullptr,               0, "LG, Dome Protocol"},
    /* 34 */ {0, k9600,          &kOptPTC400C,     nullptr,            nullptr,               0, "ELMO, PTC-200C/400C"},
    /* 35 */ {0, k9600,          &kOptNiceCam,     nullptr,            nullptr,               0, "NICECAM, MP-1xxx"},
    /* 36 */ {0, k9600,          &kOptCNBPTZ,      nullptr,            nullptr,               0, "C&B TECH, CNB-PTZ102"},
    /* 37 */ {0, k9600,          &kOptPCSiLAN,     nullptr,            nullptr,               0, "IKEGAMI, PCS i-LAN Protocol"},
    /* 38 */ {0, k9600,          &kOptICDiLAN,     nullptr,            nullptr,               0, "IKEGAMI, ICD i-LAN Protocol"},
    /* 39 */ {0, k9600 | PARENB, &kOptToaCC,       nullptr,            nullptr,               0, "RESERVED"},
    /* 40 */ {0, k9600 | PARENB, &kOptToaSC,       nullptr,            nullptr,               0, "TOA, SC80 System Controller"},
    /* 41 */ {0, k9600,          &kOptSC1000,      nullptr,            nullptr,               0, "TOSHIBA, SC1000"},
    /* 42 */ {0, k9600,          &kOptBBV,         nullptr,            nullptr,               0, "BBV, TC 9600 BPS"},
};
// clang-format on
static_assert(sizeof(ptPTZModelDatabase) / sizeof(ptPTZModelDatabase[0]) == 43);

uint32_t GetNumberOfPTZModel() { return kPTZModelCount; }
