// Decoding of American Dynamics DeltaDome and Merit Lilin PIH-7000 frames.
//
//   DeltaDome  A (1-63), command 81-93, check                                               (3)
//              A, C0, direction 81/82/84/85, speed, check                                    (5)
//              A, C7, 01 store / 02 go, preset, check                                        (5)
//              A, CC, 03-05 (patterns 1-3), check                                            (4)
//              check = 0 minus the 8-bit sum of the bytes before it
//   Lilin      A (1-63), keys, data: keys right 01, left 02, up 04, down 08, zoom tele 10,
//              wide 20, focus far 40, near 80, with data 80 | tilt speed << 3 | pan speed, or FF
//              for keys without speeds; keys 00 with data FF stop, 00 iris open, 01 iris close,
//              0A automatic pan toggle                                                       (3)
//              40 + A or 80 + A, preset, 00: go to or store a preset                         (3)
//              no check byte
#include "tools/sim/decode_pelco.h"

namespace {

using A = PTZAction;

PTZMeaning Act(A e, int8_t nLens = 0) { return {e, 0, 0, nLens, false, 0}; }
PTZMeaning Switch(A e, bool bOn) { return {e, 0, 0, 0, bOn, 0}; }
PTZMeaning Go(int8_t nPan, int8_t nTilt) { return {A::Move, nPan, nTilt, 0, false, 0}; }

// --- American Dynamics DeltaDome ---------------------------------------------------------------

constexpr uint8_t kADAddressMax = 63;

struct ADCommand {
    uint8_t yCode;
    PTZMeaning tWhat;
    const char* sNote;
};

// The 3-byte commands; the speed move's directions are the four moves among them.
const ADCommand kADCommands[] = {
    {0x81, Go(-1, 0), ""},          {0x82, Go(+1, 0), ""},       {0x83, Act(A::Stop), "pan"},
    {0x84, Go(0, +1), ""},          {0x85, Go(0, -1), ""},       {0x86, Act(A::Stop), "tilt"},
    {0x87, Act(A::Focus, -1), ""},  {0x88, Act(A::Focus, +1), ""}, {0x89, Act(A::Stop), "focus"},
    {0x8A, Act(A::Zoom, +1), ""},   {0x8B, Act(A::Zoom, -1), ""},  {0x8C, Act(A::Stop), "zoom"},
    {0x90, Act(A::Iris, +1), ""},   {0x91, Act(A::Iris, -1), ""},  {0x92, Act(A::Stop), "iris"},
    {0x93, Act(A::Stop), "all"},
};

const ADCommand* ADCommandOf(uint8_t y) {
    for (const ADCommand& c : kADCommands)
        if (c.yCode == y) return &c;
    return nullptr;
}

// Length of the frame that the command byte (b[1]) starts, 0 when it starts none; the byte after
// it (b[2]) must fit that kind of frame.
size_t ADLength(const uint8_t* b) {
    switch (b[1]) {
    case 0xC0: {
        const ADCommand* c = ADCommandOf(b[2]);
        return c != nullptr && c->tWhat.eAction == A::Move ? 5 : 0;
    }
    case 0xC7: return b[2] == 0x01 || b[2] == 0x02 ? 5 : 0;
    case 0xCC: return b[2] >= 0x03 && b[2] <= 0x05 ? 4 : 0;
    default: return ADCommandOf(b[1]) != nullptr ? 3 : 0;
    }
}

// --- Merit Lilin -------------------------------------------------------------------------------

constexpr uint8_t kLilinAddressMask = 0x3F;
constexpr uint8_t kLilinNoSpeeds = 0xFF;

// The keys of one axis: +1, -1 or 0; -2 when both are held, which no keyboard sends.
int8_t KeyAxis(uint8_t yKeys, uint8_t yPlus, uint8_t yMinus) {
    const bool bPlus = (yKeys & yPlus) != 0, bMinus = (yKeys & yMinus) != 0;
    if (bPlus && bMinus) return -2;
    return bPlus ? +1 : bMinus ? -1 : 0;
}

bool LilinKeys(uint8_t yKeys, uint8_t yData, PtzFrameText* t) {
    const int8_t nPan = KeyAxis(yKeys, 0x01, 0x02), nTilt = KeyAxis(yKeys, 0x04, 0x08);
    const int8_t nZoom = KeyAxis(yKeys, 0x10, 0x20), nFocus = KeyAxis(yKeys, 0x40, 0x80);
    if (nPan == -2 || nTilt == -2 || nZoom == -2 || nFocus == -2) return false;
    if (nPan != 0 || nTilt != 0) {
        // Speeds: bit 7 set, bit 6 clear.
        if ((yData & 0xC0) != 0x80) return false;
        PelcoAdd(t, {A::Move, nPan, nTilt, nZoom, false, 0});
        if (nPan != 0) t->nPanSpeed = yData & 0x07;
        if (nTilt != 0) t->nTiltSpeed = (yData >> 3) & 0x07;
    } else {
        if (yData != kLilinNoSpeeds) return false;
        if (nZoom != 0) PelcoAdd(t, Act(A::Zoom, nZoom));
    }
    if (nFocus != 0) PelcoAdd(t, Act(A::Focus, nFocus));
    return true;
}

// Keys 00: the command is the data byte.
bool LilinCommand(uint8_t yData, PtzFrameText* t) {
    switch (yData) {
    case 0xFF: t->tWhat = Act(A::Stop); return true;
    case 0x00: t->tWhat = Act(A::Iris, +1); return true;
    case 0x01: t->tWhat = Act(A::Iris, -1); return true;
    case 0x0A:
        // One key switches automatic pan on and off.
        t->tWhat = Switch(A::AutoPan, true);
        t->tAlso = Switch(A::AutoPan, false);
        t->sNote = "toggles";
        return true;
    default: return false;
    }
}

}  // namespace

