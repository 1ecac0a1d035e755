// C&B Tech AN200 zoom camera driver: lens, automatic focus and presets in the C&B command frame
// (see pm_cnb_family.h for the frame and where its codes come from). The camera has no pan/tilt:
// moves, like every code not listed (camera power, automatic iris, the menu, patterns,
// auxiliaries), send nothing.
#include "ptz/drivers/pm_cnb_family.h"
#include "ptz/drivers/pm_drivers.h"

const PTZCntlOpt CntlOpt_CNBZOOM = {60, 0xFE002000};

namespace {

// The camera's commands are the lens rows both C&B cameras share; with no moves, its status
// routine only steps tours.
constexpr PTZDriver kCNBZoomDriver = {kCNBLens, CNBWrite, kPTZPelcoSpeeds, kPTZPelcoSpeeds};

}  // namespace

int32_t BuildCmd_CNBZOOM(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                         uint32_t /*nParam2*/) {
    return PTZBuild(kCNBZoomDriver, nAddress, atPacket, ptState);
}

int32_t CheckStatus_CNBZOOM(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kCNBZoomDriver, nAddress, atPacket, ptState);
}
