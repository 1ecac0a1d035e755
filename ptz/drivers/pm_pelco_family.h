// What the Pelco-family drivers (Pelco-D, Pelco-P, extended Pelco-P) share beyond the rules of
// every driver: the code-table row, the builder that maps a row to a frame, and the status routine
// that ramps level-0 moves and steps the preset tour. Each driver describes itself with a
// PelcoDriver record (its code table, its frame writer and its empty-tour policy) and makes its
// BuildCmd_X and CheckStatus_X thin calls into PelcoBuildCmd and PelcoCheckStatus. Included only
// by those drivers.
#pragma once
#include <cstdint>
#include <span>

#include "ptz/drivers/pm_common.h"

// The four variable bytes of every Pelco-family frame (bytes 2-5) are named here as Pelco-D names
// them: command 1, command 2, data 1, data 2 (Pelco-P calls them data 1 to data 4). Data 1 is the
// pan speed, data 2 the tilt speed or a number.

// Command 2 of go-to-preset; the tour steps with it.
constexpr uint8_t kPelcoGoToPreset = 0x07;

// What a command puts into the frame.
enum class PelcoArg : uint8_t {
    Fixed,       // the row's four bytes as they stand
    Pan,         // data 1 = speed
    Tilt,        // data 2 = speed
    PanTilt,     // both = speed
    Number,      // data 2 = p1, accepted in 1..yData2 of the row
    Joystick,    // command 1 = 0, command 2 the axis directions, data = pan and tilt magnitudes
    TourStart,   // no frame; p1 accepted in 1..yData2, or taken unchecked (even 0) when yData2 is 0
    TourStop,    // no frame
    Refused,     // no frame, nLastCmd 255: refused anew on every repeat
};

struct PelcoCode {
    uint8_t nCode;
    uint8_t yCmd1;
    uint8_t yCmd2;
    PelcoArg eArg;
    uint8_t yData1;
    uint8_t yData2;  // Number and TourStart rows: the highest number accepted
    bool bKeeps;     // nLastCmd stays the code after sending (held actions), else 255
};

// Writes one frame around the four variable bytes (start, address, end and check bytes as the
// protocol has them); returns the number of frames, 1.
using PelcoFrameFn = int32_t (*)(uint32_t nAddress, PTZPacket* ptPacket, uint8_t yCmd1,
                                 uint8_t yCmd2, uint8_t yData1, uint8_t yData2);

// What the status routine does when the step of a tour of 0 presets falls due: nothing is sent
// either way (there is nothing to visit); the poller is disarmed or stays armed.
enum class PelcoEmptyTour : uint8_t { Disarm, StayArmed };

struct PelcoDriver {
    std::span<const PelcoCode> atCodes;   // codes not listed are unsupported
    PelcoFrameFn frame;
    PelcoEmptyTour eEmptyTour;
};

// True when the table has a move row for each of the eight moves, which the status routine looks
// up again to ramp them; each driver checks its table with it at compile time.
constexpr bool PelcoCoversMoves(std::span<const PelcoCode> atCodes) {
    for (uint32_t nMove = 0; nMove < 32; ++nMove) {
        if (!PTZCodeIn(kPTZMoveMask, nMove)) continue;
        bool bFound = false;
        for (const PelcoCode& c : atCodes)
            bFound = bFound || (c.nCode == nMove && (c.eArg == PelcoArg::Pan ||
                                                     c.eArg == PelcoArg::Tilt ||
                                                     c.eArg == PelcoArg::PanTilt));
        if (!bFound) return false;
    }
    return true;
}

int32_t PelcoBuildCmd(const PelcoDriver& tDriver, uint32_t nAddress, PTZPacket* atPacket,
                      PTZChannelState* ptState);
int32_t PelcoCheckStatus(const PelcoDriver& tDriver, uint32_t nAddress, PTZPacket* atPacket,
                         PTZChannelState* ptState);
