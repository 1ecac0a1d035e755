// Frames of the C&B Tech command set.
#include "ptz/drivers/pm_cnb_family.h"

namespace {

void Frame(PTZFrames& out, uint32_t nAddress, uint8_t yCmd, uint32_t nOption) {
    out.Start().Put('*').Dec(nAddress, 2).Hex(yCmd, 2).Hex(nOption, 4).CheckHex(PTZCheck::Sum8, 0);
}

// Speeds 01-3F, also for wild levels.
uint32_t Speed(int32_t n) { return n < 1 ? 1 : n > 0x3F ? 0x3F : static_cast<uint32_t>(n); }

}  // namespace

void CNBWrite(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    if (nAddress > 99) return;   // beyond two digits: another camera would answer
    const auto Option = [](uint32_t nFirst, uint32_t nSecond) { return (nFirst << 8) | nSecond; };
    switch (c.eOp) {
    case PTZOp::Move:
        if (c.ay[1] != 0) Frame(out, nAddress, kCNBPan, Option(c.ay[1], Speed(x.nPanSpeed)));
        if (c.ay[2] != 0) Frame(out, nAddress, kCNBTilt, Option(c.ay[2], Speed(x.nTiltSpeed)));
        return;
    case PTZOp::Number:
        Frame(out, nAddress, c.ay[0], Option(x.nNumber, 0));
        return;
    default:
        break;
    }
    if (c.ay[0] == kCNBPan) {
        // A move stop: the axes of the stopped move.
        const PTZCode* m = x.ptStopped;
        if (m == nullptr || m->ay[1] != 0) Frame(out, nAddress, kCNBPan, kCNBStop);
        if (m == nullptr || m->ay[2] != 0) Frame(out, nAddress, kCNBTilt, kCNBStop);
        return;
    }
    Frame(out, nAddress, c.ay[0], Option(c.ay[1], c.ay[2]));
}
