#include "tools/sim/keypad_sim.h"

#include <cctype>
#include <cstdlib>
#include <iterator>

namespace {
struct KeyCode {
    const char* sKey;
    uint8_t nCode;
    uint8_t nData;   // Keypad-1: data byte; WTX-1200A: modifier
};

// clang-format off
constexpr KeyCode kKeypad1Keys[] = {
    {"LOCK", 1, 0},      {"PLAY", 2, 0},      {"REW", 3, 0},        {"FF", 4, 0},         {"STOP", 5, 0},
    {"REC", 6, 0},       {"MENU", 7, 0},      {"T-SEARCH", 8, 0},   {"ZOOM", 10, 0},      {"INFO", 11, 0},
    {"DISPLAY", 12, 0},  {"FUNC 2", 12, 99},  {"LOG", 26, 0},       {"BACKUP", 53, 0},    {"E-SEARCH", 54, 0},
    {"FUNC 3", 55, 0},   {"SCHEDULE", 56, 0}, {"CANCEL", 57, 0},    {"STEP-BWD", 131, 0}, {"STEP-FWD", 132, 0},
    {"STILL", 133, 0},
};
constexpr KeyCode kWtxKeys[] = {
    {"REC", 17, 0},      {"T-SEARCH", 18, 0}, {"LOG", 19, 0},       {"SCHEDULE", 20, 0},  {"PTZ", 21, 0},
    {"CANCEL", 32, 0},   {"ENTER", 33, 0},    {"DISPLAY", 34, 0},   {"PLAY", 35, 0},      {"STOP", 36, 0},
    {"REW", 37, 0},      {"FF", 38, 0},       {"STEP-BWD", 39, 0},  {"STEP-FWD", 40, 0},  {"MENU", 41, 0},
    {"E-SEARCH", 18, 3}, {"BACKUP", 19, 3},   {"INFO", 21, 3},      {"STILL", 34, 3},     {"FUNC 1", 7, 3},
    {"FUNC 2", 8, 3},    {"FUNC 3", 9, 3},
};
// clang-format on

const KeyCode* Find(const KeyCode* table, size_t n, const std::string& key) {
    for (size_t i = 0; i < n; ++i)
        if (key == table[i].sKey) return &table[i];
    return nullptr;
}

// The number of a "NUM n" key, 0 for any other name.
int NumberKey(const std::string& key) {
    if (key.rfind("NUM ", 0) != 0) return 0;
    const int n = std::atoi(key.c_str() + 4);
    return n >= 1 && n <= 16 ? n : 0;
}

KeypadFrame Sealed(KeypadFrame f) {
    uint8_t sum = 0;
    for (uint8_t b : f) sum = static_cast<uint8_t>(sum + b);
    f.push_back(sum);
    return f;
}

// Keypad-1 axis byte: 1..63 one way, 129..191 the other.
uint8_t Axis(int v) {
    if (v > 63) v = 63;
    if (v < -63) v = -63;
    return static_cast<uint8_t>(v >= 0 ? v : 0x80 | -v);
}

// WTX-1200A joystick nibble: 0 centre, 2..7 left/up, 10..15 right/down.
uint8_t Nibble(int v) {
    if (v == 0) return 0;
    const int m = std::abs(v) > 6 ? 6 : std::abs(v);
    return static_cast<uint8_t>(v < 0 ? 1 + m : 9 + m);
}
}  // namespace

KeypadFrame Keypad1Short(uint8_t id, uint8_t command, uint8_t data) { return Sealed({0xAA, id, command, data}); }

KeypadFrame Keypad1Key(uint8_t id, const std::string& key) {
    if (const int n = NumberKey(key); n != 0) return Keypad1Short(id, 50, static_cast<uint8_t>(n));
    const KeyCode* k = Find(kKeypad1Keys, std::size(kKeypad1Keys), key);
    return k != nullptr ? Keypad1Short(id, k->nCode, k->nData) : KeypadFrame{};
}

KeypadFrame Keypad1Button(uint8_t id, uint8_t channel, uint8_t button, uint8_t number) {
    return Sealed({0xAA, id, 0x80, channel, button, number, 0});
}

KeypadFrame Keypad1Joystick(uint8_t id, uint8_t channel, int pan, int tilt) {
    return Sealed({0xAA, id, 0x80, channel, 128, Axis(pan), Axis(tilt)});
}

KeypadFrame WtxFrame(uint8_t id, uint8_t code, uint8_t modifier) { return {0xA1, id, code, modifier, 0xAF}; }

KeypadFrame WtxKey(uint8_t id, const std::string& key) {
    if (const int n = NumberKey(key); n != 0)   // NUM 11..16 are the second functions of 1..6
        return n <= 10 ? WtxFrame(id, static_cast<uint8_t>(n), 0) : WtxFrame(id, static_cast<uint8_t>(n - 10), 3);
    const KeyCode* k = Find(kWtxKeys, std::size(kWtxKeys), key);
    return k != nullptr ? WtxFrame(id, k->nCode, k->nData) : KeypadFrame{};
}

KeypadFrame WtxJoystick(uint8_t id, int pan, int tilt) {
    return WtxFrame(id, 128, static_cast<uint8_t>(Nibble(pan) << 4 | Nibble(tilt)));
}

KeypadFrame HexFrame(const std::string& text) {
    KeypadFrame f;
    std::string digits;
    for (char c : text) {
        if (std::isspace(static_cast<unsigned char>(c))) continue;
        if (!std::isxdigit(static_cast<unsigned char>(c))) return {};
        digits += c;
    }
    if (digits.size() % 2 != 0) return {};
    for (size_t i = 0; i < digits.size(); i += 2)
        f.push_back(static_cast<uint8_t>(std::strtoul(digits.substr(i, 2).c_str(), nullptr, 16)));
    return f;
}
