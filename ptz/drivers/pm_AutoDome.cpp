// Bosch AutoDome protocol driver. Only the start byte has bit 7 set; it also tells how many bytes
// follow it. The address is the configured address minus 1, split into two 7-bit bytes.
//
//  lens and move frame (8 bytes)                 preset frame (7 bytes)
//  0  87                                         0  86
//  1  address bits 7-13                          1  address bits 7-13
//  2  address bits 0-6                           2  address bits 0-6
//  3  05                                         3  07
//  4  b0-3 tilt speed, b4-6 zoom speed           4  preset bits 7-9 in b4-6; b0-2: 4 store, 5 go
//  5  b0 focus far, b1 iris close,               5  preset bits 0-6
//     b2 iris open, b3-6 pan speed               6  check
//  6  b0 right, b1 left, b2 down, b3 up,
//     b4 zoom wide, b5 zoom tele, b6 focus near
//  7  check = sum of bytes 0-6, low 7 bits
#include "ptz/drivers/pm_drivers.h"

const PTZCntlOpt CntlOpt_AutoDome = {10, 0xFC000002};

namespace {

constexpr uint8_t kOpLens = 0x05;
constexpr uint8_t kOpPreset = 0x07;
constexpr uint8_t kPresetStore = 4;
constexpr uint8_t kPresetGo = 5;
constexpr int32_t kPresetMin = 1;     // presets and tour length
constexpr int32_t kPresetMax = 63;

// Direction bits of byte 6: they also tell which speed fields a frame carries.
constexpr uint8_t kPanBits = 0x03;
constexpr uint8_t kTiltBits = 0x0C;
constexpr uint8_t kZoomBits = 0x30;

// Ramp speeds of a level-0 move; zoom takes the low 3 bits (7, then 15 & 7 = 7 again).
constexpr int32_t kRampMiddleSpeed = 7;
constexpr int32_t kRampTopSpeed = 15;

enum class Op : uint8_t {
    Lens,        // lens or move frame; nLastCmd keeps the code
    Stop,        // all-zero lens frame; nLastCmd = none
    Halt,        // as Stop, and the ramp poller is disarmed at once
    PresetSet,   // preset frame, store
    PresetGo,    // preset frame, go
    TourStart,   // no frame
    TourStop,    // no frame
};

struct Row {
    uint8_t yCode;
    Op eOp;
    uint8_t yByte5;   // fixed bits of byte 5 (focus far, iris)
    uint8_t yByte6;   // direction, zoom and focus-near bits
};

// clang-format off
constexpr Row kRows[] = {
    {PTZCmd_FocusNear,      Op::Lens,      0x00, 0x40},
    {PTZCmd_FocusFar,       Op::Lens,      0x01, 0x00},
    {PTZCmd_ZoomWide,       Op::Lens,      0x00, 0x10},
    {PTZCmd_ZoomTele,       Op::Lens,      0x00, 0x20},
    {PTZCmd_UpLeft,         Op::Lens,      0x00, 0x0A},
    {PTZCmd_Up,             Op::Lens,      0x00, 0x08},
    {PTZCmd_UpRight,        Op::Lens,      0x00, 0x09},
    {PTZCmd_Left,           Op::Lens,      0x00, 0x02},
    {PTZCmd_Right,          Op::Lens,      0x00, 0x01},
    {PTZCmd_DownLeft,       Op::Lens,      0x00, 0x06},
    {PTZCmd_Down,           Op::Lens,      0x00, 0x04},
    {PTZCmd_DownRight,      Op::Lens,      0x00, 0x05},
    {PTZCmd_PresetSet,      Op::PresetSet, 0, 0},
    {PTZCmd_PresetTour,     Op::TourStart, 0, 0},
    {PTZCmd_IrisOpen,       Op::Lens,      0x04, 0x00},
    {PTZCmd_IrisClose,      Op::Lens,      0x02, 0x00},
    // Focus and iris stops leave the poller armed; zoom and move stops disarm it at once.
    {PTZCmd_FocusNearStop,  Op::Stop,      0, 0},
    {PTZCmd_FocusFarStop,   Op::Stop,      0, 0},
    {PTZCmd_IrisOpenStop,   Op::Stop,      0, 0},
    {PTZCmd_IrisCloseStop,  Op::Stop,      0, 0},
    {PTZCmd_ZoomWideStop,   Op::Halt,      0, 0},
    {PTZCmd_ZoomTeleStop,   Op::Halt,      0, 0},
    {PTZCmd_UpLeftStop,     Op::Halt,      0, 0},
    {PTZCmd_UpStop,         Op::Halt,      0, 0},
    {PTZCmd_UpRightStop,    Op::Halt,      0, 0},
    {PTZCmd_LeftStop,       Op::Halt,      0, 0},
    {PTZCmd_RightStop,      Op::Halt,      0, 0},
    {PTZCmd_DownLeftStop,   Op::Halt,      0, 0},
    {PTZCmd_DownStop,       Op::Halt,      0, 0},
    {PTZCmd_DownRightStop,  Op::Halt,      0, 0},
    {PTZCmd_PresetTourStop, Op::TourStop,  0, 0},
    {PTZCmd_PresetGo,       Op::PresetGo,  0, 0},
};
// clang-format on

const Row* FindRow(uint32_t nCmd) {
    for (const Row& tRow : kRows)
        if (tRow.yCode == nCmd) return &tRow;
    return nullptr;
}

// Writes start byte, address, opcode and body, then the check byte. The start byte counts the
// bytes that follow it.
void MakeFrame(PTZPacket* ptPacket, uint32_t nAddress, uint8_t yOpcode, const uint8_t* abBody,
               uint32_t nBody) {
    // Address 0 has no wire form; minus 1 wraps it to the all-ones address 7F 7F.
    const uint32_t nWire = nAddress - 1;
    const uint32_t nLength = 4 + nBody + 1;
    uint8_t* ab = ptPacket->abData;
    ab[0] = static_cast<uint8_t>(0x80 | (nLength - 1));
    ab[1] = static_cast<uint8_t>((nWire >> 7) & 0x7F);
    ab[2] = static_cast<uint8_t>(nWire & 0x7F);
    ab[3] = yOpcode;
    for (uint32_t i = 0; i < nBody; ++i) ab[4 + i] = abBody[i];
    uint32_t nSum = 0;
    for (uint32_t i = 0; i < nLength - 1; ++i) nSum += ab[i];
    ab[nLength - 1] = static_cast<uint8_t>(nSum & 0x7F);
    ptPacket->nLength = nLength;
}

// The lens frame of a row with pan/tilt speed nSpeed and zoom speed nZoom, each placed only where
// the row's direction bits use it. Speeds are masked to their fields so that an out-of-range level
// can never set bit 7 of a data byte.
void LensFrame(PTZPacket* ptPacket, uint32_t nAddress, const Row& tRow, int32_t nSpeed,
               int32_t nZoom) {
    uint8_t yByte4 = 0;
    uint8_t yByte5 = tRow.yByte5;
    if (tRow.yByte6 & kTiltBits) yByte4 |= static_cast<uint8_t>(nSpeed & 0x0F);
    if (tRow.yByte6 & kZoomBits) yByte4 |= static_cast<uint8_t>((nZoom & 0x07) << 4);
    if (tRow.yByte6 & kPanBits) yByte5 |= static_cast<uint8_t>((nSpeed & 0x0F) << 3);
    const uint8_t abBody[3] = {yByte4, yByte5, tRow.yByte6};
    MakeFrame(ptPacket, nAddress, kOpLens, abBody, 3);
}

void PresetFrame(PTZPacket* ptPacket, uint32_t nAddress, uint32_t nPreset, uint8_t yAction) {
    const uint8_t abBody[2] = {static_cast<uint8_t>(((nPreset & 0x380) >> 3) | yAction),
                               static_cast<uint8_t>(nPreset & 0x7F)};
    MakeFrame(ptPacket, nAddress, kOpPreset, abBody, 2);
}

}  // namespace

