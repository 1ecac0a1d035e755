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

PENDING(PCSiLAN, 0, 0xFE080003)
PENDING_NO_STATUS(ICDiLAN, 0, 0x00000000)
PENDING(ToaCC, 10, 0xFC08E503)
PENDING(ToaSC, 1, 0x3C080003)
PENDING(SC1000, 0, 0xFE080003)
PENDING(PT2000, 0, 0xFE080003)
