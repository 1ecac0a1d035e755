// Decoding of Pelco-D, Pelco-P and extended Pelco-P frames.
//
//   Pelco-D      FF, address, command 1, command 2, data 1, data 2, sum of bytes 1-5   (7 bytes)
//   Pelco-P      A0, address - 1, data 1-4, AF, XOR of bytes 0-6                       (8 bytes)
//   ext. Pelco-P A0, address, data 1-4, AF, XOR of bytes 1-5                           (8 bytes)
//
// Pelco-D's command 2 and Pelco-P's data 2 share their bits: right 0x02, left 0x04, up 0x08,
// down 0x10, zoom tele 0x20, zoom wide 0x40; with bit 0 set they name an extended command instead
// (set / clear / go to preset, auxiliaries, patterns, automatic focus and iris) whose number is in
// the last data byte.
#include "tools/sim/decode_pelco.h"

#include <cstdio>

namespace {

using A = PTZAction;

constexpr size_t kPelcoDLength = 7;
constexpr size_t kPelcoPLength = 8;

PTZMeaning Act(A e, int8_t nLens = 0) { return {e, 0, 0, nLens, false, 0}; }
PTZMeaning Switch(A e, bool bOn, uint8_t nIndex = 0) { return {e, 0, 0, 0, bOn, nIndex}; }

void Extended(uint8_t yOp, uint8_t yNumber, unsigned nConventions, PtzFrameText* t) {
    const int32_t n = yNumber;
    switch (yOp) {
    case 0x03:
        t->tWhat = Act(A::PresetSet);
        t->nNumber = n;
        if ((nConventions & kPelcoMenuBySet95) && n == 95) t->tAlso = Switch(A::Menu, true);
        return;
    case 0x05:
        t->tWhat = Act(A::PresetClear);
        t->nNumber = n;
        return;
    case 0x07:
        t->tWhat = Act(A::PresetGo);
        t->nNumber = n;
        if ((nConventions & kPelcoMenuByGo95) && n == 95) t->tAlso = Switch(A::Menu, true);
        if ((nConventions & kPelcoAutoPanByGo99) && (n == 99 || n == 96))
            t->tAlso = Switch(A::AutoPan, n == 99);
        return;
    case 0x09:
    case 0x0B:
        t->tWhat = Switch(A::Aux, yOp == 0x09, yNumber);
        return;
    case 0x1F:
    case 0x21:
        t->tWhat = Switch(A::PatternRecord, yOp == 0x1F);
        return;
    case 0x23:
        t->tWhat = Act(A::Pattern);
        if (n != 0) t->nNumber = n;
        return;
    case 0x2B:
    case 0x2D:
        if (yNumber == 1 || yNumber == 2) {
            t->tWhat = Switch(yOp == 0x2B ? A::FocusAuto : A::IrisAuto, yNumber == 1);
            return;
        }
        break;
    default:
        break;
    }
    char s[40];
    std::snprintf(s, sizeof s, "extended 0x%02X %u", yOp, yNumber);
    t->sNote = s;
}

// The frame's actions once all bytes are read: nothing at all is a stop.
void StopIfNone(PtzFrameText* t) {
    if (t->tWhat.eAction == A::None && t->sNote.empty()) t->tWhat = Act(A::Stop);
}

// Data 1 of Pelco-P and its extension.
void PelcoPData1(uint8_t y, PtzFrameText* t) {
    if (y & 0x01) PelcoAdd(t, Act(A::Focus, +1));
    if (y & 0x02) PelcoAdd(t, Act(A::Focus, -1));
    if (y & 0x04) PelcoAdd(t, Act(A::Iris, +1));
    if (y & 0x08) PelcoAdd(t, Act(A::Iris, -1));
    if (y & 0x10) PelcoAdd(t, Switch(A::CameraPower, false));
    if (y & 0x20) PelcoAdd(t, Switch(A::AutoPan, true));
    if (y & 0x40) PelcoAdd(t, Switch(A::CameraPower, true));
}

bool PelcoPShape(const uint8_t* b, size_t n) {
    return n >= kPelcoPLength && b[0] == 0xA0 && b[6] == 0xAF;
}

}  // namespace

void PelcoAdd(PtzFrameText* t, const PTZMeaning& m) {
    if (t->tWhat.eAction == A::None) {
        t->tWhat = m;
        return;
    }
    PtzFrameText tOther;
    tOther.tWhat = m;
    const std::string s = PtzWords(tOther);
    t->sNote += (t->sNote.empty() ? "" : " ") + ("and " + s);
}

