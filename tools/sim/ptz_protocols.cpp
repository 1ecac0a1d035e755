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
};
// clang-format on

// The protocol of each model number, by name; null: none.
// clang-format off
constexpr const char* kModelProtocol[] = {
    /*  0 */ nullptr,           /*  1 */ "NV/EZ",           /*  2 */ nullptr,
    /*  3 */ nullptr,           /*  4 */ "Samsung SCC-641", /*  5 */ nullptr,
    /*  6 */ nullptr,           /*  7 */ "Pelco-D",         /*  8 */ nullptr,
    /*  9 */ nullptr,           /* 10 */ nullptr,           /* 11 */ nullptr,
    /* 12 */ "Pelco-D",         /* 13 */ "Pelco-D",         /* 14 */ "Pelco-D",
    /* 15 */ nullptr,           /* 16 */ "Canon VC-C4",     /* 17 */ "Pelco-P",
    /* 18 */ "Pelco-P",         /* 19 */ "Pelco-P",         /* 20 */ "Pelco-EP",
    /* 21 */ "Pelco-EP",        /* 22 */ "Pelco-EP",        /* 23 */ nullptr,
    /* 24 */ "Honeywell HSDN",  /* 25 */ "Pelco-D",         /* 26 */ nullptr,
    /* 27 */ "Bosch AutoDome",  /* 28 */ "Pelco-D",         /* 29 */ nullptr,
    /* 30 */ nullptr,           /* 31 */ "Pelco-D",         /* 32 */ "NV/EZ",
    /* 33 */ "LG dome",         /* 34 */ nullptr,           /* 35 */ nullptr,
    /* 36 */ nullptr,           /* 37 */ nullptr,           /* 38 */ nullptr,
    /* 39 */ nullptr,           /* 40 */ nullptr,           /* 41 */ nullptr,
    /* 42 */ "BBV",
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
