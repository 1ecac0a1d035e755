// Pelco-P camera protocol: one 8-byte frame per command.
//
//   byte | 0    | 1       | 2      | 3      | 4      | 5      | 6    | 7
//        | 0xA0 | address | data 1 | data 2 | data 3 | data 4 | 0xAF | check
//
//   address  configured address minus 1 (address 0 is sent as 0), low 8 bits
//   data 3   pan speed, or 0
//   data 4   tilt speed, or a preset / pattern number, or 0
//   check    XOR of bytes 0 to 6
#include "ptz/drivers/pm_drivers.h"

const PTZCntlOpt CntlOpt_PelcoP = {10, 0xFC08E503};

namespace {

constexpr uint32_t kFrameLength = 8;
constexpr int32_t kSpeedZero = 4;         // level 0: start slowly, the status routine ramps up
constexpr uint32_t kSpeedMin = 1;
constexpr int32_t kSpeedMax = 63;
constexpr uint8_t kRampMiddleSpeed = 24;
constexpr uint8_t kRampTopSpeed = 56;
constexpr uint32_t kNumberMax = 127;      // presets and patterns 1..127
constexpr uint8_t kGoToPreset = 0x07;     // data 2 of go-to-preset

// What a command puts into data 3 and data 4.
enum class Arg : uint8_t {
    Fixed,       // data 3 = 0, data 4 = yData4
    Pan,         // data 3 = speed
    Tilt,        // data 4 = speed
    PanTilt,     // both = speed
    Number,      // data 4 = p1, accepted in 1..kNumberMax
    Joystick,    // data 2 from the axis directions, data 3/4 = pan and tilt magnitudes
    TourStart,   // no frame; p1 taken unchecked
    TourStop,    // no frame
};

struct Code {
    uint8_t nCode;
    uint8_t yData1;
    uint8_t yData2;
    Arg eArg;
    uint8_t yData4;
    bool bKeeps;     // nLastCmd stays the code after sending (held actions), else 255
};

// Codes not listed are unsupported: nothing is sent and the code becomes nLastCmd. Unlike Pelco-D,
// automatic pan is go-to-preset 99 / 96, focus near and far swap bits, and AutoPan keeps its code
// while MenuOn does not; these differences are deliberate.
constexpr Code kCodes[] = {
    {PTZCmd_AutoPan, 0x00, kGoToPreset, Arg::Fixed, 99, true},
    {PTZCmd_FocusNear, 0x02, 0x00, Arg::Fixed, 0, true},
    {PTZCmd_FocusFar, 0x01, 0x00, Arg::Fixed, 0, true},
    {PTZCmd_ZoomWide, 0x00, 0x40, Arg::Fixed, 0, true},
    {PTZCmd_ZoomTele, 0x00, 0x20, Arg::Fixed, 0, true},
    {PTZCmd_UpLeft, 0x00, 0x0C, Arg::PanTilt, 0, true},
    {PTZCmd_Up, 0x00, 0x08, Arg::Tilt, 0, true},
    {PTZCmd_UpRight, 0x00, 0x0A, Arg::PanTilt, 0, true},
    {PTZCmd_Left, 0x00, 0x04, Arg::Pan, 0, true},
    {PTZCmd_CameraOn, 0x40, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_Right, 0x00, 0x02, Arg::Pan, 0, true},
    {PTZCmd_DownLeft, 0x00, 0x14, Arg::PanTilt, 0, true},
    {PTZCmd_Down, 0x00, 0x10, Arg::Tilt, 0, true},
    {PTZCmd_DownRight, 0x00, 0x12, Arg::PanTilt, 0, true},
    {PTZCmd_PresetSet, 0x00, 0x03, Arg::Number, 0, false},
    {PTZCmd_PresetTour, 0x00, 0x00, Arg::TourStart, 0, false},
    {PTZCmd_IrisOpen, 0x04, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_IrisClose, 0x08, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_AutoPanOff, 0x00, kGoToPreset, Arg::Fixed, 96, false},
    {PTZCmd_FocusNearStop, 0x00, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_FocusFarStop, 0x00, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_ZoomWideStop, 0x00, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_ZoomTeleStop, 0x00, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_UpLeftStop, 0x00, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_UpStop, 0x00, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_UpRightStop, 0x00, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_LeftStop, 0x00, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_CameraOff, 0x10, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_RightStop, 0x00, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_DownLeftStop, 0x00, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_DownStop, 0x00, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_DownRightStop, 0x00, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_PresetTourStop, 0x00, 0x00, Arg::TourStop, 0, false},
    {PTZCmd_IrisOpenStop, 0x00, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_IrisCloseStop, 0x00, 0x00, Arg::Fixed, 0, false},
    {PTZCmd_MenuOn, 0x00, 0x03, Arg::Fixed, 95, false},
    {PTZCmd_RunPattern, 0x00, 0x23, Arg::Number, 0, false},
    {PTZCmd_PresetGo, 0x00, kGoToPreset, Arg::Number, 0, false},
    {PTZCmd_Joystick, 0x00, 0x00, Arg::Joystick, 0, false},
    {PTZCmd_JoystickStop, 0x00, 0x00, Arg::Fixed, 0, false},
};

const Code* FindCode(uint32_t nCmd) {
    for (const Code& c : kCodes)
        if (c.nCode == nCmd) return &c;
    return nullptr;
}

// Appends the check byte to the frame of nBody bytes and returns the number of frames (1).
int32_t PelcoPFinish(PTZPacket* ptPacket, uint32_t nBody) {
    uint8_t yCheck = 0;
    for (uint32_t i = 0; i < nBody; ++i) yCheck ^= ptPacket->abData[i];
    ptPacket->abData[nBody] = yCheck;
    ptPacket->nLength = nBody + 1;
    return 1;
}

int32_t Frame(uint32_t nAddress, PTZPacket* ptPacket, uint8_t yData1, uint8_t yData2, uint8_t yData3,
              uint8_t yData4) {
    uint8_t* b = ptPacket->abData;
    b[0] = 0xA0;
    b[1] = static_cast<uint8_t>(nAddress == 0 ? 0 : nAddress - 1);
    b[2] = yData1;
    b[3] = yData2;
    b[4] = yData3;
    b[5] = yData4;
    b[6] = 0xAF;
    return PelcoPFinish(ptPacket, kFrameLength - 1);
}

// The frame of a move with ySpeed in the data byte(s) the move uses.
int32_t MoveFrame(uint32_t nAddress, PTZPacket* ptPacket, const Code& c, uint8_t ySpeed) {
    const bool bPan = c.eArg == Arg::Pan || c.eArg == Arg::PanTilt;
    const bool bTilt = c.eArg == Arg::Tilt || c.eArg == Arg::PanTilt;
    return Frame(nAddress, ptPacket, c.yData1, c.yData2, bPan ? ySpeed : 0, bTilt ? ySpeed : 0);
}

// Data 2 of a proportional move (the Pelco-D direction bits): zoom, pan and tilt from bit 7 of
// each axis.
uint8_t JoystickDirections(uint32_t nPan, uint32_t nTilt, uint32_t nZoom) {
    uint8_t y = 0;
    if (nZoom & 0x7F) y |= (nZoom & 0x80) ? 0x20 : 0x40;
    if (nPan & 0x3F) y |= (nPan & 0x80) ? 0x04 : 0x02;
    if (nTilt & 0x3F) y |= (nTilt & 0x80) ? 0x08 : 0x10;
    return y;
}

}  // namespace

