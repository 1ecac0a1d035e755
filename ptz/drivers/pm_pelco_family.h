// The Pelco command set, which many makes copy: its four variable bytes (Pelco-D's command 1,
// command 2, data 1, data 2; Pelco-P calls them data 1 to 4) and how a row of a code table fills
// them. Drivers whose frames carry these bytes lay them out with PelcoPayload; the makes that
// speak Pelco-D byte for byte share its code table and driver description.
#pragma once
#include <cstdint>
#include <span>

#include "ptz/drivers/pm_engine.h"

// Command 2 of the extended commands that carry a number in data 2.
constexpr uint8_t kPelcoPresetSet = 0x03;
constexpr uint8_t kPelcoPresetClear = 0x05;
constexpr uint8_t kPelcoPresetGo = 0x07;
constexpr uint8_t kPelcoAuxOn = 0x09;
constexpr uint8_t kPelcoAuxOff = 0x0B;
constexpr uint8_t kPelcoPatternRun = 0x23;

struct PelcoBytes {
    uint8_t yCmd1, yCmd2, yData1, yData2;
};

// The row's four bytes with the command's arguments placed: a move's pan speed in data 1 and its
// tilt speed in data 2 (each only where the move uses that axis), a number in data 2, and a
// proportional move's directions in command 2 with its magnitudes in the data bytes.
PelcoBytes PelcoPayload(const PTZCode& c, const PTZArgs& x);

// Pelco-D's code table and driver, used as they stand by the makes that copy it.
extern const std::span<const PTZCode> kPelcoDCodes;
extern const PTZDriver kPelcoDDriver;
