// Entry points of the camera protocol drivers built into the model table.
#pragma once
#include "ptz/drivers/pm_common.h"

#define PTZ_DRIVER(X)                                                                         \
    extern const PTZCntlOpt CntlOpt_##X;                                                      \
    int32_t BuildCmd_##X(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,    \
                         uint32_t nParam2);                                                   \
    int32_t CheckStatus_##X(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState)

PTZ_DRIVER(PelcoD);
PTZ_DRIVER(PelcoP);
PTZ_DRIVER(ExtPelcoP);
PTZ_DRIVER(AutoDome);
PTZ_DRIVER(CanonVCC4);
#undef PTZ_DRIVER

// Samsung SCC-641 has no status routine.
extern const PTZCntlOpt CntlOpt_SCC641;
int32_t BuildCmd_SCC641(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState, uint32_t nParam2);