int32_t BuildCmd_AutoDome(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                          uint32_t /*nParam2*/) {
    if (PTZBuildBegin(ptState, kPTZMoveZoomMask)) return 0;
    const uint32_t nCmd = ptState->nCmd;
    const Row* ptRow = FindRow(nCmd);
    if (ptRow == nullptr) {
        ptState->nLastCmd = nCmd;
        return 0;
    }

    const int32_t nParam = ptState->nParam1;
    const uint32_t nLevel = static_cast<uint32_t>(nParam);
    switch (ptRow->eOp) {
    case Op::Lens:
        LensFrame(&atPacket[0], nAddress, *ptRow, ConvertSpeed(nLevel, 0, 0, 15),
                  ConvertSpeed(nLevel, 0, 0, 7));
        ptState->nLastCmd = nCmd;
        return 1;
    case Op::Halt:
        ptState->bStatusActive = 0;
        [[fallthrough]];
    case Op::Stop:
        LensFrame(&atPacket[0], nAddress, *ptRow, 0, 0);
        ptState->nLastCmd = kPTZCmdNone;
        return 1;
    case Op::TourStop:
        PTZTourStop(ptState);
        return 0;
    case Op::PresetSet:
    case Op::PresetGo:
    case Op::TourStart:
        break;
    }

    ptState->nLastCmd = kPTZCmdNone;
    if (nParam < kPresetMin || nParam > kPresetMax) return 0;
    if (ptRow->eOp == Op::TourStart) {
        PTZTourStart(ptState, nLevel);
        return 0;
    }
    PresetFrame(&atPacket[0], nAddress, nLevel,
                ptRow->eOp == Op::PresetGo ? kPresetGo : kPresetStore);
    return 1;
}

int32_t CheckStatus_AutoDome(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    switch (PTZStatusPlan(ptState, kPTZMoveZoomMask)) {
    case PTZStatusStep::RampMiddle:
    case PTZStatusStep::RampTop: {
        // The plan only ramps codes of the mask, and every one of them has a lens row.
        const int32_t nSpeed = ptState->nRampStep == 1 ? kRampMiddleSpeed : kRampTopSpeed;
        LensFrame(&atPacket[0], nAddress, *FindRow(ptState->nPrevCmd), nSpeed, nSpeed);
        return 1;
    }
    case PTZStatusStep::TourStep:
        // A tour without presets (left behind by another model's driver) has nothing to step.
        if (ptState->nTourCount == 0) {
            ptState->bStatusActive = 0;
            return 0;
        }
        PresetFrame(&atPacket[0], nAddress, PTZTourAdvance(ptState), kPresetGo);
        return 1;
    case PTZStatusStep::Idle:
    case PTZStatusStep::Disarmed:
        break;
    }
    return 0;
}
