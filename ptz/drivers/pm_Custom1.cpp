// Model 7, a reserved slot at 4800 baud for a make that speaks Pelco-D: Pelco-D frames and codes
// byte for byte (our choice: nothing else is known of the camera it was reserved for).
//
//   byte | 0    | 1       | 2         | 3         | 4      | 5      | 6
//        | 0xFF | address | command 1 | command 2 | data 1 | data 2 | sum of bytes 1-5
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_pelco_family.h"

// The capability word tells the recorder which controls to offer; it limits nothing here.
const PTZCntlOpt CntlOpt_Custom1 = {10, 0xFC080002};

int32_t BuildCmd_Custom1(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState, uint32_t) {
    return PTZBuild(kPelcoDDriver, nAddress, atPacket, ptState);
}

int32_t CheckStatus_Custom1(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kPelcoDDriver, nAddress, atPacket, ptState);
}
