// C&B Tech AN200 zoom camera driver: lens, automatic focus and presets in the C&B command frame
// (see pm_cnb_family.h for the frame and where its codes come from). The camera has no pan/tilt:
// moves, like every code not listed (camera power, automatic iris, the menu, patterns,
// auxiliaries), send nothing.
#include "ptz/drivers/pm_cnb_family.h"
#include "ptz/drivers/pm_drivers.h"

const PTZCntlOpt CntlOpt_CNBZOOM = {60, 0xFE002000};

namespace {

using enum PTZOp;

// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_FocusNear,      Held,      {kCNBFocus, kCNBMinus}},
    {PTZCmd_FocusFar,       Held,      {kCNBFocus, kCNBPlus}},
    {PTZCmd_ZoomWide,       Held,      {kCNBZoom, kCNBMinus}},
    {PTZCmd_ZoomTele,       Held,      {kCNBZoom, kCNBPlus}},
    {PTZCmd_PresetSet,      Number,    {kCNBPresetStore}, kCNBPresetMax},
    {PTZCmd_PresetTour,     TourStart, {}, kCNBPresetMax},
    {PTZCmd_IrisOpen,       Once,      {kCNBIris, kCNBPlus}},
    {PTZCmd_IrisClose,      Once,      {kCNBIris, kCNBMinus}},
    {PTZCmd_FocusNearStop,  Once,      {kCNBFocus, kCNBStop}},
    {PTZCmd_FocusFarStop,   Once,      {kCNBFocus, kCNBStop}},
    {PTZCmd_ZoomWideStop,   Once,      {kCNBZoom, kCNBStop}},
    {PTZCmd_ZoomTeleStop,   Once,      {kCNBZoom, kCNBStop}},
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_IrisOpenStop,   Once,      {kCNBIris, kCNBStop}},
    {PTZCmd_IrisCloseStop,  Once,      {kCNBIris, kCNBStop}},
    {PTZCmd_FocusAuto,      Once,      {kCNBAutoFocus}},     // one shot
    {PTZCmd_PresetGo,       Number,    {kCNBPresetGo}, kCNBPresetMax},
};
// clang-format on

// No moves: the status routine only steps tours.
constexpr PTZDriver kCNBZoomDriver = {kCodes, CNBWrite, kPTZPelcoSpeeds, kPTZPelcoSpeeds};

}  // namespace

int32_t BuildCmd_CNBZOOM(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                         uint32_t /*nParam2*/) {
    return PTZBuild(kCNBZoomDriver, nAddress, atPacket, ptState);
}

int32_t CheckStatus_CNBZOOM(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kCNBZoomDriver, nAddress, atPacket, ptState);
}
