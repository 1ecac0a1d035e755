// Decoding of the ASCII camera protocols and of LG's digit-coded frames.
//
//   Panasonic    02 "AD" 2 address digits ";GC" length ':' 7-character command [':' command] 03,
//                no check; length '7' for one command, 'F' for two                    (18 or 26)
//   C&B Tech     '*', 2 id digits, 2 command and 4 option hexadecimal digits, 2 hexadecimal
//                digits of the sum of the 9 characters before them                          (11)
//   LG LPT-A100L 02, address 01-80, command 30-43, data 30-39, 03, sum of bytes 0-4 & 0x7F    (6)
//   SmartDome    "at", 3 address digits, letter, 2 digits, 2 hexadecimal digits of the sum of
//                the characters before them, CR                                              (11)
#include <cstdio>
#include <cstring>
#include <string>

#include "tools/sim/ptz_decode.h"

namespace {

using A = PTZAction;

PTZMeaning Act(A e, int8_t nLens = 0) { return {e, 0, 0, nLens, false, 0}; }
PTZMeaning Go(int8_t nPan, int8_t nTilt) { return {A::Move, nPan, nTilt, 0, false, 0}; }
PTZMeaning Switch(A e, bool bOn, uint8_t nIndex = 0) { return {e, 0, 0, 0, bOn, nIndex}; }

bool IsDigit(uint8_t y) { return y >= '0' && y <= '9'; }
bool IsHex(uint8_t y) { return IsDigit(y) || (y >= 'A' && y <= 'F'); }
int HexDigit(uint8_t y) { return IsDigit(y) ? y - '0' : y - 'A' + 10; }

// Value of n characters that must all be decimal (or hexadecimal) digits; -1 if one is not.
int32_t Number(const uint8_t* b, size_t n, int nBase) {
    int32_t v = 0;
    for (size_t i = 0; i < n; ++i) {
        if (nBase == 10 ? !IsDigit(b[i]) : !IsHex(b[i])) return -1;
        v = v * nBase + HexDigit(b[i]);
    }
    return v;
}

std::string Hex(const char* sWhat, uint32_t n, int nDigits = 2) {
    char s[48];
    std::snprintf(s, sizeof s, "%s 0x%0*X", sWhat, nDigits, n);
    return s;
}

// --- Panasonic ---------------------------------------------------------------------------------

constexpr size_t kPanasonicHead = 10;     // 02 "AD" a a ";GC" length ':'
constexpr size_t kPanasonicCommand = 7;

struct PanasonicWord {
    const char* sCommand;
    PTZMeaning tWhat;
};

const PanasonicWord kPanasonicWords[] = {
    {"2021324", Act(A::Stop)},      // pan/tilt
    {"2021224", Act(A::Stop)},      // zoom and focus
    {"0021004", Act(A::Stop)},      // iris
    {"2021228", Act(A::Zoom, +1)},
    {"202122C", Act(A::Zoom, -1)},
    {"202126A", Act(A::Focus, +1)},
    {"202126E", Act(A::Focus, -1)},
    {"0021002", Act(A::Iris, +1)},
    {"0021003", Act(A::Iris, -1)},
    {"2021300", Switch(A::AutoPan, true)},
    {"2021301", Switch(A::AutoPan, false)},
    {"2021160", Switch(A::Aux, true, 1)},
    {"2021161", Switch(A::Aux, false, 1)},
};

// Pan/tilt "202136" + direction, then "2022" + pan and tilt speed digits + "0".
bool PanasonicMove(const std::string& s1, const std::string& s2, PtzFrameText* t) {
    if (s1.compare(0, 6, "202136") != 0 || s2.compare(0, 4, "2022") != 0 || s2[6] != '0')
        return false;
    const char* sDirections = "89ABCDEF";   // left, up-left, up, up-right, right, down-right, ...
    const char* p = std::strchr(sDirections, s1[6]);
    const uint8_t yPan = static_cast<uint8_t>(s2[4]), yTilt = static_cast<uint8_t>(s2[5]);
    if (p == nullptr || yPan < '0' || yPan > '7' || yTilt < '0' || yTilt > '7')
        return false;
    constexpr int8_t kPan[] = {-1, -1, 0, +1, +1, +1, 0, -1};
    constexpr int8_t kTilt[] = {0, +1, +1, +1, 0, -1, -1, -1};
    const ptrdiff_t i = p - sDirections;
    t->tWhat = Go(kPan[i], kTilt[i]);
    if (kPan[i] != 0) t->nPanSpeed = yPan - '0';
    if (kTilt[i] != 0) t->nTiltSpeed = yTilt - '0';
    return true;
}

// Preset "00219F0", then "0022" + two hexadecimal digits + "0": below 0x64 go to the preset
// one above them, from 0x64 on set the preset one above their distance to 0x64.
bool PanasonicPreset(const std::string& s1, const std::string& s2, PtzFrameText* t) {
    if (s1 != "00219F0" || s2.compare(0, 4, "0022") != 0 || s2[6] != '0') return false;
    const int32_t n = Number(reinterpret_cast<const uint8_t*>(s2.data()) + 4, 2, 16);
    t->tWhat = Act(n < 0x64 ? A::PresetGo : A::PresetSet);
    t->nNumber = (n < 0x64 ? n : n - 0x64) + 1;
    return true;
}

void PanasonicCommands(const std::string& s1, const std::string& s2, PtzFrameText* t) {
    if (s2.empty()) {
        for (const PanasonicWord& w : kPanasonicWords)
            if (s1 == w.sCommand) {
                t->tWhat = w.tWhat;
                return;
            }
    } else if (PanasonicMove(s1, s2, t) || PanasonicPreset(s1, s2, t)) {
        return;
    }
    t->sNote = "command " + s1 + (s2.empty() ? "" : ":" + s2);
}

// --- C&B Tech ----------------------------------------------------------------------------------

constexpr size_t kCNBLength = 11;

// Lens commands A1-A3 and the pan and tilt commands B1, B2: option 01xx, 02xx or 0000 (stop).
void CNBCommand(uint32_t nCmd, uint32_t nFirst, uint32_t nSecond, PtzFrameText* t) {
    const int8_t nSense = nFirst == 1 ? +1 : nFirst == 2 ? -1 : 0;
    const bool bKnownSense = nFirst <= 2;
    switch (nCmd) {
    case 0xA0:
        if (nFirst != 0 || nSecond != 0) break;
        t->tWhat = Switch(A::FocusAuto, true);
        t->sNote = "once";
        return;
    case 0xA1:
    case 0xA2:
    case 0xA3:
        if (!bKnownSense || nSecond != 0) break;
        t->tWhat = nSense == 0 ? Act(A::Stop)
                   : Act(nCmd == 0xA1 ? A::Zoom : nCmd == 0xA2 ? A::Focus : A::Iris, nSense);
        return;
    case 0xB1:
    case 0xB2:
        if (!bKnownSense || (nSense == 0 && nSecond != 0)) break;
        if (nSense == 0) {
            t->tWhat = Act(A::Stop);
            t->sNote = nCmd == 0xB1 ? "pan" : "tilt";
        } else if (nCmd == 0xB1) {
            t->tWhat = Go(nSense, 0);
            t->nPanSpeed = static_cast<int32_t>(nSecond);
        } else {
            t->tWhat = Go(0, nSense);
            t->nTiltSpeed = static_cast<int32_t>(nSecond);
        }
        return;
    case 0xC7:
    case 0xC8:
        if (nSecond != 0) break;
        t->tWhat = Act(nCmd == 0xC7 ? A::PresetSet : A::PresetGo);
        t->nNumber = static_cast<int32_t>(nFirst);
        return;
    case 0x71:
        if (nFirst != 0 || nSecond != 0) break;
        t->sNote = "reset";
        return;
    case 0x00:
        if (nFirst != 0 || nSecond != 0) break;
        t->sNote = "camera reply";
        return;
    default:
        break;
    }
    t->sNote = Hex("command", nCmd) + Hex(" option", (nFirst << 8) | nSecond, 4);
}

// --- LG LPT-A100L ------------------------------------------------------------------------------

constexpr size_t kLPTLength = 6;

void LPTCommand(uint8_t yCmd, uint8_t yData, PtzFrameText* t) {
    const bool b0 = yData == 0x30, b1 = yData == 0x31;
    if (yCmd >= 0x36 && yCmd <= 0x41) {
        // Moves, zoom and focus: up, down, left, right, up-left, down-left, down-right, up-right,
        // zoom in, out, focus near, far.
        constexpr int8_t kPan[] = {0, 0, -1, +1, -1, -1, +1, +1};
        constexpr int8_t kTilt[] = {+1, -1, 0, 0, +1, -1, -1, +1};
        const int i = yCmd - 0x36;
        if (i < 8) t->tWhat = Go(kPan[i], kTilt[i]);
        else if (i < 10) t->tWhat = Act(A::Zoom, i == 8 ? +1 : -1);
        else t->tWhat = Act(A::Focus, i == 11 ? +1 : -1);
        if (b0 || b1) t->sNote = b0 ? "150 ms" : "500 ms";
        else t->sNote = Hex("data", yData);
        return;
    }
    if (b0 || b1) {
        switch (yCmd) {
        case 0x30: t->tWhat = Switch(A::CameraPower, b0); return;
        case 0x31: t->sNote = b0 ? "speed low" : "speed high"; return;
        case 0x32: if (b0) { t->tWhat = Switch(A::FocusAuto, true); return; } break;
        case 0x33: t->tWhat = Switch(A::AutoPan, b0); return;
        case 0x42: if (b0) { t->tWhat = Switch(A::Menu, true); return; } break;
        case 0x43: if (b0) { t->sNote = "status query"; return; } break;
        default: break;
        }
    }
    t->sNote = Hex("command", yCmd) + Hex(" data", yData);
}

// --- SmartDome ---------------------------------------------------------------------------------

constexpr size_t kSmartDomeLength = 11;

// The letter with its two digits; false for a letter the dome does not know.
bool SmartDomeCommand(uint8_t yLetter, int32_t n, PtzFrameText* t) {
    switch (yLetter) {
    case 'L': case 'R': t->tWhat = Go(yLetter == 'L' ? -1 : +1, 0); t->nPanSpeed = n; return true;
    case 'U': case 'D': t->tWhat = Go(0, yLetter == 'U' ? +1 : -1); t->nTiltSpeed = n; return true;
    case 'P': t->tWhat = Act(A::PresetSet); t->nNumber = n; return true;
    case 'G': t->tWhat = Act(A::PresetGo); t->nNumber = n; return true;
    case 'A':
        if (n % 10 > 1) break;
        t->tWhat = Switch(A::Aux, n % 10 == 1, static_cast<uint8_t>(n / 10));
        return true;
    case 'M':
        if (n > 1) break;
        t->tWhat = Switch(A::Menu, n == 1);
        return true;
    case 'T': t->tWhat = Act(A::Zoom, +1); break;
    case 'W': t->tWhat = Act(A::Zoom, -1); break;
    case 'F': t->tWhat = Act(A::Focus, +1); break;
    case 'N': t->tWhat = Act(A::Focus, -1); break;
    case 'O': t->tWhat = Act(A::Iris, +1); break;
    case 'C': t->tWhat = Act(A::Iris, -1); break;
    case 'S': t->tWhat = Act(A::Stop); break;
    default: return false;
    }
    // Letters that take no value carry 00; other digits are shown as they stand.
    if (n != 0 || t->tWhat.eAction == A::None) {
        char s[16];
        std::snprintf(s, sizeof s, "%c%02d", yLetter, n);
        t->tWhat = Act(A::None);
        t->sNote = std::string("command ") + s;
    }
    return true;
}

}  // namespace

