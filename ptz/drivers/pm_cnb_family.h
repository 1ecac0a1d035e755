// The C&B Tech command frame, shared by the AN200 zoom camera and the CNB-PTZ102 pan/tilt head:
// 11 ASCII characters, no binary bytes.
//
//   "*"  i i  c c  o o o o  k k
//
//   i i      camera id, two decimal digits
//   c c      command, two upper-case hexadecimal digits
//   o o o o  option, four upper-case hexadecimal digits
//   k k      8-bit sum of the 9 characters before it, two upper-case hexadecimal digits
//
// From the maker's protocol manual: preset store C7 and go C8 with option pp00 (presets 00-3F),
// one-shot automatic focus A0, reset 71; the camera answers "*00000000AA". The manual gives no
// codes for zoom, focus, iris and pan/tilt; ours follow its layout (a lens group beside A0, the
// parameter in the option's first byte as with the presets):
//   A1 zoom, A2 focus, A3 iris     option 0100 tele / far / open, 0200 wide / near / close,
//                                  0000 stop
//   B1 pan, B2 tilt                option dd ss: dd 01 right / up, 02 left / down, 00 stop;
//                                  ss speed 01-3F
#pragma once
#include <cstdint>

#include "ptz/drivers/pm_engine.h"

constexpr uint8_t kCNBAutoFocus = 0xA0;
constexpr uint8_t kCNBZoom = 0xA1;
constexpr uint8_t kCNBFocus = 0xA2;
constexpr uint8_t kCNBIris = 0xA3;
constexpr uint8_t kCNBPan = 0xB1;
constexpr uint8_t kCNBTilt = 0xB2;
constexpr uint8_t kCNBPresetStore = 0xC7;
constexpr uint8_t kCNBPresetGo = 0xC8;
constexpr uint8_t kCNBPresetMax = 0x3F;   // presets and tour length

// Option bytes of the lens and move commands.
constexpr uint8_t kCNBStop = 0x00;
constexpr uint8_t kCNBPlus = 0x01;        // tele, far, open, right, up
constexpr uint8_t kCNBMinus = 0x02;       // wide, near, close, left, down

// The rows both cameras share: lens, automatic focus, presets and the tour.
// clang-format off
inline constexpr PTZCode kCNBLens[] = {
    {PTZCmd_FocusNear,      PTZOp::Held,      {kCNBFocus, kCNBMinus}},
    {PTZCmd_FocusFar,       PTZOp::Held,      {kCNBFocus, kCNBPlus}},
    {PTZCmd_ZoomWide,       PTZOp::Held,      {kCNBZoom, kCNBMinus}},
    {PTZCmd_ZoomTele,       PTZOp::Held,      {kCNBZoom, kCNBPlus}},
    {PTZCmd_PresetSet,      PTZOp::Number,    {kCNBPresetStore}, kCNBPresetMax},
    {PTZCmd_PresetTour,     PTZOp::TourStart, {}, kCNBPresetMax},
    {PTZCmd_IrisOpen,       PTZOp::Once,      {kCNBIris, kCNBPlus}},
    {PTZCmd_IrisClose,      PTZOp::Once,      {kCNBIris, kCNBMinus}},
    {PTZCmd_FocusNearStop,  PTZOp::Once,      {kCNBFocus, kCNBStop}},
    {PTZCmd_FocusFarStop,   PTZOp::Once,      {kCNBFocus, kCNBStop}},
    {PTZCmd_ZoomWideStop,   PTZOp::Once,      {kCNBZoom, kCNBStop}},
    {PTZCmd_ZoomTeleStop,   PTZOp::Once,      {kCNBZoom, kCNBStop}},
    {PTZCmd_PresetTourStop, PTZOp::TourStop},
    {PTZCmd_IrisOpenStop,   PTZOp::Once,      {kCNBIris, kCNBStop}},
    {PTZCmd_IrisCloseStop,  PTZOp::Once,      {kCNBIris, kCNBStop}},
    {PTZCmd_FocusAuto,      PTZOp::Once,      {kCNBAutoFocus}},     // one shot
    {PTZCmd_PresetGo,       PTZOp::Number,    {kCNBPresetGo}, kCNBPresetMax},
};
// clang-format on

// Writes the frames of one row. Rows: command, the option's first and second byte. Move rows:
// 0, pan direction, tilt direction: a pan frame, then a tilt frame, for the axes that move. A stop
// row with command B1 stops the axes of the move it ends (both when that is not known). Number
// rows put the number in the option's first byte.
void CNBWrite(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x);
