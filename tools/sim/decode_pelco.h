// Reading of the Pelco command set's variable bytes, shared by the decoders of every protocol that
// carries them (Pelco-D, Pelco-P and the makes that copy their codes).
#pragma once
#include <cstdint>

#include "tools/sim/ptz_decode.h"

// Camera conventions that give a preset command a second meaning.
enum PelcoConvention : unsigned {
    kPelcoMenuBySet95 = 1u << 0,       // set preset 95 opens the menu
    kPelcoMenuByGo95 = 1u << 1,        // go to preset 95 opens the menu
    kPelcoAutoPanByGo99 = 1u << 2,     // go to preset 99 / 96 switches automatic pan on / off
};

// Command 2 (Pelco-P: data 2) with its two data bytes: the directions of a move and the zoom (with
// the pan speed in data 1 and the tilt speed in data 2), or, with bit 0 set, an extended command
// whose number is data 2. Leaves t->tWhat None when the byte asks for nothing (a stop, or lens
// bits of the other command byte).
void PelcoCommand2(uint8_t yCmd2, uint8_t yData1, uint8_t yData2, unsigned nConventions,
                   PtzFrameText* t);

// Adds an action to a frame that may carry more than one: the first becomes tWhat, later ones
// go to the note in words.
void PelcoAdd(PtzFrameText* t, const PTZMeaning& m);

// Pelco-D's command 1 and command 2 bytes with the data bytes: every action they carry, "stop" when
// none.
void PelcoDCommand(uint8_t yCmd1, uint8_t yCmd2, uint8_t yData1, uint8_t yData2,
                   unsigned nConventions, PtzFrameText* t);
