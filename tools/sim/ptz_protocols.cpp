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
    {"Controller link", DecodeControllerLink, true},
};
// clang-format on

// Index into kProtocols of each model number; -1: none.
// clang-format off
constexpr int kModelProtocol[] = {
    /*  0 NONE */ -1, /*  1 */ -1, /*  2 */ -1, /*  3 */ -1, /*  4 SCC-641 */ 3,
    /*  5 */ -1, /*  6 */ -1, /*  7 */ -1, /*  8 */ -1, /*  9 */ -1, /* 10 */ -1, /* 11 */ -1,
    /* 12-14 Pelco-D */ 0, 0, 0, /* 15 */ -1, /* 16 VC-C4 */ 5,
    /* 17-19 Pelco-P */ 1, 1, 1, /* 20-22 Pelco-EP */ 2, 2, 2,
    /* 23 */ -1, /* 24 */ -1, /* 25 */ -1, /* 26 */ -1, /* 27 AutoDome */ 4,
    /* 28 */ -1, /* 29 */ -1, /* 30 */ -1, /* 31 */ -1, /* 32 */ -1, /* 33 */ -1, /* 34 */ -1,
    /* 35 */ -1, /* 36 */ -1,
    /* 37-41 controller link */ 6, 6, 6, 6, 6,
    /* 42 */ -1,
};
// clang-format on
static_assert(std::size(kModelProtocol) == kPTZModelCount, "one protocol per model number");

}  // namespace

std::span<const PtzProtocol> PtzProtocols() { return kProtocols; }

const PtzProtocol* ProtocolOfModel(uint32_t model) {
    if (model >= std::size(kModelProtocol) || kModelProtocol[model] < 0) return nullptr;
    return &kProtocols[kModelProtocol[model]];
}

const PtzProtocol* ProtocolNamed(const std::string& sName) {
    for (const PtzProtocol& p : kProtocols)
        if (sName == p.sName) return &p;
    return nullptr;
}
