// Canon VC-C4 protocol driver. Speeds travel in frames of their own before a move; the driver
// keeps the camera's manual iris level in the channel state.
//
//  byte   0     1             2             3     4        5 .. 4+n    5+n
//         FF    '0' + tens    '0' + units   00    command  arguments   EF
//
//  address   two ASCII decimal digits; a few frames go to address "00" whatever the channel's
//  arguments n ASCII characters; speeds are three upper-case hexadecimal digits
//  no check byte
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_engine.h"

#include "lib/ipc/Clock.h"

const PTZCntlOpt CntlOpt_CanonVCC4 = {10, 0xFE802002};

namespace {

using enum PTZOp;

constexpr uint8_t kCmdPanSpeed = 0x50;
constexpr uint8_t kCmdTiltSpeed = 0x51;
constexpr uint8_t kCmdMove = 0x60;
constexpr uint8_t kCmdPresetSet = 0x89;
constexpr uint8_t kCmdPresetGo = 0x8A;
constexpr uint8_t kCmdZoom = 0xA2;
constexpr uint8_t kCmdIris = 0xA5;

constexpr uint8_t kPresetMax = 9;     // presets and tour length: one ASCII digit

constexpr uint32_t kIrisMin = 2;
constexpr uint32_t kIrisMax = 16;
constexpr uint32_t kIrisAutoLevel = 10;

// Speeds of the go-to-preset frames and of the tour's first move.
constexpr int32_t kPresetPanSpeed = 800, kPresetTiltSpeed = 600;
constexpr int32_t kTourPanSpeed = 500, kTourTiltSpeed = 400;

// Zoom speeds up after this long without a frame: wide measures milliseconds, tele raw clock
// ticks, deliberately not scaled by the tick rate (8 s at 100 Hz).
constexpr int32_t kZoomWideFastMs = 800;
constexpr uint32_t kZoomTeleFastTicks = 800;

// Rows: command, up to two argument characters, then an optional second frame (command, one
// argument character) that goes to address 0; kToAll sends the first frame there too.
constexpr uint8_t kToAll = 1;
// Moves: first argument pan ('1' right, '2' left), second tilt ('1' up, '2' down). Codes not
// listed send nothing and free the code, supported or not.
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_FocusNear,      Once,     {0xA1, '2'}},
    {PTZCmd_FocusFar,       Once,     {0xA1, '3'}},
    {PTZCmd_ZoomWide,       Held,     {kCmdZoom, '1'}},
    {PTZCmd_ZoomTele,       Held,     {kCmdZoom, '2'}},
    {PTZCmd_UpLeft,         Move,     {kCmdMove, '2', '1'}},
    {PTZCmd_Up,             Move,     {kCmdMove, '0', '1'}},
    {PTZCmd_UpRight,        Move,     {kCmdMove, '1', '1'}},
    {PTZCmd_Left,           Move,     {kCmdMove, '2', '0'}},
    {PTZCmd_CameraOn,       Once,     {0x90, '0', 0, 0x8F, '1'}},
    {PTZCmd_Right,          Move,     {kCmdMove, '1', '0'}},
    {PTZCmd_DownLeft,       Move,     {kCmdMove, '2', '2'}},
    {PTZCmd_Down,           Move,     {kCmdMove, '0', '2'}},
    {PTZCmd_DownRight,      Move,     {kCmdMove, '1', '2'}},
    {PTZCmd_PresetSet,      Number,   {kCmdPresetSet}, kPresetMax},
    {PTZCmd_PresetTour,     TourGo,   {kCmdPresetGo}, kPresetMax},
    {PTZCmd_IrisOpen,       Held,     {kCmdIris}},
    {PTZCmd_IrisClose,      Held,     {kCmdIris}},
    {PTZCmd_IrisAuto,       Once,     {kCmdIris, '2'}},
    {PTZCmd_FocusNearStop,  Once,     {0xA1, '1'}},
    {PTZCmd_FocusFarStop,   Once,     {0xA1, '1'}},
    {PTZCmd_ZoomWideStop,   Halt,     {kCmdZoom, '0'}},
    {PTZCmd_ZoomTeleStop,   Halt,     {kCmdZoom, '0'}},
    {kPTZAnyStop,           Halt,     {kCmdMove, '0', '0'}},
    {PTZCmd_CameraOff,      Once,     {0x90, '1', 0, 0x8F, '0'}},
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_IrisOpenStop,   Once,     {kCmdIris, '3'}},
    {PTZCmd_IrisCloseStop,  Once,     {kCmdIris, '3'}},
    {PTZCmd_IrisAutoOff,    Once,     {kCmdIris, '3'}},
    {PTZCmd_FocusAuto,      Once,     {0xA1, '0'}},
    {PTZCmd_AuxOn1,         Once,     {0x90, '0'}},
    {PTZCmd_AuxOn2,         Once,     {0x8F, '1', 0, 0, 0, kToAll}},
    {PTZCmd_PresetGo,       Number,   {kCmdPresetGo}, kPresetMax},
    {PTZCmd_FocusAutoOff,   Once,     {0xA1, '1'}},
    {PTZCmd_AuxOff1,        Once,     {0x90, '1'}},
    {PTZCmd_AuxOff2,        Once,     {0x8F, '0', 0, 0, 0, kToAll}},
    {PTZCmd_JoystickStop,   Silent},
};
// clang-format on
static_assert(PTZCovers(kCodes, kPTZMoveMask));

// Writes one frame: header, address digits, 00, command, the argument characters, terminator.
void MKCMD(PTZFrames& out, uint32_t nAddress, uint8_t yCmd, const char* sArgs) {
    out.Start().Put(0xFF).Dec(nAddress, 2).Put(0x00).Put(yCmd).Text(sArgs).Put(0xEF);
}

