// Decoding of VCL Orbiter and Honeywell GCC-655N frames.
//
//   VCL      80 + camera - 1, command 00-7F, for some commands a data byte 00-7F; no check and
//            no terminator: the next byte of 80 or above starts the next frame          (2 or 3)
//   GCC-655  C5, function, key, 00, A, 8-bit sum of bytes 0-4                                (6)
//            function 5F a key, 3A / 3E camera power on / off, 79 / 7A store / go to an internal
//            preset 0-49 (the recorder's presets 1-50)
#include <string>

#include "tools/sim/ptz_decode.h"

namespace {

using A = PTZAction;

PTZMeaning Act(A e, int8_t nLens = 0) { return {e, 0, 0, nLens, false, 0}; }
PTZMeaning Switch(A e, bool bOn, uint8_t nIndex = 0) { return {e, 0, 0, 0, bOn, nIndex}; }
PTZMeaning Go(int8_t nPan, int8_t nTilt) { return {A::Move, nPan, nTilt, 0, false, 0}; }

// --- VCL ---------------------------------------------------------------------------------------

constexpr uint8_t kHeaderBit = 0x80;

// What a command's data byte carries.
enum class VclData : uint8_t { None, Speed, Number };

struct VclCommand {
    uint8_t yCode;
    VclData eData;
    PTZMeaning tWhat;
    const char* sNote;
};

const VclCommand kVclCommands[] = {
    {0x4C, VclData::Speed, Go(-1, 0), ""},
    {0x52, VclData::Speed, Go(+1, 0), ""},
    {0x55, VclData::Speed, Go(0, +1), ""},
    {0x4E, VclData::Speed, Go(0, -1), ""},
    {0x72, VclData::None, Act(A::Stop), "pan"},
    {0x75, VclData::None, Act(A::Stop), "tilt"},
    {0x3A, VclData::None, Act(A::Zoom, +1), ""},
    {0x3B, VclData::None, Act(A::Zoom, -1), ""},
    {0x2A, VclData::None, Act(A::Stop), "zoom"},
    {0x2B, VclData::None, Act(A::Stop), "zoom"},
    {0x3C, VclData::None, Act(A::Focus, -1), ""},
    {0x3D, VclData::None, Act(A::Focus, +1), ""},
    {0x2C, VclData::None, Act(A::Stop), "focus"},
    {0x2D, VclData::None, Act(A::Stop), "focus"},
    {0x3E, VclData::None, Act(A::Iris, +1), ""},
    {0x3F, VclData::None, Act(A::Iris, -1), ""},
    {0x2E, VclData::None, Act(A::Stop), "iris"},
    {0x2F, VclData::None, Act(A::Stop), "iris"},
    {0x41, VclData::None, Switch(A::FocusAuto, true), ""},
    {0x61, VclData::None, Switch(A::FocusAuto, false), ""},
    {0x4D, VclData::None, Switch(A::IrisAuto, true), ""},
    {0x6D, VclData::None, Switch(A::IrisAuto, false), ""},
    {0x42, VclData::Number, Act(A::PresetGo), ""},
    {0x47, VclData::Number, Act(A::PresetSet), ""},
    {0x5B, VclData::None, Switch(A::Aux, true, 1), ""},
    {0x5C, VclData::None, Switch(A::Aux, true, 2), ""},
    {0x5D, VclData::None, Switch(A::Aux, true, 3), ""},
    {0x7B, VclData::None, Switch(A::Aux, false, 1), ""},
    {0x7C, VclData::None, Switch(A::Aux, false, 2), ""},
    {0x7D, VclData::None, Switch(A::Aux, false, 3), ""},
    {0x50, VclData::Number, Switch(A::PatternRecord, true), ""},
    {0x70, VclData::None, Switch(A::PatternRecord, false), ""},
    {0x5E, VclData::Number, Act(A::Pattern), ""},
};

const VclCommand* VclCommandOf(uint8_t y) {
    for (const VclCommand& c : kVclCommands)
        if (c.yCode == y) return &c;
    return nullptr;
}

// --- Honeywell GCC-655N ------------------------------------------------------------------------

constexpr size_t kGC655Length = 6;
constexpr uint8_t kGC655PresetMax = 49;

// A key frame's key; false for a key the camera does not have.
bool GC655Key(uint8_t yKey, PtzFrameText* t) {
    switch (yKey) {
    case 0x01: t->tWhat = Act(A::Zoom, +1); return true;
    case 0x02: t->tWhat = Act(A::Zoom, +1); t->sNote = "quick (menu up)"; return true;
    case 0x03: t->tWhat = Act(A::Zoom, -1); return true;
    case 0x04: t->tWhat = Act(A::Zoom, -1); t->sNote = "quick (menu down)"; return true;
    case 0x08: t->tWhat = Act(A::Focus, +1); return true;
    case 0x09: t->tWhat = Act(A::Focus, -1); return true;
    case 0x0C: t->tWhat = Act(A::Stop); return true;
    case 0x24:
        // One key opens the menu and closes it again.
        t->tWhat = Switch(A::Menu, true);
        t->tAlso = Switch(A::Menu, false);
        t->sNote = "toggles";
        return true;
    case 0x25: t->sNote = "OSD on/off"; return true;
    case 0x38: t->sNote = "menu left"; return true;
    case 0x39: t->sNote = "menu right"; return true;
    default: return false;
    }
}

}  // namespace

bool DecodeVCL(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < 2 || b[0] < kHeaderBit) return false;
    const VclCommand* c = VclCommandOf(b[1]);
    if (c == nullptr) return false;
    const size_t nLength = c->eData == VclData::None ? 2 : 3;
    if (n < nLength || (nLength == 3 && b[2] >= kHeaderBit)) return false;
    // Only a header may follow a whole frame.
    if (n > nLength && b[nLength] < kHeaderBit) return false;
    t->nLength = nLength;
    t->nAddress = b[0] - kHeaderBit + 1u;
    t->tWhat = c->tWhat;
    t->sNote = c->sNote;
    if (c->eData == VclData::Number) t->nNumber = b[2];
    if (c->eData == VclData::Speed) (c->tWhat.nPan != 0 ? t->nPanSpeed : t->nTiltSpeed) = b[2];
    return true;
}

bool DecodeGC655NP(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < kGC655Length || b[0] != 0xC5 || b[3] != 0x00) return false;
    switch (b[1]) {
    case 0x5F:
        if (!GC655Key(b[2], t)) return false;
        break;
    case 0x3A:
    case 0x3E:
        if (b[2] != 0) return false;
        t->tWhat = Switch(A::CameraPower, b[1] == 0x3A);
        break;
    case 0x79:
    case 0x7A:
        if (b[2] > kGC655PresetMax) return false;
        t->tWhat = Act(b[1] == 0x79 ? A::PresetSet : A::PresetGo);
        t->nNumber = b[2] + 1;
        t->sNote = "(camera preset " + std::to_string(b[2]) + ")";
        break;
    default:
        return false;
    }
    t->nLength = kGC655Length;
    t->nAddress = b[4];
    t->bBadCheck = PTZCheckOf(PTZCheck::Sum8, b, 0, 5) != b[5];
    return true;
}
