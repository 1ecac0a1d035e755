// Toshiba SC1000 system-controller link. Takes proportional moves; the status routine ramps
// level-0 moves and steps preset tours.
//
//   02, address, 04, command 1, command 2, data 1, data 2, 03, XOR of bytes 1-7
//
// The controller-link frame (pm_link_family.h) with Pelco-D's codes. Source: our choice; nothing
// public was found for this link.
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_link_family.h"

const PTZCntlOpt CntlOpt_SC1000 = {0, 0xFE080003};

int32_t BuildCmd_SC1000(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                        uint32_t) {
    return PTZBuild(kLinkDriver, nAddress, atPacket, ptState);
}

int32_t CheckStatus_SC1000(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kLinkDriver, nAddress, atPacket, ptState);
}
