// NEC NC-21D speed-dome protocol: one 11-byte frame per command. The frame and its codes are those
// of a documented speed-dome protocol of another maker with exactly this frame.
//
//   byte | 0    | 1       | 2    | 3 .. 8                            | 9    | 10
//        | 0xA0 | address | 0x00 | command 1, command 2, data 1 .. 4 | 0xAF | check
//
//   address  low 8 bits of the configured address; byte 2 is the sending host, always 0
//   check    0xFF minus the 8-bit sum of bytes 1 to 8
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_nec_family.h"

const PTZCntlOpt CntlOpt_NEC_NC21 = {10, 0xFE000002};

namespace {

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    const NecBytes b = NecPayload(c, x);
    out.Start().Put(0xA0).Put(nAddress).Put(0x00);
    for (uint8_t y : b.ay) out.Put(y);
    out.Put(0xAF).Check(PTZCheck::Complement, 1, 1);
}

}  // namespace

const PTZDriver kNecNC21Driver = {.atCodes = kNecCodes, .write = Write, .tPan = kPTZPelcoSpeeds,
                                  .tTilt = kPTZPelcoSpeeds, .tZoom = kNecLensSpeeds,
                                  .atShared = kPelcoMoves};

int32_t BuildCmd_NEC_NC21(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                          uint32_t /*nParam2*/) {
    return PTZBuild(kNecNC21Driver, nAddress, atPacket, ptState);
}

int32_t CheckStatus_NEC_NC21(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kNecNC21Driver, nAddress, atPacket, ptState);
}
