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

// The rows every Pelco-coded table shares: the eight moves (speeds in the data bytes), zoom, and
// the all-zero stop. A driver lists its own rows and names these as its shared rows.
// clang-format off
inline constexpr PTZCode kPelcoMoves[] = {
    {PTZCmd_UpLeft,    PTZOp::Move, {0x00, 0x0C}},
    {PTZCmd_Up,        PTZOp::Move, {0x00, 0x08}},
    {PTZCmd_UpRight,   PTZOp::Move, {0x00, 0x0A}},
    {PTZCmd_Left,      PTZOp::Move, {0x00, 0x04}},
    {PTZCmd_Right,     PTZOp::Move, {0x00, 0x02}},
    {PTZCmd_DownLeft,  PTZOp::Move, {0x00, 0x14}},
    {PTZCmd_Down,      PTZOp::Move, {0x00, 0x10}},
    {PTZCmd_DownRight, PTZOp::Move, {0x00, 0x12}},
    {PTZCmd_ZoomWide,  PTZOp::Held, {0x00, 0x40}},
    {PTZCmd_ZoomTele,  PTZOp::Held, {0x00, 0x20}},
    {kPTZAnyStop,      PTZOp::Once, {0x00, 0x00}},
};
// clang-format on

// Pelco-D's own rows, used as they stand by the makes that copy Pelco-D, and its driver.
extern const std::span<const PTZCode> kPelcoDCodes;
extern const PTZDriver kPelcoDDriver;
