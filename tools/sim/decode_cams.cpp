// Decoding of Samsung SCC-641, Bosch AutoDome and Canon VC-C4 frames.
//
//   SCC-641   A0, FE, address, group, cmd 1, cmd 2, data 1, data 2, 0xFF - sum of bytes 1-7  (9)
//   AutoDome  87, address - 1 in two 7-bit bytes, 05, tilt/zoom speed, pan speed and lens bits,
//             direction bits, sum of bytes 0-6 & 0x7F                                         (8)
//             86, address bytes, 07, preset bits 7-9 and action (4 store, 5 go), preset bits
//             0-6, check                                                                       (7)
//   VC-C4     FF, two ASCII address digits, 00, command, ASCII arguments, EF; no check  (6 + n)
#include <cstdio>

#include "tools/sim/decode_pelco.h"

namespace {

using A = PTZAction;

constexpr size_t kSamsungLength = 9;
constexpr size_t kCanonMinLength = 6;
constexpr size_t kCanonMaxLength = 32;

PTZMeaning Act(A e, int8_t nLens = 0) { return {e, 0, 0, nLens, false, 0}; }
PTZMeaning Switch(A e, bool bOn, uint8_t nIndex = 0) { return {e, 0, 0, 0, bOn, nIndex}; }

std::string Hex(const char* sWhat, uint32_t n) {
    char s[48];
    std::snprintf(s, sizeof s, "%s 0x%02X", sWhat, n);
    return s;
}

// --- Samsung SCC-641 ---------------------------------------------------------------------------

void SamsungLens(const uint8_t* b, PtzFrameText* t) {
    const uint8_t yDir = b[5];
    const int8_t nPan = (yDir & 0x01) ? -1 : (yDir & 0x02) ? +1 : 0;
    const int8_t nTilt = (yDir & 0x04) ? +1 : (yDir & 0x08) ? -1 : 0;
    if (nPan != 0 || nTilt != 0) {
        PelcoAdd(t, {A::Move, nPan, nTilt, 0, false, 0});
        if (nPan != 0) t->nPanSpeed = b[6];
        if (nTilt != 0) t->nTiltSpeed = b[7];
    }
    const uint8_t y = b[4];
    if (y & 0x01) PelcoAdd(t, Act(A::Focus, +1));
    if (y & 0x02) PelcoAdd(t, Act(A::Focus, -1));
    if (y & 0x04) PelcoAdd(t, Switch(A::FocusAuto, true));
    if (y & 0x08) PelcoAdd(t, Act(A::Iris, +1));
    if (y & 0x10) PelcoAdd(t, Act(A::Iris, -1));
    if (y & 0x20) PelcoAdd(t, Act(A::Zoom, +1));
    if (y & 0x40) PelcoAdd(t, Act(A::Zoom, -1));
    if (t->tWhat.eAction == A::None) t->tWhat = Act(A::Stop);
}

void SamsungFunction(const uint8_t* b, PtzFrameText* t) {
    const uint8_t yCmd1 = b[4], yCmd2 = b[5];
    switch (yCmd1) {
    case 0x1A: t->tWhat = Switch(A::AutoPan, yCmd2 != 0); return;
    case 0x17: t->tWhat = Switch(A::Menu, yCmd2 != 0); return;
    case 0x18: t->tWhat = Act(A::MenuEnter); return;
    case 0x50: t->tWhat = Act(A::PresetSet); break;
    case 0x19: t->tWhat = Act(A::PresetGo); break;
    case 0x1B: t->tWhat = Act(A::Pattern); break;
    default: t->sNote = Hex("function", yCmd1) + Hex("", yCmd2); return;
    }
    t->nNumber = yCmd2;
}

// --- Bosch AutoDome ----------------------------------------------------------------------------

void AutoDomeLens(const uint8_t* b, PtzFrameText* t) {
    const uint8_t yBits = b[6];
    const int8_t nPan = (yBits & 0x02) ? -1 : (yBits & 0x01) ? +1 : 0;
    const int8_t nTilt = (yBits & 0x08) ? +1 : (yBits & 0x04) ? -1 : 0;
    if (nPan != 0 || nTilt != 0) {
        PelcoAdd(t, {A::Move, nPan, nTilt, 0, false, 0});
        if (nPan != 0) t->nPanSpeed = (b[5] >> 3) & 0x0F;
        if (nTilt != 0) t->nTiltSpeed = b[4] & 0x0F;
    }
    if (yBits & 0x30) {
        PelcoAdd(t, Act(A::Zoom, (yBits & 0x20) ? +1 : -1));
        t->nZoomSpeed = (b[4] >> 4) & 0x07;
    }
    if (yBits & 0x40) PelcoAdd(t, Act(A::Focus, -1));
    if (b[5] & 0x01) PelcoAdd(t, Act(A::Focus, +1));
    if (b[5] & 0x04) PelcoAdd(t, Act(A::Iris, +1));
    if (b[5] & 0x02) PelcoAdd(t, Act(A::Iris, -1));
    if (t->tWhat.eAction == A::None) t->tWhat = Act(A::Stop);
}

void AutoDomePreset(const uint8_t* b, PtzFrameText* t) {
    t->nNumber = static_cast<int32_t>((static_cast<uint32_t>(b[4] & 0x70) << 3) | b[5]);
    switch (b[4] & 0x0F) {
    case 4: t->tWhat = Act(A::PresetSet); return;
    case 5: t->tWhat = Act(A::PresetGo); return;
    default: t->sNote = Hex("preset action", b[4] & 0x0Fu); return;
    }
}

// --- Canon VC-C4 -------------------------------------------------------------------------------

bool IsDigit(uint8_t y) { return y >= '0' && y <= '9'; }

// Value of up to 8 hexadecimal digits, or -1.
int64_t HexValue(const std::string& s) {
    if (s.empty() || s.size() > 8) return -1;
    int64_t v = 0;
    for (char c : s) {
        int d;
        if (c >= '0' && c <= '9') d = c - '0';
        else if (c >= 'A' && c <= 'F') d = c - 'A' + 10;
        else return -1;
        v = v * 16 + d;
    }
    return v;
}

// The command byte with its argument characters; a form this decoder does not know is noted.
void CanonCommand(uint8_t yCmd, const std::string& a, PtzFrameText* t) {
    const bool b1 = a.size() == 1;
    switch (yCmd) {
    case 0x50:
    case 0x51:
        if (HexValue(a) < 0) break;
        t->sNote = std::string(yCmd == 0x50 ? "pan speed " : "tilt speed ") +
                   std::to_string(HexValue(a));
        return;
    case 0x60:
        if (a.size() != 2 || a[0] < '0' || a[0] > '2' || a[1] < '0' || a[1] > '2') break;
        if (a == "00") t->tWhat = Act(A::Stop);
        else t->tWhat = {A::Move, static_cast<int8_t>(a[0] == '1' ? +1 : a[0] == '2' ? -1 : 0),
                         static_cast<int8_t>(a[1] == '1' ? +1 : a[1] == '2' ? -1 : 0), 0, false, 0};
        return;
    case 0xA1:
        // "1" is manual focus, which is what a focus stop and automatic focus off send.
        if (!b1 || a[0] < '0' || a[0] > '3') break;
        if (a[0] == '0' || a[0] == '1') t->tWhat = Switch(A::FocusAuto, a[0] == '0');
        if (a[0] == '1') t->tAlso = Act(A::Stop);
        if (a[0] >= '2') t->tWhat = Act(A::Focus, a[0] == '3' ? +1 : -1);
        return;
    case 0xA2:
        if (!b1 || a[0] < '0' || a[0] > '4') break;
        if (a[0] == '0') t->tWhat = Act(A::Stop);
        else t->tWhat = Act(A::Zoom, (a[0] - '0') % 2 == 0 ? +1 : -1);
        if (a[0] >= '3') t->sNote = "fast";
        return;
    case 0xA5:
        // Automatic iris off also ends a held iris step.
        if (a == "2" || a == "3") t->tWhat = Switch(A::IrisAuto, a == "2");
        if (a == "3") t->tAlso = Act(A::Stop);
        if (a.size() == 3 && a[0] == '9' && HexValue(a.substr(1)) >= 0) {
            t->tWhat = Act(A::Iris);
            t->sNote = "level 0x" + a.substr(1);
        }
        if (t->tWhat.eAction != A::None) return;
        break;
    case 0x89:
    case 0x8A:
        if (!b1 || !IsDigit(static_cast<uint8_t>(a[0]))) break;
        t->tWhat = Act(yCmd == 0x89 ? A::PresetSet : A::PresetGo);
        t->nNumber = a[0] - '0';
        return;
    case 0x90:
        if (a != "0" && a != "1") break;
        t->tWhat = Switch(A::CameraPower, a == "0");
        t->tAlso = Switch(A::Aux, a == "0", 1);
        return;
    case 0x8F:
        // The second auxiliary output, switched along with the camera power.
        if (a != "0" && a != "1") break;
        t->tWhat = Switch(A::Aux, a == "1", 2);
        t->tAlso = Switch(A::CameraPower, a == "1");
        return;
    default:
        break;
    }
    t->sNote = Hex("command", yCmd) + (a.empty() ? "" : " \"" + a + "\"");
}

}  // namespace

