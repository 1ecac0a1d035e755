// BBV TC domes at 9600 baud (source: the maker's protocol manual; an independent public decoder
// reads the frames the same way). The Pelco-P frame behind B0 / BF, with the address unchanged.
//
//   byte | 0    | 1       | 2         | 3         | 4      | 5      | 6    | 7
//        | 0xB0 | address | command 1 | command 2 | data 1 | data 2 | 0xBF | XOR of bytes 0-6
//
//   command 1  02 focus far, 01 focus near, 04 iris open, 08 iris close, 40 / 10 camera on / off
//   command 2  the move and zoom bits, or 03 / 05 / 07 set / clear / go to preset, 09 / 0B aux on /
//              off, 1F / 21 / 23 record start / record end / run the pattern, number in data 2
//   data       pan speed, tilt speed (00-3F)
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_pelco_family.h"

const PTZCntlOpt CntlOpt_BBV = {10, 0xFC080002};

namespace {

using enum PTZOp;

constexpr uint8_t kPresetMax = 127;
constexpr uint8_t kPresetClearMax = 32;

// The menu opens with set-preset 95 and automatic pan runs on presets 99 / 96. The dome stores one
// pattern: the model keys 1 and its stop record it, RunPattern runs it.
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_AutoPan,        Held,      {0x00, kPelcoPresetGo, 0, 99}},
    {PTZCmd_AutoPanOff,     Once,      {0x00, kPelcoPresetGo, 0, 96}},
    {PTZCmd_Ext1,           Once,      {0x00, 0x1F}},
    {PTZCmd_Ext1Stop,       Once,      {0x00, 0x21}},
    {PTZCmd_FocusNear,      Held,      {0x01, 0x00}},
    {PTZCmd_FocusFar,       Held,      {0x02, 0x00}},
    {PTZCmd_CameraOn,       Once,      {0x40, 0x00}},
    {PTZCmd_CameraOff,      Once,      {0x10, 0x00}},
    {PTZCmd_PresetSet,      Number,    {0x00, kPelcoPresetSet}, kPresetMax},
    {PTZCmd_PresetClear,    Number,    {0x00, kPelcoPresetClear}, kPresetClearMax},
    {PTZCmd_PresetGo,       Number,    {0x00, kPelcoPresetGo}, kPresetMax},
    {PTZCmd_PresetTour,     TourStart, {}, kPresetMax},
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_IrisOpen,       Once,      {0x04, 0x00}},
    {PTZCmd_IrisClose,      Once,      {0x08, 0x00}},
    {PTZCmd_AuxOn1,         Once,      {0x00, kPelcoAuxOn, 0, 1}},
    {PTZCmd_AuxOn2,         Once,      {0x00, kPelcoAuxOn, 0, 2}},
    {PTZCmd_AuxOn3,         Once,      {0x00, kPelcoAuxOn, 0, 3}},
    {PTZCmd_AuxOff1,        Once,      {0x00, kPelcoAuxOff, 0, 1}},
    {PTZCmd_AuxOff2,        Once,      {0x00, kPelcoAuxOff, 0, 2}},
    {PTZCmd_AuxOff3,        Once,      {0x00, kPelcoAuxOff, 0, 3}},
    {PTZCmd_MenuOn,         Once,      {0x00, kPelcoPresetSet, 0, 95}},
    {PTZCmd_RunPattern,     Number,    {0x00, kPelcoPatternRun}, 1},
    {PTZCmd_JoystickStop,   Unsupported},
};
// clang-format on
static_assert(PTZCovers(kCodes, kPTZMoveMask, kPelcoMoves));

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    const PelcoBytes b = PelcoPayload(c, x);
    out.Start().Put(0xB0).Put(nAddress).Put(b.yCmd1).Put(b.yCmd2).Put(b.yData1).Put(b.yData2);
    out.Put(0xBF).Check(PTZCheck::Xor, 0);
}

constexpr PTZDriver kBBV = {.atCodes = kCodes, .write = Write, .tPan = kPTZPelcoSpeeds,
                           .tTilt = kPTZPelcoSpeeds, .atShared = kPelcoMoves};

}  // namespace

int32_t BuildCmd_BBV(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState, uint32_t) {
    return PTZBuild(kBBV, nAddress, atPacket, ptState);
}

int32_t CheckStatus_BBV(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kBBV, nAddress, atPacket, ptState);
}
