// Sunkwang SK2107 protocol: one 11-byte frame per command. Nothing public ties codes to this frame;
// our choice: the NEC NC-21D command set inside it.
//
//   byte | 0    | 1    | 2       | 3 .. 8                            | 9    | 10
//        | 0x55 | 0x00 | address | command 1, command 2, data 1 .. 4 | 0xAA | check
//
//   address  low 8 bits of the configured address
//   check    0xFF minus the 8-bit sum of bytes 1 to 8
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_nec_family.h"

const PTZCntlOpt CntlOpt_SK2107 = {10, 0xF4080002};

namespace {

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    NecFrame55(out, nAddress, NecPayload(c, x));
}

constexpr PTZDriver kSK2107 = {.atCodes = kNecCodes, .write = Write, .tPan = kPTZPelcoSpeeds,
                               .tTilt = kPTZPelcoSpeeds, .tZoom = kNecLensSpeeds,
                               .atShared = kPelcoMoves};

}  // namespace

int32_t BuildCmd_SK2107(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                        uint32_t /*nParam2*/) {
    return PTZBuild(kSK2107, nAddress, atPacket, ptState);
}

int32_t CheckStatus_SK2107(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kSK2107, nAddress, atPacket, ptState);
}
