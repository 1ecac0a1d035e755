// Model 31, Vesto's reserved slot: Pelco-D frames and codes byte for byte (our choice: no protocol
// of the maker's own was found, and its domes of this era copy Pelco-D).
//
//   byte | 0    | 1       | 2         | 3         | 4      | 5      | 6
//        | 0xFF | address | command 1 | command 2 | data 1 | data 2 | sum of bytes 1-5
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_pelco_family.h"

// The capability word tells the recorder which controls to offer; it limits nothing here.
const PTZCntlOpt CntlOpt_Custom2 = {10, 0xFE082000};

int32_t BuildCmd_Custom2(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState, uint32_t) {
    return PTZBuild(kPelcoDDriver, nAddress, atPacket, ptState);
}

int32_t CheckStatus_Custom2(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kPelcoDDriver, nAddress, atPacket, ptState);
}