bool DecodeSCC641(const uint8_t* b, size_t n, PtzFrameText* t) {
    // Only the lens and function groups exist: another byte there is some other protocol's.
    if (n < kSamsungLength || b[0] != 0xA0 || b[1] != 0xFE || (b[3] != 0x01 && b[3] != 0x03))
        return false;
    t->nLength = kSamsungLength;
    t->nAddress = b[2];
    t->bBadCheck = PTZCheckOf(PTZCheck::Complement, b, 1, 8) != b[8];
    if (b[3] == 0x01) SamsungLens(b, t);
    else SamsungFunction(b, t);
    return true;
}

bool DecodeAutoDome(const uint8_t* b, size_t n, PtzFrameText* t) {
    // The start byte counts the bytes after it: 0x87 lens frames, 0x86 preset frames.
    const uint8_t yStart = b[0];
    if (yStart != 0x87 && yStart != 0x86) return false;
    const size_t nLength = (yStart & 0x7Fu) + 1;
    if (n < nLength) return false;
    for (size_t i = 1; i < nLength; ++i)
        if (b[i] >= 0x80) return false;   // only the start byte has bit 7
    const uint8_t yOpcode = b[3];
    t->nLength = nLength;
    t->nAddress = ((static_cast<uint32_t>(b[1]) << 7) | b[2]) + 1;
    t->bBadCheck = PTZCheckOf(PTZCheck::Sum7, b, 0, static_cast<uint32_t>(nLength - 1)) != b[nLength - 1];
    if (yStart == 0x87 && yOpcode == 0x05) AutoDomeLens(b, t);
    else if (yStart == 0x86 && yOpcode == 0x07) AutoDomePreset(b, t);
    else t->sNote = Hex("opcode", yOpcode);
    return true;
}

bool DecodeCanonVCC4(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < kCanonMinLength || b[0] != 0xFF || !IsDigit(b[1]) || !IsDigit(b[2]) || b[3] != 0x00)
        return false;
    // Arguments are printable ASCII up to the terminator.
    size_t nEnd = 5;
    while (nEnd < n && nEnd < kCanonMaxLength && b[nEnd] != 0xEF) {
        if (b[nEnd] < 0x20 || b[nEnd] > 0x7E) return false;
        ++nEnd;
    }
    if (nEnd >= n || b[nEnd] != 0xEF) return false;
    t->nLength = nEnd + 1;
    t->nAddress = static_cast<uint32_t>((b[1] - '0') * 10 + (b[2] - '0'));
    CanonCommand(b[4], std::string(b + 5, b + nEnd), t);
    return true;
}
