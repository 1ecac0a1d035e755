// Decoding of the makes that carry the Pelco command set in frames of their own.
//
//   HSDN-251N/P  A5, address, command 1, command 2, data 1, data 2, sum of bytes 1-5      (7)
//   BBV          B0, address, command 1, command 2, data 1, data 2, BF, XOR of bytes 0-6 (8)
//   NV / EZ      E5, 10 | address bits 8-11, address 0-7, command, data 1, data 2,
//                (sum of bytes 0-5) XOR A5                                                (7)
//   LG dome      E5, 01, address, command 1, command 2, data 1, data 2, sum of bytes 0-6  (8)
#include "tools/sim/decode_pelco.h"

namespace {

using A = PTZAction;

PTZMeaning Act(A e, int8_t nLens = 0) { return {e, 0, 0, nLens, false, 0}; }
PTZMeaning Switch(A e, bool bOn) { return {e, 0, 0, 0, bOn, 0}; }

}  // namespace

bool DecodeHSDN251NP(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < 7 || b[0] != 0xA5) return false;
    t->nLength = 7;
    t->nAddress = b[1];
    t->bBadCheck = PTZCheckOf(PTZCheck::Sum8, b, 1, 6) != b[6];
    PelcoDCommand(b[2], b[3], b[4], b[5], kPelcoMenuBySet95, t);
    return true;
}

bool DecodeBBV(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < 8 || b[0] != 0xB0 || b[6] != 0xBF) return false;
    t->nLength = 8;
    t->nAddress = b[1];
    t->bBadCheck = PTZCheckOf(PTZCheck::Xor, b, 0, 7) != b[7];
    PelcoCommand2(b[3], b[4], b[5], kPelcoMenuBySet95 | kPelcoAutoPanByGo99, t);
    if (!(b[3] & 0x01)) {
        const uint8_t y = b[2];
        if (y & 0x01) PelcoAdd(t, Act(A::Focus, -1));
        if (y & 0x02) PelcoAdd(t, Act(A::Focus, +1));
        if (y & 0x04) PelcoAdd(t, Act(A::Iris, +1));
        if (y & 0x08) PelcoAdd(t, Act(A::Iris, -1));
        if (y & 0x10) PelcoAdd(t, Switch(A::CameraPower, false));
        if (y & 0x40) PelcoAdd(t, Switch(A::CameraPower, true));
    }
    if (t->tWhat.eAction == A::None && t->sNote.empty()) t->tWhat = Act(A::Stop);
    return true;
}

bool DecodeRvtEZ(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < 7 || b[0] != 0xE5 || (b[1] & 0xF0) != 0x10) return false;
    t->nLength = 7;
    t->nAddress = (static_cast<uint32_t>(b[1] & 0x0F) << 8) | b[2];
    t->bBadCheck = static_cast<uint8_t>(PTZCheckOf(PTZCheck::Sum8, b, 0, 6) ^ 0xA5) != b[6];
    const uint8_t yCmd = b[3];
    if (yCmd == 0x01) {
        // The lens and power command: what it does is in data 1.
        switch (b[4]) {
        case 0x01: t->tWhat = Act(A::Focus, -1); break;
        case 0x02: t->tWhat = Act(A::Iris, +1); break;
        case 0x04: t->tWhat = Act(A::Iris, -1); break;
        case 0x88: t->tWhat = Switch(A::CameraPower, true); break;
        case 0x08: t->tWhat = Switch(A::CameraPower, false); break;
        default: t->sNote = "lens command " + std::to_string(b[4]); break;
        }
        return true;
    }
    PelcoCommand2(yCmd, b[4], b[5], kPelcoMenuByGo95 | kPelcoAutoPanByGo99, t);
    if (!(yCmd & 0x01) && (yCmd & 0x80)) PelcoAdd(t, Act(A::Focus, +1));
    if (t->tWhat.eAction == A::None && t->sNote.empty()) t->tWhat = Act(A::Stop);
    return true;
}

bool DecodeLGDome(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < 8 || b[0] != 0xE5 || b[1] != 0x01) return false;
    t->nLength = 8;
    t->nAddress = b[2];
    t->bBadCheck = PTZCheckOf(PTZCheck::Sum8, b, 0, 7) != b[7];
    PelcoDCommand(b[3], b[4], b[5], b[6], kPelcoMenuByGo95 | kPelcoAutoPanByGo99, t);
    return true;
}