bool DecodePSonicCS85x(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < kPanasonicHead || b[0] != 0x02 || std::memcmp(b + 1, "AD", 2) != 0 ||
        std::memcmp(b + 5, ";GC", 3) != 0 || b[9] != ':')
        return false;
    const int32_t nAddress = Number(b + 3, 2, 10);
    const size_t nBody =
        b[8] == '7' ? kPanasonicCommand : b[8] == 'F' ? 2 * kPanasonicCommand + 1 : 0;
    if (nAddress < 0 || nBody == 0 || n < kPanasonicHead + nBody + 1) return false;
    const uint8_t* pBody = b + kPanasonicHead;
    if (pBody[nBody] != 0x03) return false;
    for (size_t i = 0; i < nBody; ++i) {
        const bool bColon = i == kPanasonicCommand;
        if (bColon ? pBody[i] != ':' : !IsHex(pBody[i])) return false;
    }
    t->nLength = kPanasonicHead + nBody + 1;
    t->nAddress = static_cast<uint32_t>(nAddress);
    const std::string s1(pBody, pBody + kPanasonicCommand);
    const std::string s2 =
        nBody > kPanasonicCommand ? std::string(pBody + kPanasonicCommand + 1, pBody + nBody) : "";
    PanasonicCommands(s1, s2, t);
    return true;
}

