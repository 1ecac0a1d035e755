// Ikegami ICD i-LAN controller link. It advertises no capabilities and takes no proportional
// moves (a joystick command sends nothing). Without a status routine a level-0 move keeps its slow
// speed and a preset tour is stored but never stepped.
//
//   02, address, 04, command 1, command 2, data 1, data 2, 03, XOR of bytes 1-7
//
// The controller-link frame (pm_link_family.h) with Pelco-D's codes. Source: our choice; nothing
// public was found for this link.
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_link_family.h"

const PTZCntlOpt CntlOpt_ICDiLAN = {0, 0x00000000};

int32_t BuildCmd_ICDiLAN(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                         uint32_t) {
    return PTZBuild(kLinkDriverNoJoystick, nAddress, atPacket, ptState);
}
