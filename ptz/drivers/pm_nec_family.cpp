// The 11-byte speed-dome command set: where a command's speeds and numbers go.
#include "ptz/drivers/pm_nec_family.h"

#include <algorithm>

namespace {

constexpr uint8_t kPanTiltMax = 0x3F;

uint8_t Clamped(int32_t nSpeed, int32_t nMin, int32_t nMax) {
    return static_cast<uint8_t>(std::clamp(nSpeed, nMin, nMax));
}

}  // namespace

// Speeds are held to the camera's ranges, so that a level beyond 8 cannot send a byte it does not
// know.
NecBytes NecPayload(const PTZCode& c, const PTZArgs& x) {
    NecBytes b = {{c.ay[0], c.ay[1], c.ay[2], c.ay[3], c.ay[4], c.ay[5]}};
    const PTZMeaning& t = x.tMeaning;
    switch (t.eAction) {
    case PTZAction::Move:
        if (t.nPan != 0) b.ay[2] = Clamped(x.nPanSpeed, 1, kPanTiltMax);
        if (t.nTilt != 0) b.ay[3] = Clamped(x.nTiltSpeed, 1, kPanTiltMax);
        break;
    case PTZAction::Zoom:
    case PTZAction::Focus:
        b.ay[4] = Clamped(x.nZoomSpeed, static_cast<int32_t>(kNecLensSpeeds.nMin),
                          kNecLensSpeeds.nMax);
        break;
    case PTZAction::Pattern:
        b.ay[3] = static_cast<uint8_t>(x.nNumber - 1);
        break;
    case PTZAction::PresetSet:
    case PTZAction::PresetGo:
        b.ay[2] = static_cast<uint8_t>(x.nNumber);
        break;
    default:
        break;
    }
    return b;
}

void NecFrame55(PTZFrames& out, uint32_t nAddress, const NecBytes& b) {
    out.Start().Put(0x55).Put(0x00).Put(nAddress);
    for (uint8_t y : b.ay) out.Put(y);
    out.Put(0xAA).Check(PTZCheck::Complement, 1, 1);
}
