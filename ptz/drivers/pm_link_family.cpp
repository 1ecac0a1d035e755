// The controller-link family's code table, writer and frame finisher.
#include "ptz/drivers/pm_link_family.h"

#include <iterator>

#include "ptz/drivers/pm_pelco_family.h"

namespace {

using enum PTZOp;

constexpr uint8_t kSTX = 0x02;
constexpr uint8_t kETX = 0x03;

constexpr uint8_t kNumberMax = 255;   // presets and tour length: data 2 is one byte
constexpr uint8_t kPatternMax = 32;

// Pelco-D's codes, with the preset clear and the auxiliaries of its extended command set. Held
// actions keep their code; switches, numbers and stops may be sent again at once. The joystick row
// stays last: the link without proportional moves leaves it out.
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_AutoPan,        Once,      {0x90, 0x00}},
    {PTZCmd_FocusNear,      Held,      {0x01, 0x00}},
    {PTZCmd_FocusFar,       Held,      {0x00, 0x80}},
    {PTZCmd_ZoomWide,       Held,      {0x00, 0x40}},
    {PTZCmd_ZoomTele,       Held,      {0x00, 0x20}},
    {PTZCmd_UpLeft,         Move,      {0x00, 0x0C}},
    {PTZCmd_Up,             Move,      {0x00, 0x08}},
    {PTZCmd_UpRight,        Move,      {0x00, 0x0A}},
    {PTZCmd_Left,           Move,      {0x00, 0x04}},
    {PTZCmd_CameraOn,       Once,      {0x88, 0x00}},
    {PTZCmd_Right,          Move,      {0x00, 0x02}},
    {PTZCmd_DownLeft,       Move,      {0x00, 0x14}},
    {PTZCmd_Down,           Move,      {0x00, 0x10}},
    {PTZCmd_DownRight,      Move,      {0x00, 0x12}},
    {PTZCmd_PresetSet,      Number,    {0x00, kPelcoPresetSet}, kNumberMax},
    {PTZCmd_PresetTour,     TourStart, {}, kNumberMax},
    {PTZCmd_IrisOpen,       Once,      {0x02, 0x00}},
    {PTZCmd_IrisClose,      Once,      {0x04, 0x00}},
    {PTZCmd_IrisAuto,       Once,      {0x00, 0x2D, 0, 1}},
    {PTZCmd_AutoPanOff,     Once,      {0x10, 0x00}},
    {kPTZAnyStop,           Once,      {0x00, 0x00}},
    {PTZCmd_CameraOff,      Once,      {0x08, 0x00}},
    {PTZCmd_PresetClear,    Number,    {0x00, kPelcoPresetClear}, kNumberMax},
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_IrisAutoOff,    Once,      {0x00, 0x2D, 0, 2}},
    {PTZCmd_FocusAuto,      Once,      {0x00, 0x2B, 0, 1}},
    {PTZCmd_FocusAutoOff,   Once,      {0x00, 0x2B, 0, 2}},
    {PTZCmd_AuxOn1,         Once,      {0x00, kPelcoAuxOn, 0, 1}},
    {PTZCmd_AuxOn2,         Once,      {0x00, kPelcoAuxOn, 0, 2}},
    {PTZCmd_AuxOn3,         Once,      {0x00, kPelcoAuxOn, 0, 3}},
    {PTZCmd_AuxOn4,         Once,      {0x00, kPelcoAuxOn, 0, 4}},
    {PTZCmd_AuxOn5,         Once,      {0x00, kPelcoAuxOn, 0, 5}},
    {PTZCmd_AuxOn6,         Once,      {0x00, kPelcoAuxOn, 0, 6}},
    {PTZCmd_AuxOff1,        Once,      {0x00, kPelcoAuxOff, 0, 1}},
    {PTZCmd_AuxOff2,        Once,      {0x00, kPelcoAuxOff, 0, 2}},
    {PTZCmd_AuxOff3,        Once,      {0x00, kPelcoAuxOff, 0, 3}},
    {PTZCmd_AuxOff4,        Once,      {0x00, kPelcoAuxOff, 0, 4}},
    {PTZCmd_AuxOff5,        Once,      {0x00, kPelcoAuxOff, 0, 5}},
    {PTZCmd_AuxOff6,        Once,      {0x00, kPelcoAuxOff, 0, 6}},
    {PTZCmd_MenuOn,         Once,      {0x00, kPelcoPresetSet, 0, 95}},
    {PTZCmd_RunPattern,     Number,    {0x00, kPelcoPatternRun}, kPatternMax},
    {PTZCmd_PresetGo,       Number,    {0x00, kPelcoPresetGo}, kNumberMax},
    {PTZCmd_Joystick,       Joystick},
};
// clang-format on
static_assert(PTZCovers(kCodes, kPTZMoveMask));
static_assert(std::size(kCodes) > 0 && kCodes[std::size(kCodes) - 1].nCode == PTZCmd_Joystick);

// Finishes a frame around its payload: header, address, length, payload, ETX, check.
void MKCMD(PTZFrames& out, uint32_t nAddress, const uint8_t* ayPayload, uint32_t nLength) {
    out.Start().Put(kSTX).Put(nAddress).Put(nLength);
    for (uint32_t i = 0; i < nLength; ++i) out.Put(ayPayload[i]);
    out.Put(kETX).Check(PTZCheck::Xor, 1);
}

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    const PelcoBytes b = PelcoPayload(c, x);
    const uint8_t ay[] = {b.yCmd1, b.yCmd2, b.yData1, b.yData2};
    MKCMD(out, nAddress, ay, std::size(ay));
}

constexpr std::span<const PTZCode> kAll = kCodes;

}  // namespace

const PTZDriver kLinkDriver = {kAll, Write, kPTZPelcoSpeeds, kPTZPelcoSpeeds};
const PTZDriver kLinkDriverNoJoystick = {kAll.first(kAll.size() - 1), Write, kPTZPelcoSpeeds,
                                         kPTZPelcoSpeeds};
