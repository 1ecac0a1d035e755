// Decoding of Pelco-D, Pelco-P and extended Pelco-P frames into words.
//
//   Pelco-D      FF, address, command 1, command 2, data 1, data 2, sum of bytes 1-5   (7 bytes)
//   Pelco-P      A0, address - 1, data 1-4, AF, XOR of bytes 0-6                       (8 bytes)
//   ext. Pelco-P A0, address, data 1-4, AF, XOR of bytes 1-5                           (8 bytes)
//
// Pelco-D's command 2 and Pelco-P's data 2 share their bits: right 0x02, left 0x04, up 0x08,
// down 0x10, zoom tele 0x20, zoom wide 0x40; with bit 0 set they name an extended command instead
// (set / clear / go to preset, patterns, automatic focus and iris) whose number is in the last
// data byte. The words are those shown by the simulator and matched by the system tests:
//   "stop", "pan left 63", "tilt up 24", "move down left 16", "joystick left 16 down 5 zoom tele",
//   "zoom tele", "focus near", "iris open", "camera on", "auto pan on", "go to preset 1",
//   "set preset 95 (menu)", "run pattern 3", "record pattern start", "auto focus on", ...
#include <cstdio>

#include "tools/sim/ptz_decode.h"

namespace {

constexpr size_t kPelcoDLength = 7;
constexpr size_t kPelcoPLength = 8;

void Append(std::string* s, const std::string& w) {
    if (!s->empty()) *s += ' ';
    *s += w;
}

std::string Number(const std::string& sWords, uint32_t n) { return sWords + " " + std::to_string(n); }

// Pan, tilt and zoom from the shared direction bits. One axis reads as "pan" or "tilt", the two
// axes at one speed as the diagonal "move"; anything else only a proportional move can produce
// ("joystick"). A joystick move with equal magnitudes therefore reads as a diagonal: on the wire
// the two are the same frame.
void Directions(uint8_t yBits, uint8_t yPanSpeed, uint8_t yTiltSpeed, std::string* s) {
    const char* sPan = (yBits & 0x04) ? "left" : (yBits & 0x02) ? "right" : nullptr;
    const char* sTilt = (yBits & 0x08) ? "up" : (yBits & 0x10) ? "down" : nullptr;
    const char* sZoom = (yBits & 0x20) ? "zoom tele" : (yBits & 0x40) ? "zoom wide" : nullptr;
    if (sPan && sTilt && !sZoom && yPanSpeed == yTiltSpeed) {
        Append(s, Number(std::string("move ") + sTilt + " " + sPan, yPanSpeed));
    } else if (sPan && !sTilt && !sZoom) {
        Append(s, Number(std::string("pan ") + sPan, yPanSpeed));
    } else if (sTilt && !sPan && !sZoom) {
        Append(s, Number(std::string("tilt ") + sTilt, yTiltSpeed));
    } else {
        if (sPan || sTilt) Append(s, "joystick");
        if (sPan) Append(s, Number(sPan, yPanSpeed));
        if (sTilt) Append(s, Number(sTilt, yTiltSpeed));
        if (sZoom) Append(s, sZoom);
    }
}

// An extended command (opcode with bit 0 set) and its number. bAutoPanPresets: go-to-preset 99
// and 96 switch automatic pan (Pelco-P).
std::string Extended(uint8_t yOpcode, uint8_t yNumber, bool bAutoPanPresets) {
    switch (yOpcode) {
    case 0x03:
        return Number("set preset", yNumber) + (yNumber == 95 ? " (menu)" : "");
    case 0x05:
        return Number("clear preset", yNumber);
    case 0x07:
        if (bAutoPanPresets && yNumber == 99) return "go to preset 99 (auto pan on)";
        if (bAutoPanPresets && yNumber == 96) return "go to preset 96 (auto pan off)";
        return Number("go to preset", yNumber);
    case 0x1F:
        return "record pattern start";
    case 0x21:
        return "record pattern end";
    case 0x23:
        return yNumber == 0 ? std::string("run pattern") : Number("run pattern", yNumber);
    case 0x2B:
    case 0x2D: {
        const std::string sWhat = yOpcode == 0x2B ? "auto focus" : "auto iris";
        if (yNumber == 1) return sWhat + " on";
        if (yNumber == 2) return sWhat + " off";
        return Number(sWhat, yNumber);
    }
    default: {
        char sHex[32];
        std::snprintf(sHex, sizeof sHex, "extended 0x%02X %u", yOpcode, yNumber);
        return sHex;
    }
    }
}

// Words of a Pelco-P / extended Pelco-P frame body (data 1-4).
std::string PelcoPWords(const uint8_t* d, bool bAutoPanPresets) {
    if (d[1] & 0x01) return Extended(d[1], d[3], bAutoPanPresets);
    std::string s;
    Directions(d[1], d[2], d[3], &s);
    static const struct { uint8_t yBit; const char* sWords; } kData1[] = {
        {0x01, "focus far"}, {0x02, "focus near"}, {0x04, "iris open"}, {0x08, "iris close"},
        {0x10, "camera off"}, {0x20, "auto pan on"}, {0x40, "camera on"},
    };
    for (const auto& b : kData1)
        if (d[0] & b.yBit) Append(&s, b.sWords);
    return s.empty() ? "stop" : s;
}

bool DecodePelcoPShape(const uint8_t* bytes, size_t n, PtzFrameText* out) {
    return bytes != nullptr && out != nullptr && n >= kPelcoPLength && bytes[0] == 0xA0 &&
           bytes[6] == 0xAF;
}

}  // namespace

