// NiceCam MP-1xxx domes speak NEC's NC-21D protocol byte for byte (the documented speed-dome
// protocol of another maker with exactly this frame); only the capability word differs.
//
//   A0, address, 00, command 1, command 2, data 1 .. 4, AF, 0xFF minus the sum of bytes 1 to 8
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_nec_family.h"

const PTZCntlOpt CntlOpt_NiceCam = {10, 0xFE002002};

int32_t BuildCmd_NiceCam(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                         uint32_t /*nParam2*/) {
    return PTZBuild(kNecNC21Driver, nAddress, atPacket, ptState);
}

int32_t CheckStatus_NiceCam(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kNecNC21Driver, nAddress, atPacket, ptState);
}