void SpeedFrame(PTZFrames& out, uint32_t nAddress, uint8_t yCmd, int32_t nSpeed) {
    out.Start().Put(0xFF).Dec(nAddress, 2).Put(0x00).Put(yCmd);
    out.Hex(static_cast<uint32_t>(nSpeed), 3).Put(0xEF);
}

// Pan speed, tilt speed, then go to the preset: 3 frames.
void GoToPreset(PTZFrames& out, uint32_t nAddress, uint32_t nPreset, int32_t nPan, int32_t nTilt) {
    SpeedFrame(out, nAddress, kCmdPanSpeed, nPan);
    SpeedFrame(out, nAddress, kCmdTiltSpeed, nTilt);
    const char sPreset[2] = {static_cast<char>('0' + nPreset), '\0'};
    MKCMD(out, nAddress, kCmdPresetGo, sPreset);
}

// Steps the stored iris level by one inside 2-16 and sends it. A level outside the range (the
// start value 58) is sent as it stands when the step points further out, and moves by one
// towards the range otherwise.
void IrisStep(PTZFrames& out, uint32_t nAddress, PTZChannelState* s, bool bOpen) {
    uint32_t nLevel = s->nIrisLevel;
    if (bOpen && nLevel < kIrisMax) s->nIrisLevel = nLevel = nLevel + 1;
    if (!bOpen && nLevel > kIrisMin) s->nIrisLevel = nLevel = nLevel - 1;
    const int32_t nValue = static_cast<int32_t>(nLevel);
    const char sArgs[4] = {'9', INT2CHAR(nValue, 1), INT2CHAR(nValue, 0), '\0'};
    MKCMD(out, nAddress, kCmdIris, sArgs);
}

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    const PTZMeaning& t = x.tMeaning;
    PTZChannelState* s = x.ptState;
    switch (c.eOp) {
    case Move:
        // The speed of each axis that moves, then (but in a ramp step) the direction.
        if (t.nPan != 0) SpeedFrame(out, nAddress, kCmdPanSpeed, x.nPanSpeed);
        if (t.nTilt != 0) SpeedFrame(out, nAddress, kCmdTiltSpeed, x.nTiltSpeed);
        if (x.eWhy == PTZWhy::Ramp) return;
        break;
    case Number:
        if (c.ay[0] == kCmdPresetGo) {
            GoToPreset(out, nAddress, x.nNumber, kPresetPanSpeed, kPresetTiltSpeed);
        } else {
            const char sPreset[2] = {static_cast<char>('0' + x.nNumber), '\0'};
            MKCMD(out, nAddress, c.ay[0], sPreset);
        }
        return;
    case TourGo:
        // The tour starts by going to preset 1, a little slower than a go-to.
        GoToPreset(out, nAddress, x.nNumber, kTourPanSpeed, kTourTiltSpeed);
        return;
    default:
        break;
    }
    if (t.eAction == PTZAction::Iris) return IrisStep(out, nAddress, s, t.nLens > 0);
    if (t.eAction == PTZAction::IrisAuto) s->nIrisLevel = kIrisAutoLevel;
    if (t.eAction == PTZAction::Zoom) {
        // Zoom arms the speed-up of the status routine whatever the level.
        s->bStatusActive = 1;
        s->nRampStep = 0;
    }
    const char sArgs[3] = {static_cast<char>(c.ay[1]), static_cast<char>(c.ay[2]), '\0'};
    MKCMD(out, (c.ay[5] & kToAll) ? 0 : nAddress, c.ay[0], sArgs);
    if (c.ay[3] != 0) {
        const char sSecond[2] = {static_cast<char>(c.ay[4]), '\0'};
        MKCMD(out, 0, c.ay[3], sSecond);
    }
}

// Move speeds 8-800; the ramp of a level-0 move goes to 250 / 150, then 800 / 600 (pan / tilt).
constexpr PTZSpeedScale kPanSpeeds = {8, 8, 800, 250, 800};
constexpr PTZSpeedScale kTiltSpeeds = {8, 8, 800, 150, 600};
constexpr PTZDriver kCanon = {kCodes, Write, kPanSpeeds, kTiltSpeeds, {}, kPTZMoveMask, 0,
                              PTZEmptyTour::Disarm, PTZUnlisted::Forget};

}  // namespace

int32_t BuildCmd_CanonVCC4(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                           uint32_t /*nParam2*/) {
    return PTZBuild(kCanon, nAddress, atPacket, ptState);
}

// Zoom speeds up once, measured from the last frame; moves ramp and the tour steps as with every
// driver (the tour start has already visited preset 1, so the steps go on from preset 2).
int32_t CheckStatus_CanonVCC4(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    const uint32_t nPrev = ptState->nPrevCmd;
    if (nPrev != PTZCmd_ZoomWide && nPrev != PTZCmd_ZoomTele)
        return PTZStatus(kCanon, nAddress, atPacket, ptState);
    if (ptState->nRampStep != 0) return 0;
    const bool bDue =
        nPrev == PTZCmd_ZoomWide
            ? PTZElapsedMs(ptState->tStatusClock, kZoomWideFastMs)
            : TickReached(get_jiffies(), ptState->tStatusClock + kZoomTeleFastTicks);
    if (!bDue) return 0;
    ptState->nRampStep = 1;
    PTZFrames out(atPacket);
    MKCMD(out, nAddress, kCmdZoom, nPrev == PTZCmd_ZoomWide ? "3" : "4");
    return out.Count();
}