bool DecodePelcoD(const uint8_t* bytes, size_t n, PtzFrameText* out) {
    if (bytes == nullptr || out == nullptr || n < kPelcoDLength || bytes[0] != 0xFF) return false;
    uint8_t ySum = 0;
    for (size_t i = 1; i < 6; ++i) ySum = static_cast<uint8_t>(ySum + bytes[i]);
    const uint8_t yCmd1 = bytes[2], yCmd2 = bytes[3];
    std::string s;
    if (yCmd2 & 0x01) {
        s = Extended(yCmd2, bytes[5], false);
    } else {
        Directions(yCmd2, bytes[4], bytes[5], &s);
        if (yCmd2 & 0x80) Append(&s, "focus far");
        if (yCmd1 & 0x01) Append(&s, "focus near");
        if (yCmd1 & 0x02) Append(&s, "iris open");
        if (yCmd1 & 0x04) Append(&s, "iris close");
        // The sense bit (0x80) turns camera and scan bits into "on".
        if (yCmd1 & 0x08) Append(&s, (yCmd1 & 0x80) ? "camera on" : "camera off");
        if (yCmd1 & 0x10) Append(&s, (yCmd1 & 0x80) ? "auto pan on" : "auto pan off");
        if (s.empty()) s = "stop";
    }
    out->nLength = kPelcoDLength;
    out->nAddress = bytes[1];
    out->sWords = s;
    out->bBadCheck = ySum != bytes[6];
    return true;
}

bool DecodePelcoP(const uint8_t* bytes, size_t n, PtzFrameText* out) {
    if (!DecodePelcoPShape(bytes, n, out)) return false;
    uint8_t yCheck = 0;
    for (size_t i = 0; i < 7; ++i) yCheck ^= bytes[i];
    out->nLength = kPelcoPLength;
    out->nAddress = bytes[1] + 1u;
    out->sWords = PelcoPWords(bytes + 2, true);
    out->bBadCheck = yCheck != bytes[7];
    return true;
}

bool DecodeExtPelcoP(const uint8_t* bytes, size_t n, PtzFrameText* out) {
    if (!DecodePelcoPShape(bytes, n, out)) return false;
    uint8_t yCheck = 0;
    for (size_t i = 1; i < 6; ++i) yCheck ^= bytes[i];
    const uint8_t* d = bytes + 2;
    out->nLength = kPelcoPLength;
    out->nAddress = bytes[1];
    // Camera off is data 1 = 0x01 with no speed bytes; focus far, the same bit, carries 1, 1.
    const bool bCameraOff = d[0] == 0x01 && d[1] == 0 && d[2] == 0 && d[3] == 0;
    out->sWords = bCameraOff ? "camera off" : PelcoPWords(d, false);
    out->bBadCheck = yCheck != bytes[7];
    return true;
}
