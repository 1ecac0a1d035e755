// TEMPORARY, removed when the catalogue is complete: drivers whose files are still being written.
// Each sends nothing; its options record is already the real one. A driver's file replaces its
// line here.
#include "ptz/drivers/pm_drivers.h"

#define PENDING_NO_STATUS(X, gap, caps)                                                        \
    const PTZCntlOpt CntlOpt_##X = {gap, caps};                                                \
    int32_t BuildCmd_##X(uint32_t, PTZPacket*, PTZChannelState*, uint32_t) { return 0; }
#define PENDING(X, gap, caps)                                                                  \
    PENDING_NO_STATUS(X, gap, caps)                                                            \
    int32_t CheckStatus_##X(uint32_t, PTZPacket*, PTZChannelState*) { return 0; }

PENDING(RvtEZ, 10, 0xFEA0E503)
PENDING(MLPIH7x00, 10, 0x7D580503)
PENDING(VCL, 10, 0xFC002002)
PENDING(NEC_NC21, 10, 0xFE000002)
PENDING(SK2107, 10, 0xF4080002)
PENDING(Custom1, 10, 0xFC080002)
PENDING(DSC230, 10, 0xFE8A2002)
PENDING(LPTA100L, 10, 0x00082000)
PENDING_NO_STATUS(GC655NP, 10, 0x00002000)
PENDING_NO_STATUS(WPT101, 10, 0x00080000)
PENDING(CNBZOOM, 60, 0xFE002000)
PENDING(PSonicCS85x, 10, 0xFE900502)
PENDING(HSDN251NP, 10, 0xFC000002)
PENDING(CyberDome, 10, 0xFE880002)
PENDING(SmartDome, 10, 0xFD482002)
PENDING(KRE303, 15, 0x02A00000)
PENDING(ADDeltaDome, 10, 0xFC00C002)
PENDING(Hunt, 10, 0xFD4A0002)
PENDING(Custom2, 10, 0xFE082000)
PENDING(LGDome, 10, 0xFEA0C002)
PENDING(PTC400C, 10, 0xFC002002)
PENDING(NiceCam, 10, 0xFE002002)
PENDING(CNBPTZ, 60, 0xFE5A0000)
PENDING(BBV, 10, 0xFC080002)
