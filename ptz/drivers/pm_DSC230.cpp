// D-MAX DSC-230 protocol: the 11-byte 55 .. AA frame of the Sunkwang SK2107. Nothing public ties
// codes to this frame; our choice: the NEC NC-21D command set inside it.
//
//   55, 00, address, command 1, command 2, data 1 .. 4, AA, 0xFF minus the sum of bytes 1 to 8
//
// One frame carries both axes and both speeds, so moves are never split. A command that sends the
// dome somewhere by itself or stores where it stands (preset go or set, pattern, auto pan) and
// arrives while a move or lens action is still in force goes out behind a stop frame: the dome
// takes it from a standstill instead of finishing the manual action first.
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_nec_family.h"

const PTZCntlOpt CntlOpt_DSC230 = {10, 0xFE8A2002};

namespace {

bool SendsItself(const PTZMeaning& t) {
    return t.eAction == PTZAction::PresetGo || t.eAction == PTZAction::PresetSet ||
           t.eAction == PTZAction::Pattern || t.eAction == PTZAction::AutoPan;
}

// The last command that reached the dome started something it is still doing.
bool InForce(uint32_t nPrevCmd) {
    const PTZAction e = PTZMeaningOf(nPrevCmd).eAction;
    return e == PTZAction::Move || e == PTZAction::Zoom || e == PTZAction::Focus ||
           e == PTZAction::Iris;
}

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    if (x.eWhy == PTZWhy::Command && SendsItself(x.tMeaning) && InForce(x.ptState->nPrevCmd))
        NecFrame55(out, nAddress, NecBytes{});
    NecFrame55(out, nAddress, NecPayload(c, x));
}

constexpr PTZDriver kDSC230 = {.atCodes = kNecCodes, .write = Write, .tPan = kPTZPelcoSpeeds,
                               .tTilt = kPTZPelcoSpeeds, .tZoom = kNecLensSpeeds,
                               .atShared = kPelcoMoves};

}  // namespace

int32_t BuildCmd_DSC230(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                        uint32_t /*nParam2*/) {
    return PTZBuild(kDSC230, nAddress, atPacket, ptState);
}

int32_t CheckStatus_DSC230(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kDSC230, nAddress, atPacket, ptState);
}
