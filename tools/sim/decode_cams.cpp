// Decoding of Samsung SCC-641, Bosch AutoDome and Canon VC-C4 frames into words.
//
//   SCC-641   A0, FE, address, group, cmd 1, cmd 2, data 1, data 2, 0xFF - sum of bytes 1-7  (9)
//   AutoDome  87, address - 1 in two 7-bit bytes, 05, tilt/zoom speed, pan speed and lens bits,
//             direction bits, sum of bytes 0-6 & 0x7F                                         (8)
//             86, address bytes, 07, preset bits 7-9 and action (4 store, 5 go), preset bits
//             0-6, check                                                                       (7)
//   VC-C4     FF, two ASCII address digits, 00, command, ASCII arguments, EF; no check  (6 + n)
//
// The words follow the simulator's other decoders: "stop", "pan left 64", "tilt up 7",
// "move up left 15", "zoom tele speed 7", "focus near", "iris open", "go to preset 5",
// "set preset 3", "menu on", "pan speed 800", "iris level 0x3A", "zoom tele fast", ...
#include <cstdio>

#include "tools/sim/ptz_decode.h"

namespace {

constexpr size_t kSamsungLength = 9;
constexpr size_t kCanonMinLength = 6;
constexpr size_t kCanonMaxLength = 32;

void Append(std::string* s, const std::string& w) {
    if (!s->empty()) *s += ' ';
    *s += w;
}

std::string Number(const std::string& sWords, uint32_t n) {
    return sWords + " " + std::to_string(n);
}

std::string Hex(const char* sWhat, uint32_t n) {
    char s[48];
    std::snprintf(s, sizeof s, "%s 0x%02X", sWhat, n);
    return s;
}

// A move from its pan and tilt direction words (null: the axis stands still) and speeds
// (negative: the frame carries none).
void Move(const char* sPan, const char* sTilt, int32_t nPanSpeed, int32_t nTiltSpeed,
          std::string* s) {
    std::string w;
    int32_t nSpeed = -1;
    if (sPan && sTilt) {
        w = std::string("move ") + sTilt + " " + sPan;
        if (nPanSpeed == nTiltSpeed)
            nSpeed = nPanSpeed;
        else
            w += " pan " + std::to_string(nPanSpeed) + " tilt " + std::to_string(nTiltSpeed);
    } else if (sPan) {
        w = std::string("pan ") + sPan;
        nSpeed = nPanSpeed;
    } else if (sTilt) {
        w = std::string("tilt ") + sTilt;
        nSpeed = nTiltSpeed;
    } else {
        return;
    }
    Append(s, nSpeed >= 0 ? Number(w, static_cast<uint32_t>(nSpeed)) : w);
}

// --- Samsung SCC-641 ---------------------------------------------------------------------------

std::string SamsungLens(const uint8_t* b) {
    std::string s;
    const uint8_t yDir = b[5];
    Move((yDir & 0x01) ? "left" : (yDir & 0x02) ? "right" : nullptr,
         (yDir & 0x04) ? "up" : (yDir & 0x08) ? "down" : nullptr, b[6], b[7], &s);
    static const struct { uint8_t yBit; const char* sWords; } kCmd1[] = {
        {0x01, "focus far"}, {0x02, "focus near"}, {0x04, "auto focus on"}, {0x08, "iris open"},
        {0x10, "iris close"}, {0x20, "zoom tele"}, {0x40, "zoom wide"},
    };
    for (const auto& c : kCmd1)
        if (b[4] & c.yBit) Append(&s, c.sWords);
    return s.empty() ? "stop" : s;
}

std::string SamsungFunction(const uint8_t* b) {
    const uint8_t yCmd1 = b[4], yCmd2 = b[5];
    switch (yCmd1) {
    case 0x1A: return yCmd2 ? "auto pan on" : "auto pan off";
    case 0x17: return yCmd2 ? "menu on" : "menu off";
    case 0x18: return "menu enter";
    case 0x50: return Number("set preset", yCmd2);
    case 0x19: return Number("go to preset", yCmd2);
    case 0x1B: return Number("run pattern", yCmd2);
    default: {
        char s[48];
        std::snprintf(s, sizeof s, "function 0x%02X 0x%02X", yCmd1, yCmd2);
        return s;
    }
    }
}

// --- Bosch AutoDome ----------------------------------------------------------------------------

std::string AutoDomeLens(const uint8_t* b) {
    std::string s;
    const uint8_t yBits = b[6];
    const int32_t nTilt = b[4] & 0x0F, nZoom = (b[4] >> 4) & 0x07, nPan = (b[5] >> 3) & 0x0F;
    Move((yBits & 0x02) ? "left" : (yBits & 0x01) ? "right" : nullptr,
         (yBits & 0x08) ? "up" : (yBits & 0x04) ? "down" : nullptr, nPan, nTilt, &s);
    if (yBits & 0x20) Append(&s, Number("zoom tele speed", static_cast<uint32_t>(nZoom)));
    if (yBits & 0x10) Append(&s, Number("zoom wide speed", static_cast<uint32_t>(nZoom)));
    if (yBits & 0x40) Append(&s, "focus near");
    if (b[5] & 0x01) Append(&s, "focus far");
    if (b[5] & 0x04) Append(&s, "iris open");
    if (b[5] & 0x02) Append(&s, "iris close");
    return s.empty() ? "stop" : s;
}

std::string AutoDomePreset(const uint8_t* b) {
    const uint32_t nPreset = (static_cast<uint32_t>(b[4] & 0x70) << 3) | b[5];
    switch (b[4] & 0x0F) {
    case 4: return Number("set preset", nPreset);
    case 5: return Number("go to preset", nPreset);
    default: return Hex("preset action", b[4] & 0x0Fu) + " " + std::to_string(nPreset);
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

std::string CanonWords(uint8_t yCmd, const std::string& a) {
    const std::string sUnknown = Hex("command", yCmd) + (a.empty() ? "" : " \"" + a + "\"");
    switch (yCmd) {
    case 0x50:
    case 0x51: {
        const int64_t v = HexValue(a);
        if (v < 0) return sUnknown;
        return Number(yCmd == 0x50 ? "pan speed" : "tilt speed", static_cast<uint32_t>(v));
    }
    case 0x60: {
        if (a.size() != 2 || a[0] < '0' || a[0] > '2' || a[1] < '0' || a[1] > '2') return sUnknown;
        std::string s;
        Move(a[0] == '1' ? "right" : a[0] == '2' ? "left" : nullptr,
             a[1] == '1' ? "up" : a[1] == '2' ? "down" : nullptr, -1, -1, &s);
        return s.empty() ? "stop" : s;
    }
    case 0xA1: {
        static const char* const kFocus[] = {"auto focus on", "focus stop", "focus near",
                                             "focus far"};
        if (a.size() == 1 && a[0] >= '0' && a[0] <= '3') return kFocus[a[0] - '0'];
        return sUnknown;
    }
    case 0xA2: {
        static const char* const kZoom[] = {"zoom stop", "zoom wide", "zoom tele", "zoom wide fast",
                                            "zoom tele fast"};
        if (a.size() == 1 && a[0] >= '0' && a[0] <= '4') return kZoom[a[0] - '0'];
        return sUnknown;
    }
    case 0xA5:
        if (a == "2") return "auto iris on";
        if (a == "3") return "auto iris off";
        if (a.size() == 3 && a[0] == '9' && HexValue(a.substr(1)) >= 0)
            return "iris level 0x" + a.substr(1);
        return sUnknown;
    case 0x89:
    case 0x8A:
        if (a.size() != 1 || !IsDigit(static_cast<uint8_t>(a[0]))) return sUnknown;
        return Number(yCmd == 0x89 ? "set preset" : "go to preset",
                      static_cast<uint32_t>(a[0] - '0'));
    case 0x90:
        if (a == "0") return "camera on";
        if (a == "1") return "camera off";
        return sUnknown;
    case 0x8F:   // the second auxiliary output, switched along with the camera power
        if (a == "1") return "aux 2 on";
        if (a == "0") return "aux 2 off";
        return sUnknown;
    default:
        return sUnknown;
    }
}

}  // namespace

bool DecodeSCC641(const uint8_t* bytes, size_t n, PtzFrameText* out) {
    if (bytes == nullptr || out == nullptr || n < kSamsungLength || bytes[0] != 0xA0 ||
        bytes[1] != 0xFE)
        return false;
    uint8_t ySum = 0;
    for (size_t i = 1; i < kSamsungLength - 1; ++i) ySum = static_cast<uint8_t>(ySum + bytes[i]);
    out->nLength = kSamsungLength;
    out->nAddress = bytes[2];
    switch (bytes[3]) {
    case 0x01: out->sWords = SamsungLens(bytes); break;
    case 0x03: out->sWords = SamsungFunction(bytes); break;
    default: out->sWords = Hex("group", bytes[3]); break;
    }
    out->bBadCheck = static_cast<uint8_t>(0xFF - ySum) != bytes[8];
    return true;
}

bool DecodeAutoDome(const uint8_t* bytes, size_t n, PtzFrameText* out) {
    if (bytes == nullptr || out == nullptr || n < 1) return false;
    // The start byte counts the bytes after it: 0x87 lens frames, 0x86 preset frames.
    const uint8_t yStart = bytes[0];
    if (yStart != 0x87 && yStart != 0x86) return false;
    const size_t nLength = (yStart & 0x7Fu) + 1;
    if (n < nLength) return false;
    uint32_t nSum = 0;
    for (size_t i = 0; i < nLength; ++i) {
        if (i > 0 && bytes[i] >= 0x80) return false;   // only the start byte has bit 7
        if (i + 1 < nLength) nSum += bytes[i];
    }
    const uint8_t yOpcode = bytes[3];
    out->nLength = nLength;
    out->nAddress = ((static_cast<uint32_t>(bytes[1]) << 7) | bytes[2]) + 1;
    if (yStart == 0x87 && yOpcode == 0x05) out->sWords = AutoDomeLens(bytes);
    else if (yStart == 0x86 && yOpcode == 0x07) out->sWords = AutoDomePreset(bytes);
    else out->sWords = Hex("opcode", yOpcode);
    out->bBadCheck = (nSum & 0x7F) != bytes[nLength - 1];
    return true;
}

bool DecodeCanonVCC4(const uint8_t* bytes, size_t n, PtzFrameText* out) {
    if (bytes == nullptr || out == nullptr || n < kCanonMinLength || bytes[0] != 0xFF ||
        !IsDigit(bytes[1]) || !IsDigit(bytes[2]) || bytes[3] != 0x00)
        return false;
    // Arguments are printable ASCII up to the terminator.
    size_t nEnd = 5;
    while (nEnd < n && nEnd < kCanonMaxLength && bytes[nEnd] != 0xEF) {
        if (bytes[nEnd] < 0x20 || bytes[nEnd] > 0x7E) return false;
        ++nEnd;
    }
    if (nEnd >= n || bytes[nEnd] != 0xEF) return false;
    out->nLength = nEnd + 1;
    out->nAddress = static_cast<uint32_t>((bytes[1] - '0') * 10 + (bytes[2] - '0'));
    out->sWords = CanonWords(bytes[4], std::string(bytes + 5, bytes + nEnd));
    out->bBadCheck = false;
    return true;
}