bool DecodeCNB(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < kCNBLength || b[0] != '*') return false;
    for (size_t i = 1; i < kCNBLength; ++i)
        if (!IsHex(b[i])) return false;
    // The recorder writes the id in decimal; an id with a letter cannot be one of its cameras.
    const int32_t nId = Number(b + 1, 2, 10);
    const uint32_t nCmd = static_cast<uint32_t>(Number(b + 3, 2, 16));
    const uint32_t nOption = static_cast<uint32_t>(Number(b + 5, 4, 16));
    t->nLength = kCNBLength;
    t->nAddress = nId < 0 ? 0 : static_cast<uint32_t>(nId);
    t->bBadCheck = PTZCheckOf(PTZCheck::Sum8, b, 0, 9) != Number(b + 9, 2, 16);
    CNBCommand(nCmd, nOption >> 8, nOption & 0xFF, t);
    if (nId < 0) {
        const std::string sId = "id " + std::string(b + 1, b + 3);
        t->sNote = t->sNote.empty() ? sId : sId + " " + t->sNote;
    }
    return true;
}

bool DecodeLPTA100L(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < kLPTLength || b[0] != 0x02 || b[1] < 0x01 || b[1] > 0x80 || b[2] < 0x30 ||
        b[2] > 0x43 || b[3] < 0x30 || b[3] > 0x39 || b[4] != 0x03 || b[5] > 0x7F)
        return false;
    t->nLength = kLPTLength;
    t->nAddress = b[1];
    t->bBadCheck = PTZCheckOf(PTZCheck::Sum7, b, 0, 5) != b[5];
    LPTCommand(b[2], b[3], t);
    return true;
}

bool DecodeSmartDome(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < kSmartDomeLength || b[0] != 'a' || b[1] != 't' || b[10] != '\r') return false;
    const int32_t nAddress = Number(b + 2, 3, 10);
    const int32_t nValue = Number(b + 6, 2, 10);
    const int32_t nCheck = Number(b + 8, 2, 16);
    if (nAddress < 0 || nValue < 0 || nCheck < 0 || !SmartDomeCommand(b[5], nValue, t))
        return false;
    t->nLength = kSmartDomeLength;
    t->nAddress = static_cast<uint32_t>(nAddress);
    t->bBadCheck = PTZCheckOf(PTZCheck::Sum8, b, 0, 8) != nCheck;
    return true;
}
