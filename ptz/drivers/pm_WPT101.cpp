// Wonwoo PT-101 protocol: the 11-byte 55 .. AA frame of the Sunkwang SK2107. Nothing public ties
// codes to this frame; our choice: the NEC NC-21D command set inside it.
//
//   55, 00, address, command 1, command 2, data 1 .. 4, AA, 0xFF minus the sum of bytes 1 to 8
//
// The model has no status routine, so a move given no speed is never ramped: it goes out at once
// at the speed the others ramp to first (24 of 63) rather than creeping at 4 until its stop.
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_nec_family.h"

const PTZCntlOpt CntlOpt_WPT101 = {10, 0x00080000};

namespace {

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    NecFrame55(out, nAddress, NecPayload(c, x));
}

constexpr PTZSpeedScale kSpeeds = {24, 1, 63, 0, 0};
constexpr PTZDriver kWPT101 = {.atCodes = kNecCodes, .write = Write, .tPan = kSpeeds, .tTilt = kSpeeds,
                               .tZoom = kNecLensSpeeds, .atShared = kPelcoMoves};

}  // namespace

int32_t BuildCmd_WPT101(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                        uint32_t /*nParam2*/) {
    return PTZBuild(kWPT101, nAddress, atPacket, ptState);
}
