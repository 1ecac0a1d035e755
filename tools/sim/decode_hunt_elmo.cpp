// Decoding of Hunt and Elmo PTC-400C frames.
//
//   Hunt      FA, command, address bits 5+, address bits 0-4, data, keyboard, sum of bytes 0-5
//             & 0x7F                                                                       (7)
//   PTC-400C  address, FF, command, sub, data, XOR of bytes 0-4                            (6)
#include <cstdio>

#include "tools/sim/ptz_decode.h"

namespace {

using A = PTZAction;

constexpr size_t kHuntLength = 7;
constexpr size_t kElmoLength = 6;

constexpr PTZMeaning Act(A e, int8_t nLens = 0) { return {e, 0, 0, nLens, false, 0}; }
constexpr PTZMeaning Go(int8_t nPan, int8_t nTilt) { return {A::Move, nPan, nTilt, 0, false, 0}; }

std::string Hex(const char* sWhat, uint32_t n) {
    char s[48];
    std::snprintf(s, sizeof s, "%s 0x%02X", sWhat, n);
    return s;
}

// --- Hunt --------------------------------------------------------------------------------------

// Directions of the move codes 01-08.
constexpr PTZMeaning kHuntMoves[] = {Go(0, +1),  Go(0, -1),  Go(-1, 0),  Go(+1, 0),
                                     Go(-1, +1), Go(-1, -1), Go(+1, +1), Go(+1, -1)};

// A move, lens or auto pan code with its speed; speed 00 stops that same action.
void HuntCommand(uint8_t yCmd, uint8_t yData, PtzFrameText* t) {
    const int32_t n = yData;
    if (yCmd >= 0x01 && yCmd <= 0x08) {
        if (n == 0) {
            t->tWhat = Act(A::Stop);
            return;
        }
        t->tWhat = kHuntMoves[yCmd - 1];
        if (t->tWhat.nPan != 0) t->nPanSpeed = n;
        if (t->tWhat.nTilt != 0) t->nTiltSpeed = n;
        return;
    }
    switch (yCmd) {
    case 0x09: case 0x0A: case 0x0B: case 0x0C: case 0x0D: case 0x0E: {
        if (n == 0) {
            t->tWhat = Act(A::Stop);
            return;
        }
        const int8_t nLens = (yCmd & 1) ? +1 : -1;   // open, tele, far are the odd codes
        t->tWhat = Act(yCmd <= 0x0A ? A::Iris : yCmd <= 0x0C ? A::Zoom : A::Focus, nLens);
        if (yCmd == 0x0B || yCmd == 0x0C) t->nZoomSpeed = n;
        else t->sNote = "speed " + std::to_string(n);
        return;
    }
    case 0x10:
        t->tWhat = {A::AutoPan, 0, 0, 0, n != 0, 0};
        if (n != 0) t->sNote = "speed " + std::to_string(n);
        return;
    case 0x71:
        t->tWhat = Act(A::ExtRun);
        t->nNumber = n;
        t->sNote = "camera tour";
        return;
    case 0x75:
    case 0x76:
        t->tWhat = Act(yCmd == 0x75 ? A::PresetSet : A::PresetGo);
        t->nNumber = n;
        return;
    default:
        t->sNote = Hex("command", yCmd) + Hex("", yData);
        return;
    }
}

// --- Elmo PTC-400C -----------------------------------------------------------------------------

void ElmoCommand(uint8_t yCmd, uint8_t ySub, uint8_t yData, PtzFrameText* t) {
    switch (yCmd) {
    case 0x18: {
        if (ySub > 3) break;
        constexpr PTZMeaning kMoves[] = {Go(+1, 0), Go(-1, 0), Go(0, +1), Go(0, -1)};
        t->tWhat = kMoves[ySub];
        if (ySub <= 1) t->nPanSpeed = yData;
        else t->nTiltSpeed = yData;
        return;
    }
    case 0x24:
    case 0x25:
        // Zoom: 00 tele, 01 wide; focus: 00 near, 01 far; 04 stops either.
        if (ySub == 0x04) t->tWhat = Act(A::Stop);
        else if (ySub <= 1 && yCmd == 0x24) t->tWhat = Act(A::Zoom, ySub == 0 ? +1 : -1);
        else if (ySub <= 1) t->tWhat = Act(A::Focus, ySub == 0 ? -1 : +1);
        else break;
        return;
    case 0x13:
    case 0x14:
        if (ySub != 0) break;
        t->tWhat = Act(A::Stop);
        return;
    case 0x11:
    case 0x1D:
        if (ySub != 0) break;
        t->tWhat = Act(yCmd == 0x11 ? A::PresetGo : A::PresetSet);
        t->nNumber = yData;
        return;
    default:
        break;
    }
    t->sNote = Hex("command", yCmd) + Hex(" sub", ySub) + Hex(" data", yData);
}

// The commands this camera is known to take; a frame of any other cannot be told from noise.
bool ElmoKnows(uint8_t yCmd) {
    for (uint8_t y : {0x11, 0x13, 0x14, 0x18, 0x1D, 0x24, 0x25})
        if (y == yCmd) return true;
    return false;
}

}  // namespace

// The check keeps 7 bits and the address's low byte 5: a frame with either over its range is not
// Hunt's.
bool DecodeHunt(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < kHuntLength || b[0] != 0xFA || b[3] > 0x1F || b[6] > 0x7F) return false;
    t->nLength = kHuntLength;
    t->nAddress = (static_cast<uint32_t>(b[2]) << 5) | b[3];
    t->bBadCheck = PTZCheckOf(PTZCheck::Sum7, b, 0, 6) != b[6];
    HuntCommand(b[1], b[4], t);
    if (b[5] != 0) t->sNote += (t->sNote.empty() ? "" : " ") + Hex("keyboard", b[5]);
    return true;
}

// Only byte 1 is fixed, so the command byte must be one this camera takes.
bool DecodePTC400C(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < kElmoLength || b[1] != 0xFF || !ElmoKnows(b[2])) return false;
    t->nLength = kElmoLength;
    t->nAddress = b[0];
    t->bBadCheck = PTZCheckOf(PTZCheck::Xor, b, 0, 5) != b[5];
    ElmoCommand(b[2], b[3], b[4], t);
    return true;
}
