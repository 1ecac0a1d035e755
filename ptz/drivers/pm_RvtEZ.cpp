// NV and EZ protocols (Nuvico and RVT domes, models 1 and 32): Pelco-D's command-2 codes in a frame
// with a 12-bit address and a seeded check (our choice of codes on the frame the domes use).
//
//   byte | 0    | 1                        | 2            | 3       | 4      | 5      | 6
//        | 0xE5 | 0x10 | address bits 8-11 | address 0-7  | command | data 1 | data 2 | check
//
//   command  00 stop; 02 right, 04 left, 08 up, 10 down, or-ed for diagonals; 20 / 40 zoom tele /
//            wide; 80 focus far; 01 with data 1 = 01 focus near, 02 / 04 iris open / close,
//            88 / 08 camera on / off; 03 / 05 / 07 set / clear / go to preset, 09 / 0B aux on / off,
//            23 run pattern, number in data 2
//   data     pan speed, tilt speed (01-3F)
//   check    (8-bit sum of bytes 0-5) XOR 0xA5
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_pelco_family.h"

const PTZCntlOpt CntlOpt_RvtEZ = {10, 0xFEA0E503};

namespace {

using enum PTZOp;

constexpr uint8_t kNumberMax = 99;     // presets, patterns and tour length
constexpr uint8_t kCheckSeed = 0xA5;

// Rows: (unused), command, data 1, data 2. Automatic pan runs on presets 99 / 96 and the menu
// opens with go-to-preset 95.
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_AutoPan,        Once,      {0, kPelcoPresetGo, 0, 99}},
    {PTZCmd_AutoPanOff,     Once,      {0, kPelcoPresetGo, 0, 96}},
    {PTZCmd_FocusNear,      Held,      {0, 0x01, 0x01}},
    {PTZCmd_FocusFar,       Held,      {0, 0x80}},
    {PTZCmd_CameraOn,       Once,      {0, 0x01, 0x88}},
    {PTZCmd_CameraOff,      Once,      {0, 0x01, 0x08}},
    {PTZCmd_PresetSet,      Number,    {0, kPelcoPresetSet}, kNumberMax},
    {PTZCmd_PresetClear,    Number,    {0, kPelcoPresetClear}, kNumberMax},
    {PTZCmd_PresetGo,       Number,    {0, kPelcoPresetGo}, kNumberMax},
    {PTZCmd_PresetTour,     TourStart, {}, kNumberMax},
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_IrisOpen,       Once,      {0, 0x01, 0x02}},
    {PTZCmd_IrisClose,      Once,      {0, 0x01, 0x04}},
    {PTZCmd_AuxOn1,         Once,      {0, kPelcoAuxOn, 0, 1}},
    {PTZCmd_AuxOn2,         Once,      {0, kPelcoAuxOn, 0, 2}},
    {PTZCmd_AuxOn3,         Once,      {0, kPelcoAuxOn, 0, 3}},
    {PTZCmd_AuxOn4,         Once,      {0, kPelcoAuxOn, 0, 4}},
    {PTZCmd_AuxOn5,         Once,      {0, kPelcoAuxOn, 0, 5}},
    {PTZCmd_AuxOn6,         Once,      {0, kPelcoAuxOn, 0, 6}},
    {PTZCmd_AuxOff1,        Once,      {0, kPelcoAuxOff, 0, 1}},
    {PTZCmd_AuxOff2,        Once,      {0, kPelcoAuxOff, 0, 2}},
    {PTZCmd_AuxOff3,        Once,      {0, kPelcoAuxOff, 0, 3}},
    {PTZCmd_AuxOff4,        Once,      {0, kPelcoAuxOff, 0, 4}},
    {PTZCmd_AuxOff5,        Once,      {0, kPelcoAuxOff, 0, 5}},
    {PTZCmd_AuxOff6,        Once,      {0, kPelcoAuxOff, 0, 6}},
    {PTZCmd_MenuOn,         Once,      {0, kPelcoPresetGo, 0, 95}},
    {PTZCmd_RunPattern,     Number,    {0, kPelcoPatternRun}, kNumberMax},
    {PTZCmd_Joystick,       Joystick},
};
// clang-format on
static_assert(PTZCovers(kCodes, kPTZMoveMask, kPelcoMoves));

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    const PelcoBytes b = PelcoPayload(c, x);
    out.Start().Put(0xE5).Put(0x10 | ((nAddress >> 8) & 0x0F)).Put(nAddress);
    out.Put(b.yCmd2).Put(b.yData1).Put(b.yData2).Check(PTZCheck::Sum8, 0, 0, kCheckSeed);
}

constexpr PTZDriver kRvtEZ = {.atCodes = kCodes, .write = Write, .tPan = kPTZPelcoSpeeds,
                             .tTilt = kPTZPelcoSpeeds, .atShared = kPelcoMoves};

}  // namespace

int32_t BuildCmd_RvtEZ(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState, uint32_t) {
    return PTZBuild(kRvtEZ, nAddress, atPacket, ptState);
}

int32_t CheckStatus_RvtEZ(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kRvtEZ, nAddress, atPacket, ptState);
}