bool DecodeADDeltaDome(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < 3 || b[0] == 0 || b[0] > kADAddressMax) return false;
    const size_t nLength = ADLength(b);
    if (nLength == 0 || n < nLength) return false;
    t->nLength = nLength;
    t->nAddress = b[0];
    t->bBadCheck =
        PTZCheckOf(PTZCheck::Negate, b, 0, static_cast<uint32_t>(nLength - 1)) != b[nLength - 1];
    switch (b[1]) {
    case 0xC0:
        t->tWhat = ADCommandOf(b[2])->tWhat;
        if (t->tWhat.nPan != 0) t->nPanSpeed = b[3];
        if (t->tWhat.nTilt != 0) t->nTiltSpeed = b[3];
        break;
    case 0xC7:
        t->tWhat = Act(b[2] == 0x01 ? A::PresetSet : A::PresetGo);
        t->nNumber = b[3];
        break;
    case 0xCC:
        t->tWhat = Act(A::Pattern);
        t->nNumber = b[2] - 0x02;
        break;
    default: {
        const ADCommand* c = ADCommandOf(b[1]);
        t->tWhat = c->tWhat;
        t->sNote = c->sNote;
        break;
    }
    }
    return true;
}

bool DecodeMLPIH7x00(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < 3) return false;
    const uint8_t yBank = b[0] & ~kLilinAddressMask, yAddress = b[0] & kLilinAddressMask;
    if (yAddress == 0 || yBank == 0xC0) return false;
    t->nLength = 3;
    t->nAddress = yAddress;
    if (yBank != 0) {
        // Presets are numbered from 1 and end in 00.
        if (b[1] == 0 || b[2] != 0) return false;
        t->tWhat = Act(yBank == 0x40 ? A::PresetGo : A::PresetSet);
        t->nNumber = b[1];
        return true;
    }
    return b[1] == 0 ? LilinCommand(b[2], t) : LilinKeys(b[1], b[2], t);
}
