// Decoding of the 11-byte speed-dome frames of NEC's command set, in its two framings.
//
//   NEC NC-21D (and NiceCam)      A0, address, 00, six command bytes, AF, check
//   SK2107 (and D-MAX, Wonwoo)    55, 00, address, six command bytes, AA, check
//
// The check is 0xFF minus the 8-bit sum of bytes 1-8. Command bytes: command 1 (01 focus far, 02
// near, 08 iris close, 10 open), command 2 (Pelco-D's direction and zoom bits; with bit 0 set a
// function), data 1 and 2 (pan and tilt speed, or a function's argument), data 3 (zoom or focus
// speed), data 4.
#include <cstdio>

#include "tools/sim/decode_pelco.h"

namespace {

using A = PTZAction;

constexpr size_t kLength = 11;

PTZMeaning Act(A e, int8_t nLens = 0) { return {e, 0, 0, nLens, false, 0}; }
PTZMeaning Switch(A e, bool bOn) { return {e, 0, 0, 0, bOn, 0}; }

void Note(PtzFrameText* t, const std::string& s) { t->sNote += (t->sNote.empty() ? "" : " ") + s; }

std::string Hex(const char* sWhat, uint32_t n) {
    char s[48];
    std::snprintf(s, sizeof s, "%s 0x%02X", sWhat, n);
    return s;
}

// Command 2 with bit 0 set, with its data bytes.
void Function(const uint8_t* p, PtzFrameText* t) {
    const uint8_t yCmd1 = p[0], yFunc = p[1], yData1 = p[2], yData2 = p[3];
    if (yCmd1 != 0) Note(t, Hex("command 1", yCmd1));
    switch (yFunc) {
    case 0x03:
    case 0x07:
        t->tWhat = Act(yFunc == 0x03 ? A::PresetSet : A::PresetGo);
        t->nNumber = yData1;
        return;
    case 0x1B:
        t->tWhat = Switch(A::AutoPan, true);
        return;
    case 0x71:
        t->tWhat = Act(A::Pattern);
        t->nNumber = yData2 + 1;
        return;
    case 0x73:
        Note(t, "stop pattern");
        return;
    case 0xB1:
        if (yData1 > 1) break;
        t->tWhat = Switch(A::Menu, yData1 == 0);
        return;
    default:
        break;
    }
    Note(t, Hex("function", yFunc) + Hex("", yData1));
}

// The six command bytes: a function, or every move and lens action they carry, "stop" when none.
void NecCommand(const uint8_t* p, PtzFrameText* t) {
    const uint8_t yCmd1 = p[0], yCmd2 = p[1];
    if (yCmd2 & 0x01) return Function(p, t);
    PelcoCommand2(yCmd2, p[2], p[3], 0, t);
    if (yCmd2 & 0x60) t->nZoomSpeed = p[4];
    if (yCmd1 & 0x01) PelcoAdd(t, Act(A::Focus, +1));
    if (yCmd1 & 0x02) PelcoAdd(t, Act(A::Focus, -1));
    if (yCmd1 & 0x10) PelcoAdd(t, Act(A::Iris, +1));
    if (yCmd1 & 0x08) PelcoAdd(t, Act(A::Iris, -1));
    if (yCmd1 & 0x03) Note(t, "speed " + std::to_string(p[4]));
    if (yCmd1 & 0xE4) Note(t, Hex("command 1", yCmd1));
    if (yCmd2 & 0x80) Note(t, Hex("command 2", yCmd2));
    if (t->tWhat.eAction == A::None && t->sNote.empty()) t->tWhat = Act(A::Stop);
}

void Frame(const uint8_t* b, uint32_t nAddress, PtzFrameText* t) {
    t->nLength = kLength;
    t->nAddress = nAddress;
    t->bBadCheck = PTZCheckOf(PTZCheck::Complement, b, 1, 9) != b[10];
    NecCommand(b + 3, t);
}

}  // namespace

bool DecodeNEC_NC21(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < kLength || b[0] != 0xA0 || b[2] != 0x00 || b[9] != 0xAF) return false;
    Frame(b, b[1], t);
    return true;
}

bool DecodeSK2107(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < kLength || b[0] != 0x55 || b[1] != 0x00 || b[9] != 0xAA) return false;
    Frame(b, b[2], t);
    return true;
}
