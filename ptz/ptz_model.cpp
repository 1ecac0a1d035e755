// The camera model table. The index of an entry is the model number the recorder stores per
// channel, so the order is part of the configuration format.
#include "ptz/ptz_model.h"

#include <termios.h>

#include <iterator>

#include "ptz/drivers/pm_drivers.h"

namespace {
constexpr uint32_t k2400 = B2400;
constexpr uint32_t k4800 = B4800;
constexpr uint32_t k9600 = B9600;
}  // namespace

#define PTZ_ENTRY(flags, X, name) {0, flags, &CntlOpt_##X, BuildCmd_##X, CheckStatus_##X, 0, name}
#define PTZ_ENTRY_NO_STATUS(flags, X, name) {0, flags, &CntlOpt_##X, BuildCmd_##X, nullptr, 0, name}

// clang-format off
const PTZModel ptPTZModelDatabase[] = {
    /*  0 */ {0, 0, nullptr, nullptr, nullptr, 0, "NONE"},
    /*  1 */ PTZ_ENTRY(k9600,          RvtEZ,       "NUVICO, NV Protocol 9600 BPS"),
    /*  2 */ PTZ_ENTRY(k9600,          MLPIH7x00,   "MERIT LILIN, PIH-7000/7600"),
    /*  3 */ PTZ_ENTRY(k9600 | CSTOPB, VCL,         "VCL, Orbiter Microsphere"),
    /*  4 */ PTZ_ENTRY_NO_STATUS(k9600, SCC641,     "SAMSUNG, SCC-641"),
    /*  5 */ PTZ_ENTRY(k9600,          NEC_NC21,    "NEC, NC-21D"),
    /*  6 */ PTZ_ENTRY(k9600,          SK2107,      "SUNKWANG, SK2107"),
    /*  7 */ PTZ_ENTRY(k4800,          Custom1,     "RESERVED"),
    /*  8 */ PTZ_ENTRY(k9600,          DSC230,      "D-MAX, PTZ PROTOCOL"),
    /*  9 */ PTZ_ENTRY(k9600,          LPTA100L,    "LG, LPT-A100L P/T/Z"),
    /* 10 */ PTZ_ENTRY_NO_STATUS(k9600, GC655NP,    "HONEYWELL, GCC-655N"),
    /* 11 */ PTZ_ENTRY_NO_STATUS(k9600, WPT101,     "WONWOO, PT-101"),
    /* 12 */ PTZ_ENTRY(k2400,          PelcoD,      "PELCO, D Protocol 2400 bps"),
    /* 13 */ PTZ_ENTRY(k4800,          PelcoD,      "PELCO, D Protocol 4800 bps"),
    /* 14 */ PTZ_ENTRY(k9600,          PelcoD,      "PELCO, D Protocol 9600 bps"),
    /* 15 */ PTZ_ENTRY(k9600,          CNBZOOM,     "C&B TECH, AN200"),
    /* 16 */ PTZ_ENTRY(k9600,          CanonVCC4,   "CANON, VC-C4"),
    /* 17 */ PTZ_ENTRY(k2400,          PelcoP,      "PELCO, P Protocol 2400 bps"),
    /* 18 */ PTZ_ENTRY(k4800,          PelcoP,      "PELCO, P Protocol 4800 bps"),
    /* 19 */ PTZ_ENTRY(k9600,          PelcoP,      "PELCO, P Protocol 9600 bps"),
    /* 20 */ PTZ_ENTRY(k2400,          ExtPelcoP,   "PELCO, EP Protocol 2400 bps"),
    /* 21 */ PTZ_ENTRY(k4800,          ExtPelcoP,   "PELCO, EP Protocol 4800 bps"),
    /* 22 */ PTZ_ENTRY(k9600,          ExtPelcoP,   "PELCO, EP Protocol 9600 bps"),
    /* 23 */ PTZ_ENTRY(k9600,          PSonicCS85x, "PANASONIC, WV-CS/W85x,86x"),
    /* 24 */ PTZ_ENTRY(k9600,          HSDN251NP,   "HONEYWELL, HSDN-251N/P"),
    /* 25 */ PTZ_ENTRY(k9600,          CyberDome,   "GE/KALATEL, CyberDome Series"),
    /* 26 */ PTZ_ENTRY(k9600,          SmartDome,   "DONGYANG ELEC, SmartDome"),
    /* 27 */ PTZ_ENTRY(k9600,          AutoDome,    "BOSCH, TC8560/TC700"),
    /* 28 */ PTZ_ENTRY(k2400,          KRE303,      "SYSMANIA, ORX1000"),
    /* 29 */ PTZ_ENTRY(k4800,          ADDeltaDome, "AD, DELTADOME"),
    /* 30 */ PTZ_ENTRY(k9600,          Hunt,        "HUNT, HTZ-2300"),
    /* 31 */ PTZ_ENTRY(k9600,          Custom2,     "VESTO, RESERVED"),
    /* 32 */ PTZ_ENTRY(k9600,          RvtEZ,       "RVT, EZ Protocol"),
    /* 33 */ PTZ_ENTRY(k9600,          LGDome,      "LG, Dome Protocol"),
    /* 34 */ PTZ_ENTRY(k9600,          PTC400C,     "ELMO, PTC-200C/400C"),
    /* 35 */ PTZ_ENTRY(k9600,          NiceCam,     "NICECAM, MP-1xxx"),
    /* 36 */ PTZ_ENTRY(k9600,          CNBPTZ,      "C&B TECH, CNB-PTZ102"),
    /* 37 */ PTZ_ENTRY(k9600,          PCSiLAN,     "IKEGAMI, PCS i-LAN Protocol"),
    /* 38 */ PTZ_ENTRY_NO_STATUS(k9600, ICDiLAN,    "IKEGAMI, ICD i-LAN Protocol"),
    /* 39 */ PTZ_ENTRY(k9600 | PARENB, ToaCC,       "RESERVED"),
    /* 40 */ PTZ_ENTRY(k9600 | PARENB, ToaSC,       "TOA, SC80 System Controller"),
    /* 41 */ PTZ_ENTRY(k9600,          SC1000,      "TOSHIBA, SC1000"),
    /* 42 */ PTZ_ENTRY(k9600,          BBV,         "BBV, TC 9600 BPS"),
};
// clang-format on
static_assert(std::size(ptPTZModelDatabase) == kPTZModelCount, "one row per model number");

#undef PTZ_ENTRY
#undef PTZ_ENTRY_NO_STATUS

uint32_t GetNumberOfPTZModel() { return kPTZModelCount; }

const PTZModel& PTZModelEntry(uint32_t nModel) {
    return ptPTZModelDatabase[nModel < kPTZModelCount ? nModel : 0];
}
