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

#include "lib/ipc/Clock.h"

const PTZCntlOpt CntlOpt_CanonVCC4 = {10, 0xFE802002};

namespace {

constexpr uint8_t kCmdPanSpeed = 0x50;
constexpr uint8_t kCmdTiltSpeed = 0x51;
constexpr uint8_t kCmdMove = 0x60;
constexpr uint8_t kCmdPresetSet = 0x89;
constexpr uint8_t kCmdPresetGo = 0x8A;
constexpr uint8_t kCmdZoom = 0xA2;
constexpr uint8_t kCmdIris = 0xA5;

constexpr int32_t kPresetMin = 1;     // presets and tour length: one ASCII digit
constexpr int32_t kPresetMax = 9;

constexpr uint32_t kIrisMin = 2;
constexpr uint32_t kIrisMax = 16;
constexpr uint32_t kIrisAutoLevel = 10;

// Speeds of the go-to-preset frames, of the tour's first move, and of the ramp steps.
constexpr int32_t kPresetPanSpeed = 800, kPresetTiltSpeed = 600;
constexpr int32_t kTourPanSpeed = 500, kTourTiltSpeed = 400;
constexpr int32_t kRampMiddlePan = 250, kRampMiddleTilt = 150;
constexpr int32_t kRampTopPan = 800, kRampTopTilt = 600;

// Zoom speeds up after this long without a frame: wide measures milliseconds, tele raw clock
// ticks, deliberately not scaled by the tick rate (8 s at 100 Hz).
constexpr int32_t kZoomWideFastMs = 800;
constexpr uint32_t kZoomTeleFastTicks = 800;

enum class Op : uint8_t {
    Once,        // the row's frames; nLastCmd = none
    Zoom,        // the row's frame, arms the zoom step; keeps the code
    Move,        // speed frames, then the row's direction frame; keeps the code
    Halt,        // the row's frame and disarm; nLastCmd = none
    IrisAuto,    // the row's frame, iris level back to 10; nLastCmd = none
    IrisOpen,    // one level up; keeps the code
    IrisClose,   // one level down; keeps the code
    PresetSet,
    PresetGo,
    TourStart,
    TourStop,
};

struct Frame {
    uint8_t yCmd;             // 0: no frame
    const char* sArgs;
    bool bAddressZero;        // sent to address 0 whatever the channel's address
};

struct Row {
    uint8_t yCode;
    Op eOp;
    Frame atFrame[2];
};

// Move rows: first argument pan ('1' right, '2' left), second tilt ('1' up, '2' down).
// clang-format off
constexpr Row kRows[] = {
    {PTZCmd_FocusNear,      Op::Once,      {{0xA1, "2"}}},
    {PTZCmd_FocusFar,       Op::Once,      {{0xA1, "3"}}},
    {PTZCmd_ZoomWide,       Op::Zoom,      {{kCmdZoom, "1"}}},
    {PTZCmd_ZoomTele,       Op::Zoom,      {{kCmdZoom, "2"}}},
    {PTZCmd_UpLeft,         Op::Move,      {{kCmdMove, "21"}}},
    {PTZCmd_Up,             Op::Move,      {{kCmdMove, "01"}}},
    {PTZCmd_UpRight,        Op::Move,      {{kCmdMove, "11"}}},
    {PTZCmd_Left,           Op::Move,      {{kCmdMove, "20"}}},
    {PTZCmd_CameraOn,       Op::Once,      {{0x90, "0"}, {0x8F, "1", true}}},
    {PTZCmd_Right,          Op::Move,      {{kCmdMove, "10"}}},
    {PTZCmd_DownLeft,       Op::Move,      {{kCmdMove, "22"}}},
    {PTZCmd_Down,           Op::Move,      {{kCmdMove, "02"}}},
    {PTZCmd_DownRight,      Op::Move,      {{kCmdMove, "12"}}},
    {PTZCmd_PresetSet,      Op::PresetSet, {}},
    {PTZCmd_PresetTour,     Op::TourStart, {}},
    {PTZCmd_IrisOpen,       Op::IrisOpen,  {}},
    {PTZCmd_IrisClose,      Op::IrisClose, {}},
    {PTZCmd_IrisAuto,       Op::IrisAuto,  {{kCmdIris, "2"}}},
    {PTZCmd_FocusNearStop,  Op::Once,      {{0xA1, "1"}}},
    {PTZCmd_FocusFarStop,   Op::Once,      {{0xA1, "1"}}},
    {PTZCmd_ZoomWideStop,   Op::Halt,      {{kCmdZoom, "0"}}},
    {PTZCmd_ZoomTeleStop,   Op::Halt,      {{kCmdZoom, "0"}}},
    {PTZCmd_UpLeftStop,     Op::Halt,      {{kCmdMove, "00"}}},
    {PTZCmd_UpStop,         Op::Halt,      {{kCmdMove, "00"}}},
    {PTZCmd_UpRightStop,    Op::Halt,      {{kCmdMove, "00"}}},
    {PTZCmd_LeftStop,       Op::Halt,      {{kCmdMove, "00"}}},
    {PTZCmd_CameraOff,      Op::Once,      {{0x90, "1"}, {0x8F, "0", true}}},
    {PTZCmd_RightStop,      Op::Halt,      {{kCmdMove, "00"}}},
    {PTZCmd_DownLeftStop,   Op::Halt,      {{kCmdMove, "00"}}},
    {PTZCmd_DownStop,       Op::Halt,      {{kCmdMove, "00"}}},
    {PTZCmd_DownRightStop,  Op::Halt,      {{kCmdMove, "00"}}},
    {PTZCmd_PresetTourStop, Op::TourStop,  {}},
    {PTZCmd_IrisOpenStop,   Op::Once,      {{kCmdIris, "3"}}},
    {PTZCmd_IrisCloseStop,  Op::Once,      {{kCmdIris, "3"}}},
    {PTZCmd_IrisAutoOff,    Op::IrisAuto,  {{kCmdIris, "3"}}},
    {PTZCmd_FocusAuto,      Op::Once,      {{0xA1, "0"}}},
    {PTZCmd_AuxOn1,         Op::Once,      {{0x90, "0"}}},
    {PTZCmd_AuxOn2,         Op::Once,      {{0x8F, "1", true}}},
    {PTZCmd_PresetGo,       Op::PresetGo,  {}},
    {PTZCmd_FocusAutoOff,   Op::Once,      {{0xA1, "1"}}},
    {PTZCmd_AuxOff1,        Op::Once,      {{0x90, "1"}}},
    {PTZCmd_AuxOff2,        Op::Once,      {{0x8F, "0", true}}},
};
// clang-format on

const Row* FindRow(uint32_t nCmd) {
    for (const Row& tRow : kRows)
        if (tRow.yCode == nCmd) return &tRow;
    return nullptr;
}

// Clears the slot and writes one frame: header, address digits, yHead, command, the nArgs bytes of
// sArgs and the terminator.
void MKCMD(PTZPacket* ptPacket, uint32_t nArgs, uint32_t nAddress, uint8_t yHead, uint8_t yCmd,
           const char* sArgs) {
    *ptPacket = PTZPacket{};
    uint8_t* ab = ptPacket->abData;
    ab[0] = 0xFF;
    ab[1] = static_cast<uint8_t>(INT2BCD(nAddress, 1));
    ab[2] = static_cast<uint8_t>(INT2BCD(nAddress, 0));
    ab[3] = yHead;
    ab[4] = yCmd;
    for (uint32_t i = 0; i < nArgs; ++i) ab[5 + i] = static_cast<uint8_t>(sArgs[i]);
    ab[5 + nArgs] = 0xEF;
    ptPacket->nLength = 6 + nArgs;
}

uint32_t ArgCount(const char* sArgs) {
    uint32_t n = 0;
    while (sArgs[n] != '\0') ++n;
    return n;
}

int32_t TableFrames(PTZPacket* atPacket, uint32_t nAddress, const Row& tRow) {
    int32_t n = 0;
    for (const Frame& tFrame : tRow.atFrame) {
        if (tFrame.yCmd == 0) break;
        MKCMD(&atPacket[n++], ArgCount(tFrame.sArgs), tFrame.bAddressZero ? 0 : nAddress, 0,
              tFrame.yCmd, tFrame.sArgs);
    }
    return n;
}

void SpeedFrame(PTZPacket* ptPacket, uint32_t nAddress, uint8_t yCmd, int32_t nSpeed) {
    const char acDigits[3] = {INT2CHAR(nSpeed, 2), INT2CHAR(nSpeed, 1), INT2CHAR(nSpeed, 0)};
    MKCMD(ptPacket, 3, nAddress, 0, yCmd, acDigits);
}

// The speed frames a move needs: pan speed if it pans, tilt speed if it tilts.
int32_t MoveSpeedFrames(PTZPacket* atPacket, uint32_t nAddress, const Row& tRow, int32_t nPan,
                        int32_t nTilt) {
    const char* sDir = tRow.atFrame[0].sArgs;
    int32_t n = 0;
    if (sDir[0] != '0') SpeedFrame(&atPacket[n++], nAddress, kCmdPanSpeed, nPan);
    if (sDir[1] != '0') SpeedFrame(&atPacket[n++], nAddress, kCmdTiltSpeed, nTilt);
    return n;
}

// Pan speed, tilt speed, then go to the preset: 3 frames.
int32_t GoToPreset(PTZPacket* atPacket, uint32_t nAddress, uint32_t nPreset, int32_t nPan,
                   int32_t nTilt) {
    SpeedFrame(&atPacket[0], nAddress, kCmdPanSpeed, nPan);
    SpeedFrame(&atPacket[1], nAddress, kCmdTiltSpeed, nTilt);
    const char cPreset = static_cast<char>('0' + nPreset);
    MKCMD(&atPacket[2], 1, nAddress, 0, kCmdPresetGo, &cPreset);
    return 3;
}

// Steps the stored iris level by one inside 2-16 and sends it. A level outside the range (the
// start value 58) is sent as it stands when the step points further out, and moves by one
// towards the range otherwise.
int32_t IrisStep(PTZPacket* atPacket, uint32_t nAddress, PTZChannelState* ptState, bool bOpen) {
    uint32_t nLevel = ptState->nIrisLevel;
    if (bOpen && nLevel < kIrisMax) ptState->nIrisLevel = nLevel = nLevel + 1;
    if (!bOpen && nLevel > kIrisMin) ptState->nIrisLevel = nLevel = nLevel - 1;
    const int32_t nValue = static_cast<int32_t>(nLevel);
    const char acArgs[3] = {'9', INT2CHAR(nValue, 1), INT2CHAR(nValue, 0)};
    MKCMD(&atPacket[0], 3, nAddress, 0, kCmdIris, acArgs);
    return 1;
}

// Preset store, go-to and tour start, p1 already checked. The tour start itself moves to preset 1,
// a little slower than a go-to; the status routine goes on from preset 2.
int32_t PresetFrames(PTZPacket* atPacket, uint32_t nAddress, PTZChannelState* ptState, Op eOp,
                     uint32_t nPreset) {
    if (eOp == Op::PresetGo)
        return GoToPreset(atPacket, nAddress, nPreset, kPresetPanSpeed, kPresetTiltSpeed);
    if (eOp == Op::TourStart) {
        ptState->nTourCount = nPreset;
        ptState->nTourIndex = 1;
        ptState->bStatusActive = 1;
        return GoToPreset(atPacket, nAddress, 1, kTourPanSpeed, kTourTiltSpeed);
    }
    const char cPreset = static_cast<char>('0' + nPreset);
    MKCMD(&atPacket[0], 1, nAddress, 0, kCmdPresetSet, &cPreset);
    return 1;
}

}  // namespace

