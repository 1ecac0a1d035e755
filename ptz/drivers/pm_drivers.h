// Entry points of the camera protocol drivers: BuildCmd_X, CheckStatus_X (where the camera has a
// status routine) and CntlOpt_X of each driver X.
#pragma once
#include "ptz/drivers/pm_common.h"

#define PTZ_DRIVER_NO_STATUS(X)                                                               \
    extern const PTZCntlOpt CntlOpt_##X;                                                      \
    int32_t BuildCmd_##X(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,    \
                         uint32_t nParam2)
#define PTZ_DRIVER(X)                                                                         \
    PTZ_DRIVER_NO_STATUS(X);                                                                  \
    int32_t CheckStatus_##X(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState)

PTZ_DRIVER(PelcoD);
PTZ_DRIVER(PelcoP);
PTZ_DRIVER(ExtPelcoP);
PTZ_DRIVER(AutoDome);
PTZ_DRIVER(CanonVCC4);
PTZ_DRIVER_NO_STATUS(SCC641);

// Byte-frame catalogue drivers.
PTZ_DRIVER(Custom1);
PTZ_DRIVER(Custom2);
PTZ_DRIVER(KRE303);
PTZ_DRIVER(CyberDome);
PTZ_DRIVER(HSDN251NP);
PTZ_DRIVER(BBV);
PTZ_DRIVER(RvtEZ);
PTZ_DRIVER(LGDome);
PTZ_DRIVER(NEC_NC21);
PTZ_DRIVER(NiceCam);
PTZ_DRIVER(SK2107);
PTZ_DRIVER(DSC230);
PTZ_DRIVER_NO_STATUS(WPT101);
PTZ_DRIVER(Hunt);
PTZ_DRIVER(PTC400C);
PTZ_DRIVER(ADDeltaDome);
PTZ_DRIVER(MLPIH7x00);
PTZ_DRIVER_NO_STATUS(GC655NP);
PTZ_DRIVER(VCL);

// ASCII catalogue drivers.
PTZ_DRIVER(PSonicCS85x);
PTZ_DRIVER(CNBZOOM);
PTZ_DRIVER(CNBPTZ);
PTZ_DRIVER(LPTA100L);
PTZ_DRIVER(SmartDome);

// Controller-link drivers; PT2000 is built but no model entry names it.
PTZ_DRIVER(PCSiLAN);
PTZ_DRIVER_NO_STATUS(ICDiLAN);
PTZ_DRIVER(ToaCC);
PTZ_DRIVER(ToaSC);
PTZ_DRIVER(SC1000);
PTZ_DRIVER(PT2000);

#undef PTZ_DRIVER
#undef PTZ_DRIVER_NO_STATUS
