// Honeywell HSDN-251N/P domes: the Pelco-D layout behind an A5 sync byte, with Pelco-D's codes
// (our choice: no public document gives this dome's codes).
//
//   byte | 0    | 1       | 2         | 3         | 4      | 5      | 6
//        | 0xA5 | address | command 1 | command 2 | data 1 | data 2 | sum of bytes 1-5
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_pelco_family.h"

const PTZCntlOpt CntlOpt_HSDN251NP = {10, 0xFC000002};

namespace {

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    const PelcoBytes b = PelcoPayload(c, x);
    out.Start().Put(0xA5).Put(nAddress).Put(b.yCmd1).Put(b.yCmd2).Put(b.yData1).Put(b.yData2);
    out.Check(PTZCheck::Sum8, 1);
}

const PTZDriver kHSDN251NP = {.atCodes = kPelcoDCodes, .write = Write, .tPan = kPTZPelcoSpeeds,
                              .tTilt = kPTZPelcoSpeeds, .atShared = kPelcoMoves};

}  // namespace

int32_t BuildCmd_HSDN251NP(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                           uint32_t) {
    return PTZBuild(kHSDN251NP, nAddress, atPacket, ptState);
}

int32_t CheckStatus_HSDN251NP(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kHSDN251NP, nAddress, atPacket, ptState);
}