// Unlike the other drivers it takes the code as nLastCmd at once; only zoom, moves and the iris
// steps keep it, so every other code, supported or not, can be sent again at once.
int32_t BuildCmd_CanonVCC4(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                           uint32_t /*nParam2*/) {
    if (PTZBuildBegin(ptState, kPTZMoveMask)) return 0;
    const uint32_t nCmd = ptState->nCmd;
    ptState->nLastCmd = nCmd;
    const Row* ptRow = FindRow(nCmd);
    if (ptRow == nullptr) {
        ptState->nLastCmd = kPTZCmdNone;
        return 0;
    }

    const int32_t nParam = ptState->nParam1;
    switch (ptRow->eOp) {
    case Op::Zoom:
        ptState->bStatusActive = 1;
        ptState->nRampStep = 0;
        return TableFrames(atPacket, nAddress, *ptRow);
    case Op::Move: {
        const int32_t nSpeed = ConvertSpeed(static_cast<uint32_t>(nParam), 8, 8, 800);
        const int32_t n = MoveSpeedFrames(atPacket, nAddress, *ptRow, nSpeed, nSpeed);
        return n + TableFrames(&atPacket[n], nAddress, *ptRow);
    }
    case Op::IrisOpen:
    case Op::IrisClose:
        return IrisStep(atPacket, nAddress, ptState, ptRow->eOp == Op::IrisOpen);
    case Op::TourStop:
        PTZTourStop(ptState);
        return 0;
    case Op::PresetSet:
    case Op::PresetGo:
    case Op::TourStart:
        ptState->nLastCmd = kPTZCmdNone;
        if (nParam < kPresetMin || nParam > kPresetMax) return 0;
        return PresetFrames(atPacket, nAddress, ptState, ptRow->eOp, static_cast<uint32_t>(nParam));
    case Op::Halt:
        ptState->bStatusActive = 0;
        break;
    case Op::IrisAuto:
        ptState->nIrisLevel = kIrisAutoLevel;
        break;
    case Op::Once:
        break;
    }
    ptState->nLastCmd = kPTZCmdNone;
    return TableFrames(atPacket, nAddress, *ptRow);
}

