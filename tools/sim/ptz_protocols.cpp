// The protocols the decoders know, and the one each camera model speaks.
#include <iterator>

#include "ptz/ptz_model.h"
#include "tools/sim/ptz_decode.h"

namespace {

// clang-format off
constexpr PtzProtocol kProtocols[] = {
    {"Pelco-D",         DecodePelcoD,    true},
    {"Pelco-P",         DecodePelcoP,    true},
    {"Pelco-EP",        DecodeExtPelcoP, true},
    {"Samsung SCC-641", DecodeSCC641,    true},
    {"Bosch AutoDome",  DecodeAutoDome,  true},
    {"Canon VC-C4",     DecodeCanonVCC4, false},
    {"Honeywell HSDN",  DecodeHSDN251NP, true},
    {"BBV",             DecodeBBV,       true},
    {"NV/EZ",           DecodeRvtEZ,     true},
    {"LG dome",         DecodeLGDome,    true},
    {"AD DeltaDome",    DecodeADDeltaDome, true},
    {"Merit Lilin",     DecodeMLPIH7x00,   false},
    {"Honeywell GCC-655N", DecodeGC655NP, true},
    {"VCL",             DecodeVCL,         false},
    {"NEC NC-21D",      DecodeNEC_NC21,  true},
    {"Sunkwang SK2107", DecodeSK2107,    true},
    {"Hunt HTZ-2300",   DecodeHunt,      true},
    {"Elmo PTC-400C",   DecodePTC400C,   true},
    {"Panasonic",       DecodePSonicCS85x, false},
    {"C&B Tech",        DecodeCNB,       true},
    {"LG LPT-A100L",    DecodeLPTA100L,  true},
    {"SmartDome",       DecodeSmartDome, true},
    {"Controller link", DecodeControllerLink, true},
};
// clang-format on

// The protocol of each model number, by name; null: none.
// clang-format off
constexpr const char* kModelProtocol[] = {
    nullptr,               //  0 NONE
    "NV/EZ",               //  1 NUVICO, NV Protocol 9600 BPS
    "Merit Lilin",         //  2 MERIT LILIN, PIH-7000/7600
    "VCL",                 //  3 VCL, Orbiter Microsphere
    "Samsung SCC-641",     //  4 SAMSUNG, SCC-641
    "NEC NC-21D",          //  5 NEC, NC-21D
    "Sunkwang SK2107",     //  6 SUNKWANG, SK2107
    "Pelco-D",             //  7 RESERVED
    "Sunkwang SK2107",     //  8 D-MAX, PTZ PROTOCOL
    "LG LPT-A100L",        //  9 LG, LPT-A100L P/T/Z
    "Honeywell GCC-655N",  // 10 HONEYWELL, GCC-655N
    "Sunkwang SK2107",     // 11 WONWOO, PT-101
    "Pelco-D",             // 12 PELCO, D Protocol 2400 bps
    "Pelco-D",             // 13 PELCO, D Protocol 4800 bps
    "Pelco-D",             // 14 PELCO, D Protocol 9600 bps
    "C&B Tech",            // 15 C&B TECH, AN200
    "Canon VC-C4",         // 16 CANON, VC-C4
    "Pelco-P",             // 17 PELCO, P Protocol 2400 bps
    "Pelco-P",             // 18 PELCO, P Protocol 4800 bps
    "Pelco-P",             // 19 PELCO, P Protocol 9600 bps
    "Pelco-EP",            // 20 PELCO, EP Protocol 2400 bps
    "Pelco-EP",            // 21 PELCO, EP Protocol 4800 bps
    "Pelco-EP",            // 22 PELCO, EP Protocol 9600 bps
    "Panasonic",           // 23 PANASONIC, WV-CS/W85x,86x
    "Honeywell HSDN",      // 24 HONEYWELL, HSDN-251N/P
    "Pelco-D",             // 25 GE/KALATEL, CyberDome Series
    "SmartDome",           // 26 DONGYANG ELEC, SmartDome
    "Bosch AutoDome",      // 27 BOSCH, TC8560/TC700
    "Pelco-D",             // 28 SYSMANIA, ORX1000
    "AD DeltaDome",        // 29 AD, DELTADOME
    "Hunt HTZ-2300",       // 30 HUNT, HTZ-2300
    "Pelco-D",             // 31 VESTO, RESERVED
    "NV/EZ",               // 32 RVT, EZ Protocol
    "LG dome",             // 33 LG, Dome Protocol
    "Elmo PTC-400C",       // 34 ELMO, PTC-200C/400C
    "NEC NC-21D",          // 35 NICECAM, MP-1xxx
    "C&B Tech",            // 36 C&B TECH, CNB-PTZ102
    "Controller link",     // 37 IKEGAMI, PCS i-LAN Protocol
    "Controller link",     // 38 IKEGAMI, ICD i-LAN Protocol
    "Controller link",     // 39 RESERVED
    "Controller link",     // 40 TOA, SC80 System Controller
    "Controller link",     // 41 TOSHIBA, SC1000
    "BBV",                 // 42 BBV, TC 9600 BPS
};
// clang-format on
static_assert(std::size(kModelProtocol) == kPTZModelCount, "one protocol per model number");

}  // namespace

std::span<const PtzProtocol> PtzProtocols() { return kProtocols; }

const PtzProtocol* ProtocolOfModel(uint32_t model) {
    if (model >= std::size(kModelProtocol) || kModelProtocol[model] == nullptr) return nullptr;
    return ProtocolNamed(kModelProtocol[model]);
}

const PtzProtocol* ProtocolNamed(const std::string& sName) {
    for (const PtzProtocol& p : kProtocols)
        if (sName == p.sName) return &p;
    return nullptr;
}
