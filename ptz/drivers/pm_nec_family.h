// The command set of the 11-byte speed domes led by NEC's NC-21D: six bytes (command 1, command 2,
// data 1 to data 4) between a three-byte head and a two-byte tail. NEC and NiceCam frame them with
// A0 .. AF; Sunkwang, D-MAX and Wonwoo with 55 .. AA. One code table serves all five drivers; each
// driver adds only its frame around the payload.
//
//   command 1  01 focus far, 02 focus near, 08 iris close, 10 iris open
//   command 2  02 right, 04 left, 08 up, 10 down, 20 zoom tele, 40 zoom wide; with bit 0 set a
//              function: 03 set preset, 07 go to preset (data 1 = n, data 2-4 = FF), 1B auto pan
//              ("swing"), 71 run pattern ("trace", data 1 = 01, data 2 = pattern 0-3), 73 stop
//              pattern, B1 menu (data 1 = 00 on, 01 off)
//   data 1-2   pan and tilt speed 00-3F
//   data 3     zoom or focus speed 01-08
//   a stop is all six bytes 00
#pragma once
#include <cstdint>

#include "ptz/drivers/pm_engine.h"
#include "ptz/drivers/pm_pelco_family.h"

struct NecBytes {
    uint8_t ay[6];   // command 1, command 2, data 1 .. data 4; all zero is a stop
};

// The row's six bytes with the command's speeds or number placed.
NecBytes NecPayload(const PTZCode& c, const PTZArgs& x);

// The 55 .. AA frame of the makes that took the command set over: 55, 00, address, the six bytes,
// AA, 0xFF minus the sum of bytes 1-8.
void NecFrame55(PTZFrames& out, uint32_t nAddress, const NecBytes& b);

constexpr uint8_t kNecNumberMax = 255;    // presets and tour length: data 1 is one byte
constexpr uint8_t kNecPatternMax = 4;     // patterns 1-4 travel as 0-3

// The moves, zoom and the stop are Pelco's own bits (kPelcoMoves). Codes not listed send nothing
// and are remembered: there are no frames for auto pan off, camera
// power, clearing presets, the auxiliaries, automatic focus and iris, or the joystick. Iris runs
// while held, like zoom and focus.
// clang-format off
inline constexpr PTZCode kNecCodes[] = {
    {PTZCmd_AutoPan,        PTZOp::Once,     {0x00, 0x1B}},
    {PTZCmd_FocusNear,      PTZOp::Held,     {0x02, 0x00}},
    {PTZCmd_FocusFar,       PTZOp::Held,     {0x01, 0x00}},
    {PTZCmd_PresetSet,      PTZOp::Number,   {0x00, 0x03, 0x00, 0xFF, 0xFF, 0xFF}, kNecNumberMax},
    {PTZCmd_PresetTour,     PTZOp::TourStart, {}, kNecNumberMax},
    {PTZCmd_IrisOpen,       PTZOp::Held,     {0x10, 0x00}},
    {PTZCmd_IrisClose,      PTZOp::Held,     {0x08, 0x00}},
    {PTZCmd_PresetTourStop, PTZOp::TourStop},
    {PTZCmd_MenuOn,         PTZOp::Once,     {0x00, 0xB1, 0x00}},
    {PTZCmd_MenuOff,        PTZOp::Once,     {0x00, 0xB1, 0x01}},
    {PTZCmd_RunPattern,     PTZOp::Number,   {0x00, 0x71, 0x01}, kNecPatternMax},
    {PTZCmd_PresetGo,       PTZOp::Number,   {0x00, 0x07, 0x00, 0xFF, 0xFF, 0xFF}, kNecNumberMax},
};
// clang-format on
static_assert(PTZCovers(kNecCodes, kPTZMoveMask, kPelcoMoves));

// Pan and tilt run 1-63 on the Pelco scale (level 0: 4, ramped to 24 and 56). A zoom or focus
// command given no speed runs at the middle of its 1-8.
constexpr PTZSpeedScale kNecLensSpeeds = {4, 1, 8, 0, 0};

// NEC's own driver description, which NiceCam's domes speak as it stands.
extern const PTZDriver kNecNC21Driver;
