// dvrsim commands of the keypads: frames of the configured keypad family written onto the line
// the keypad shares with the cameras, built by meaning or given in hexadecimal.
#include <cstdio>
#include <string>

#include "tools/sim/keypad_sim.h"
#include "tools/sim/session.h"

namespace {

// The configured keypad model decides the family: 4-6 are WTX-1200A, everything else Keypad-1.
bool Wtx(SimSession& sim) { return sim.rec.Share().nKeypadModel >= 4 && sim.rec.Share().nKeypadModel <= 6; }

// The keypad's id: the configured one unless the arguments end in id=N (which is removed).
uint8_t TakeId(SimSession& sim, SimArgs* a) {
    if (!a->empty() && a->back().rfind("id=", 0) == 0) {
        const uint8_t id = static_cast<uint8_t>(SimNum(a->back().substr(3)));
        a->pop_back();
        return id;
    }
    return static_cast<uint8_t>(sim.rec.Share().nKeypadSystemIdCfg);
}

void Write(SimSession& sim, const KeypadFrame& f, const std::string& what) {
    if (f.empty()) return void(std::fprintf(stderr, "no such keypad frame\n"));
    sim.PtzLine().Write(f);
    sim.Print(MonotonicSeconds(), "keypad", "<- " + HexBytes(f.data(), f.size()) + "   " + what);
}

void Key(SimSession& sim, const SimArgs& args) {
    SimArgs a(args);
    const uint8_t id = TakeId(sim, &a);
    if (!SimNeed(a, 2, "NAME [id=N]   a recorder key on the configured keypad (PLAY, \"NUM 12\", MENU, ...)")) return;
    std::string name;
    for (size_t i = 1; i < a.size(); ++i) name += (i > 1 ? " " : "") + a[i];
    Write(sim, Wtx(sim) ? WtxKey(id, name) : Keypad1Key(id, name), "key " + name);
}

void Joy(SimSession& sim, const SimArgs& args) {
    SimArgs a(args);
    const uint8_t id = TakeId(sim, &a);
    if (Wtx(sim)) {
        if (!SimNeed(a, 3, "PAN TILT   WTX-1200A joystick, -7..7 (negative: left, up)")) return;
        const int pan = std::stoi(a[1]), tilt = std::stoi(a[2]);
        Write(sim, WtxJoystick(id, pan, tilt), "joystick " + a[1] + " " + a[2]);
        return;
    }
    if (!SimNeed(a, 4, "CH PAN TILT   Keypad-1 joystick on channel 1-16, -63..63 (negative: left, up)")) return;
    Write(sim, Keypad1Joystick(id, static_cast<uint8_t>(SimNum(a[1])), std::stoi(a[2]), std::stoi(a[3])),
          "joystick ch " + a[1] + ": " + a[2] + " " + a[3]);
}

void Button(SimSession& sim, const SimArgs& args) {
    SimArgs a(args);
    const uint8_t id = TakeId(sim, &a);
    if (!SimNeed(a, 3, "CH BUTTON [NUMBER]   Keypad-1 camera button on channel 1-16")) return;
    const uint8_t number = a.size() > 3 ? static_cast<uint8_t>(SimNum(a[3])) : 0;
    Write(sim, Keypad1Button(id, static_cast<uint8_t>(SimNum(a[1])), static_cast<uint8_t>(SimNum(a[2])), number),
          "button " + a[2] + " ch " + a[1]);
}

void Raw(SimSession& sim, const SimArgs& a) {
    if (!SimNeed(a, 2, "HEX...   raw keypad bytes")) return;
    std::string text;
    for (size_t i = 1; i < a.size(); ++i) text += a[i];
    Write(sim, HexFrame(text), "raw");
}

const SimCommand kKeypad[] = {
    {"key", "NAME [id=N]   a recorder key on the configured keypad (PLAY, NUM 12, MENU, ...)", Key},
    {"joy", "[CH] PAN TILT [id=N]   joystick (Keypad-1: channel 1-16, -63..63; WTX: -7..7)", Joy},
    {"button", "CH BUTTON [NUMBER] [id=N]   Keypad-1 camera button (17 preset go, 23 preset set, ...)", Button},
    {"keypad", "HEX...        raw keypad bytes onto the line", Raw},
    {nullptr, nullptr, nullptr},
};
}  // namespace

const SimCommand* KeypadSimCommands() { return kKeypad; }
