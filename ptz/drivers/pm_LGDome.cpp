// LG dome protocol (model 33): Pelco-D's command bytes in an 8-byte frame of its own (our choice of
// codes on the frame the domes use).
//
//   byte | 0    | 1    | 2       | 3         | 4         | 5         | 6                  | 7
//        | 0xE5 | 0x01 | address | command 1 | command 2 | pan speed | tilt speed / number | sum 0-6
//
// Presets are command 2 = 03 / 05 / 07 with the number in byte 6; automatic pan runs on presets
// 99 / 96 and the menu opens with go-to-preset 95.
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_pelco_family.h"

const PTZCntlOpt CntlOpt_LGDome = {10, 0xFEA0C002};

namespace {

using enum PTZOp;

constexpr uint8_t kPresetMax = 255;

// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_AutoPan,        Once,      {0x00, kPelcoPresetGo, 0, 99}},
    {PTZCmd_AutoPanOff,     Once,      {0x00, kPelcoPresetGo, 0, 96}},
    {PTZCmd_FocusNear,      Held,      {0x01, 0x00}},
    {PTZCmd_FocusFar,       Held,      {0x00, 0x80}},
    {PTZCmd_CameraOn,       Once,      {0x88, 0x00}},
    {PTZCmd_CameraOff,      Once,      {0x08, 0x00}},
    {PTZCmd_PresetSet,      Number,    {0x00, kPelcoPresetSet}, kPresetMax},
    {PTZCmd_PresetClear,    Number,    {0x00, kPelcoPresetClear}, kPresetMax},
    {PTZCmd_PresetGo,       Number,    {0x00, kPelcoPresetGo}, kPresetMax},
    {PTZCmd_PresetTour,     TourStart, {}, kPresetMax},
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_IrisOpen,       Once,      {0x02, 0x00}},
    {PTZCmd_IrisClose,      Once,      {0x04, 0x00}},
    {PTZCmd_JoystickStop,   Unsupported},
    {PTZCmd_MenuOn,         Once,      {0x00, kPelcoPresetGo, 0, 95}},
};
// clang-format on
static_assert(PTZCovers(kCodes, kPTZMoveMask, kPelcoMoves));

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    const PelcoBytes b = PelcoPayload(c, x);
    out.Start().Put(0xE5).Put(0x01).Put(nAddress).Put(b.yCmd1).Put(b.yCmd2).Put(b.yData1);
    out.Put(b.yData2).Check(PTZCheck::Sum8, 0);
}

constexpr PTZDriver kLGDome = {.atCodes = kCodes, .write = Write, .tPan = kPTZPelcoSpeeds,
                              .tTilt = kPTZPelcoSpeeds, .atShared = kPelcoMoves};

}  // namespace

int32_t BuildCmd_LGDome(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState, uint32_t) {
    return PTZBuild(kLGDome, nAddress, atPacket, ptState);
}

int32_t CheckStatus_LGDome(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kLGDome, nAddress, atPacket, ptState);
}
