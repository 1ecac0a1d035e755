// The Pelco-family builder and status routine, driven by each driver's code table and frame writer.
#include "ptz/drivers/pm_pelco_family.h"

namespace {

constexpr int32_t kSpeedZero = 4;         // level 0: start slowly, the status routine ramps up
constexpr uint32_t kSpeedMin = 1;
constexpr int32_t kSpeedMax = 63;
constexpr uint8_t kRampMiddleSpeed = 24;
constexpr uint8_t kRampTopSpeed = 56;

const PelcoCode* FindCode(const PelcoDriver& tDriver, uint32_t nCmd) {
    for (const PelcoCode& c : tDriver.atCodes)
        if (c.nCode == nCmd) return &c;
    return nullptr;
}

bool InRange(uint32_t n, uint32_t nMax) { return n >= 1 && n <= nMax; }

// The frame of a move with ySpeed in the data byte(s) the move uses.
int32_t MoveFrame(const PelcoDriver& tDriver, uint32_t nAddress, PTZPacket* ptPacket,
                  const PelcoCode& c, uint8_t ySpeed) {
    const bool bPan = c.eArg == PelcoArg::Pan || c.eArg == PelcoArg::PanTilt;
    const bool bTilt = c.eArg == PelcoArg::Tilt || c.eArg == PelcoArg::PanTilt;
    return tDriver.frame(nAddress, ptPacket, c.yCmd1, c.yCmd2, bPan ? ySpeed : 0,
                         bTilt ? ySpeed : 0);
}

// Command 2 of a proportional move: zoom, pan and tilt directions from bit 7 of each axis.
uint8_t JoystickDirections(uint32_t nPan, uint32_t nTilt, uint32_t nZoom) {
    uint8_t y = 0;
    if (nZoom & 0x7F) y |= (nZoom & 0x80) ? 0x20 : 0x40;
    if (nPan & 0x3F) y |= (nPan & 0x80) ? 0x04 : 0x02;
    if (nTilt & 0x3F) y |= (nTilt & 0x80) ? 0x08 : 0x10;
    return y;
}

}  // namespace

int32_t PelcoBuildCmd(const PelcoDriver& tDriver, uint32_t nAddress, PTZPacket* atPacket,
                      PTZChannelState* ptState) {
    if (PTZBuildBegin(ptState, kPTZMoveMask)) return 0;
    const PelcoCode* c = FindCode(tDriver, ptState->nCmd);
    if (c == nullptr) {
        ptState->nLastCmd = ptState->nCmd;
        return 0;
    }
    // Also the outcome of a refused code or number: those rows never keep their code.
    ptState->nLastCmd = c->bKeeps ? ptState->nCmd : kPTZCmdNone;
    const uint32_t n = static_cast<uint32_t>(ptState->nParam1);
    switch (c->eArg) {
    case PelcoArg::Fixed:
        return tDriver.frame(nAddress, atPacket, c->yCmd1, c->yCmd2, c->yData1, c->yData2);
    case PelcoArg::Pan:
    case PelcoArg::Tilt:
    case PelcoArg::PanTilt:
        return MoveFrame(tDriver, nAddress, atPacket, *c,
                         static_cast<uint8_t>(ConvertSpeed(n, kSpeedZero, kSpeedMin, kSpeedMax)));
    case PelcoArg::Number:
        if (!InRange(n, c->yData2)) return 0;
        return tDriver.frame(nAddress, atPacket, c->yCmd1, c->yCmd2, c->yData1,
                             static_cast<uint8_t>(n));
    case PelcoArg::Joystick:
        return tDriver.frame(nAddress, atPacket, 0x00,
                             JoystickDirections(n, ptState->nParam2, ptState->nParam3),
                             static_cast<uint8_t>(n & 0x3F),
                             static_cast<uint8_t>(ptState->nParam2 & 0x3F));
    case PelcoArg::TourStart:
        if (c->yData2 == 0 || InRange(n, c->yData2)) PTZTourStart(ptState, n);
        return 0;
    case PelcoArg::TourStop:
        PTZTourStop(ptState);
        return 0;
    case PelcoArg::Refused:
        return 0;
    }
    return 0;
}

int32_t PelcoCheckStatus(const PelcoDriver& tDriver, uint32_t nAddress, PTZPacket* atPacket,
                         PTZChannelState* ptState) {
    switch (PTZStatusPlan(ptState, kPTZMoveMask)) {
    case PTZStatusStep::RampMiddle:
        return MoveFrame(tDriver, nAddress, atPacket, *FindCode(tDriver, ptState->nPrevCmd),
                         kRampMiddleSpeed);
    case PTZStatusStep::RampTop:
        return MoveFrame(tDriver, nAddress, atPacket, *FindCode(tDriver, ptState->nPrevCmd),
                         kRampTopSpeed);
    case PTZStatusStep::TourStep:
        if (ptState->nTourCount == 0) {
            if (tDriver.eEmptyTour == PelcoEmptyTour::Disarm) ptState->bStatusActive = 0;
            return 0;
        }
        return tDriver.frame(nAddress, atPacket, 0x00, kPelcoGoToPreset, 0,
                             static_cast<uint8_t>(PTZTourAdvance(ptState)));
    case PTZStatusStep::Idle:
    case PTZStatusStep::Disarmed:
        break;
    }
    return 0;
}