void PelcoCommand2(uint8_t yCmd2, uint8_t yData1, uint8_t yData2, unsigned nConventions,
                   PtzFrameText* t) {
    if (yCmd2 & 0x01) return Extended(yCmd2, yData2, nConventions, t);
    const int8_t nPan = (yCmd2 & 0x04) ? -1 : (yCmd2 & 0x02) ? +1 : 0;
    const int8_t nTilt = (yCmd2 & 0x08) ? +1 : (yCmd2 & 0x10) ? -1 : 0;
    const int8_t nZoom = (yCmd2 & 0x20) ? +1 : (yCmd2 & 0x40) ? -1 : 0;
    if (nPan != 0 || nTilt != 0) {
        PelcoAdd(t, {A::Move, nPan, nTilt, nZoom, false, 0});
        if (nPan != 0) t->nPanSpeed = yData1;
        if (nTilt != 0) t->nTiltSpeed = yData2;
    } else if (nZoom != 0) {
        PelcoAdd(t, Act(A::Zoom, nZoom));
    }
}

void PelcoDCommand(uint8_t yCmd1, uint8_t yCmd2, uint8_t yData1, uint8_t yData2,
                   unsigned nConventions, PtzFrameText* t) {
    PelcoCommand2(yCmd2, yData1, yData2, nConventions, t);
    if (!(yCmd2 & 0x01)) {
        if (yCmd2 & 0x80) PelcoAdd(t, Act(A::Focus, +1));
        if (yCmd1 & 0x01) PelcoAdd(t, Act(A::Focus, -1));
        if (yCmd1 & 0x02) PelcoAdd(t, Act(A::Iris, +1));
        if (yCmd1 & 0x04) PelcoAdd(t, Act(A::Iris, -1));
        // The sense bit (0x80) turns the camera and scan bits into "on".
        if (yCmd1 & 0x08) PelcoAdd(t, Switch(A::CameraPower, (yCmd1 & 0x80) != 0));
        if (yCmd1 & 0x10) PelcoAdd(t, Switch(A::AutoPan, (yCmd1 & 0x80) != 0));
    }
    StopIfNone(t);
}

bool DecodePelcoD(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < kPelcoDLength || b[0] != 0xFF) return false;
    t->nLength = kPelcoDLength;
    t->nAddress = b[1];
    t->bBadCheck = PTZCheckOf(PTZCheck::Sum8, b, 1, 6) != b[6];
    PelcoDCommand(b[2], b[3], b[4], b[5], kPelcoMenuBySet95, t);
    return true;
}

bool DecodePelcoP(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (!PelcoPShape(b, n)) return false;
    t->nLength = kPelcoPLength;
    t->nAddress = b[1] + 1u;
    t->bBadCheck = PTZCheckOf(PTZCheck::Xor, b, 0, 7) != b[7];
    PelcoCommand2(b[3], b[4], b[5], kPelcoMenuBySet95 | kPelcoAutoPanByGo99, t);
    if (!(b[3] & 0x01)) PelcoPData1(b[2], t);
    StopIfNone(t);
    return true;
}

// The first pair of auxiliaries records a pattern and the second runs it, with this family.
bool DecodeExtPelcoP(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (!PelcoPShape(b, n)) return false;
    t->nLength = kPelcoPLength;
    t->nAddress = b[1];
    t->bBadCheck = PTZCheckOf(PTZCheck::Xor, b, 1, 6) != b[7];
    PelcoCommand2(b[3], b[4], b[5], 0, t);
    if (t->tWhat.eAction == A::PatternRecord) t->tAlso = Switch(A::Aux, t->tWhat.bOn, 1);
    if (t->tWhat.eAction == A::Pattern) t->tAlso = Switch(A::Aux, true, 2);
    // Camera off is data 1 = 0x01 with no speed bytes; focus far, the same bit, carries 1, 1.
    if (b[2] == 0x01 && b[3] == 0 && b[4] == 0 && b[5] == 0) t->tWhat = Switch(A::CameraPower, false);
    else if (!(b[3] & 0x01)) PelcoPData1(b[2], t);
    StopIfNone(t);
    // A stop also ends the pattern that the second auxiliary runs.
    if (t->tWhat.eAction == A::Stop) t->tAlso = Switch(A::Aux, false, 2);
    return true;
}