// Zoom speeds up once, measured from the last frame; moves ramp from their own frame like the
// other drivers' moves. As in the shared ramp, a step is due once its time has been reached.
// The preset tour dwells 3 s on each preset and cycles 1..N with the go-to-preset frames;
// anything else disarms the poller.
int32_t CheckStatus_CanonVCC4(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    const uint32_t nPrev = ptState->nPrevCmd;
    if (nPrev == PTZCmd_ZoomWide || nPrev == PTZCmd_ZoomTele) {
        if (ptState->nRampStep != 0) return 0;
        const bool bDue =
            nPrev == PTZCmd_ZoomWide
                ? PTZElapsedMs(ptState->tStatusClock, kZoomWideFastMs)
                : TickReached(get_jiffies(), ptState->tStatusClock + kZoomTeleFastTicks);
        if (!bDue) return 0;
        ptState->nRampStep = 1;
        MKCMD(&atPacket[0], 1, nAddress, 0, kCmdZoom, nPrev == PTZCmd_ZoomWide ? "3" : "4");
        return 1;
    }

    switch (PTZStatusPlan(ptState, kPTZMoveMask)) {
    case PTZStatusStep::RampMiddle:
        return MoveSpeedFrames(atPacket, nAddress, *FindRow(nPrev), kRampMiddlePan,
                               kRampMiddleTilt);
    case PTZStatusStep::RampTop:
        return MoveSpeedFrames(atPacket, nAddress, *FindRow(nPrev), kRampTopPan, kRampTopTilt);
    case PTZStatusStep::TourStep: {
        // The start leaves nTourIndex at 1 whatever N is, so the index is taken modulo N here;
        // a tour without presets (left behind by another model's driver) disarms.
        const uint32_t nCount = ptState->nTourCount;
        if (nCount == 0) {
            ptState->bStatusActive = 0;
            return 0;
        }
        const uint32_t nPreset = ptState->nTourIndex % nCount + 1;
        ptState->nTourIndex = nPreset % nCount;
        return GoToPreset(atPacket, nAddress, nPreset, kPresetPanSpeed, kPresetTiltSpeed);
    }
    case PTZStatusStep::Idle:
    case PTZStatusStep::Disarmed:
        break;
    }
    return 0;
}
