// Placement of a command's arguments in the four variable bytes of the Pelco command set.
#include "ptz/drivers/pm_pelco_family.h"

namespace {

// Command 2 of a proportional move: the direction bits of each axis that moves.
uint8_t Directions(const PTZMeaning& t) {
    uint8_t y = 0;
    if (t.nLens != 0) y |= t.nLens > 0 ? 0x20 : 0x40;
    if (t.nPan != 0) y |= t.nPan < 0 ? 0x04 : 0x02;
    if (t.nTilt != 0) y |= t.nTilt > 0 ? 0x08 : 0x10;
    return y;
}

}  // namespace

PelcoBytes PelcoPayload(const PTZCode& c, const PTZArgs& x) {
    PelcoBytes b = {c.ay[0], c.ay[1], c.ay[2], c.ay[3]};
    switch (c.eOp) {
    case PTZOp::Move:
        if (x.tMeaning.nPan != 0) b.yData1 = static_cast<uint8_t>(x.nPanSpeed);
        if (x.tMeaning.nTilt != 0) b.yData2 = static_cast<uint8_t>(x.nTiltSpeed);
        break;
    case PTZOp::Number:
        b.yData2 = static_cast<uint8_t>(x.nNumber);
        break;
    case PTZOp::Joystick:
        b = {0x00, Directions(x.tMeaning), static_cast<uint8_t>(x.nPanSpeed),
             static_cast<uint8_t>(x.nTiltSpeed)};
        break;
    default:
        break;
    }
    return b;
}