int32_t BuildCmd_PelcoP(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState, uint32_t) {
    if (PTZBuildBegin(ptState, kPTZMoveMask)) return 0;
    const Code* c = FindCode(ptState->nCmd);
    if (c == nullptr) {
        ptState->nLastCmd = ptState->nCmd;
        return 0;
    }
    // Also the outcome of a refused number: rows with a number never keep their code.
    ptState->nLastCmd = c->bKeeps ? ptState->nCmd : kPTZCmdNone;
    const uint32_t n = static_cast<uint32_t>(ptState->nParam1);
    switch (c->eArg) {
    case Arg::Fixed:
        return Frame(nAddress, atPacket, c->yData1, c->yData2, 0, c->yData4);
    case Arg::Pan:
    case Arg::Tilt:
    case Arg::PanTilt:
        return MoveFrame(nAddress, atPacket, *c,
                         static_cast<uint8_t>(ConvertSpeed(n, kSpeedZero, kSpeedMin, kSpeedMax)));
    case Arg::Number:
        if (n < 1 || n > kNumberMax) return 0;
        return Frame(nAddress, atPacket, c->yData1, c->yData2, 0, static_cast<uint8_t>(n));
    case Arg::Joystick:
        return Frame(nAddress, atPacket, 0x00,
                     JoystickDirections(n, ptState->nParam2, ptState->nParam3),
                     static_cast<uint8_t>(n & 0x3F), static_cast<uint8_t>(ptState->nParam2 & 0x3F));
    case Arg::TourStart:
        PTZTourStart(ptState, n);
        return 0;
    case Arg::TourStop:
        PTZTourStop(ptState);
        return 0;
    }
    return 0;
}

int32_t CheckStatus_PelcoP(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    switch (PTZStatusPlan(ptState, kPTZMoveMask)) {
    case PTZStatusStep::RampMiddle:
        return MoveFrame(nAddress, atPacket, *FindCode(ptState->nPrevCmd), kRampMiddleSpeed);
    case PTZStatusStep::RampTop:
        return MoveFrame(nAddress, atPacket, *FindCode(ptState->nPrevCmd), kRampTopSpeed);
    case PTZStatusStep::TourStep:
        // A tour of 0 presets sends nothing but leaves the poller armed.
        if (ptState->nTourCount == 0) return 0;
        return Frame(nAddress, atPacket, 0x00, kGoToPreset, 0,
                     static_cast<uint8_t>(PTZTourAdvance(ptState)));
    case PTZStatusStep::Idle:
    case PTZStatusStep::Disarmed:
        break;
    }
    return 0;
}
