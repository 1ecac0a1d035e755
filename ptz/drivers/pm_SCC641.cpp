// Samsung SCC-641 protocol driver. The model has no status routine: level-0 moves are never sped
// up and a preset tour is stored but never stepped.
//
//  byte  0     1     2        3      4      5      6       7       8
//        A0    FE    address  group  cmd 1  cmd 2  data 1  data 2  check
//
//  address  the configured address, low 8 bits
//  group    01 moves, lens, iris and stops; 03 functions (menu, presets, auto pan, patterns)
//  data     moves carry the speed in both data bytes, straight or diagonal
//  check    0xFF minus the 8-bit sum of bytes 1-7
#include "ptz/drivers/pm_drivers.h"

const PTZCntlOpt CntlOpt_SCC641 = {10, 0xFC08C902};

namespace {

constexpr uint32_t kFrameLength = 9;
constexpr int32_t kNumberMin = 1;     // presets, tours and patterns
constexpr int32_t kNumberMax = 99;

enum class Op : uint8_t {
    Keep,        // fixed frame; nLastCmd keeps the code, so a repeat is suppressed
    Once,        // fixed frame; nLastCmd = none
    Move,        // speed in both data bytes; keeps
    Numbered,    // p1 (1-99) in cmd 2; nLastCmd = none
    TourStart,   // no frame
    TourStop,    // stop frame and disarm
};

struct Row {
    uint8_t yCode;
    Op eOp;
    uint8_t yGroup, yCmd1, yCmd2, yData1, yData2;
};

constexpr uint8_t kLens = 0x01;
constexpr uint8_t kFunc = 0x03;

// clang-format off
constexpr Row kRows[] = {
    {PTZCmd_AutoPan,        Op::Keep,      kFunc, 0x1A, 0x01, 0xFF, 0xFF},
    {PTZCmd_FocusNear,      Op::Once,      kLens, 0x02, 0x00, 0, 0},
    {PTZCmd_FocusFar,       Op::Once,      kLens, 0x01, 0x00, 0, 0},
    {PTZCmd_ZoomWide,       Op::Keep,      kLens, 0x40, 0x00, 0, 0},
    {PTZCmd_ZoomTele,       Op::Keep,      kLens, 0x20, 0x00, 0, 0},
    {PTZCmd_UpLeft,         Op::Move,      kLens, 0x00, 0x05, 0, 0},
    {PTZCmd_Up,             Op::Move,      kLens, 0x00, 0x04, 0, 0},
    {PTZCmd_UpRight,        Op::Move,      kLens, 0x00, 0x06, 0, 0},
    {PTZCmd_Left,           Op::Move,      kLens, 0x00, 0x01, 0, 0},
    {PTZCmd_Right,          Op::Move,      kLens, 0x00, 0x02, 0, 0},
    {PTZCmd_DownLeft,       Op::Move,      kLens, 0x00, 0x09, 0, 0},
    {PTZCmd_Down,           Op::Move,      kLens, 0x00, 0x08, 0, 0},
    {PTZCmd_DownRight,      Op::Move,      kLens, 0x00, 0x0A, 0, 0},
    {PTZCmd_PresetSet,      Op::Numbered,  kFunc, 0x50, 0x00, 0xFF, 0xFF},
    {PTZCmd_PresetTour,     Op::TourStart, 0,     0,    0,    0, 0},
    {PTZCmd_IrisOpen,       Op::Once,      kLens, 0x08, 0x00, 0, 0},
    {PTZCmd_IrisClose,      Op::Once,      kLens, 0x10, 0x00, 0, 0},
    {PTZCmd_AutoPanOff,     Op::Keep,      kFunc, 0x1A, 0x00, 0xFF, 0xFF},
    // The stops. Those of the model-specific keys 4, 6, 8, 10 stop the camera although the keys
    // themselves are not supported; the iris stops are not needed (iris steps are one-shot).
    {PTZCmd_FocusNearStop,  Op::Once,      kLens, 0, 0, 0, 0},
    {PTZCmd_Ext4Stop,       Op::Once,      kLens, 0, 0, 0, 0},
    {PTZCmd_FocusFarStop,   Op::Once,      kLens, 0, 0, 0, 0},
    {PTZCmd_Ext6Stop,       Op::Once,      kLens, 0, 0, 0, 0},
    {PTZCmd_Ext8Stop,       Op::Once,      kLens, 0, 0, 0, 0},
    {PTZCmd_ZoomWideStop,   Op::Once,      kLens, 0, 0, 0, 0},
    {PTZCmd_Ext10Stop,      Op::Once,      kLens, 0, 0, 0, 0},
    {PTZCmd_ZoomTeleStop,   Op::Once,      kLens, 0, 0, 0, 0},
    {PTZCmd_UpLeftStop,     Op::Once,      kLens, 0, 0, 0, 0},
    {PTZCmd_UpStop,         Op::Once,      kLens, 0, 0, 0, 0},
    {PTZCmd_UpRightStop,    Op::Once,      kLens, 0, 0, 0, 0},
    {PTZCmd_LeftStop,       Op::Once,      kLens, 0, 0, 0, 0},
    {PTZCmd_RightStop,      Op::Once,      kLens, 0, 0, 0, 0},
    {PTZCmd_DownLeftStop,   Op::Once,      kLens, 0, 0, 0, 0},
    {PTZCmd_DownStop,       Op::Once,      kLens, 0, 0, 0, 0},
    {PTZCmd_DownRightStop,  Op::Once,      kLens, 0, 0, 0, 0},
    {PTZCmd_FocusAutoOff,   Op::Once,      kLens, 0, 0, 0, 0},
    {PTZCmd_PresetTourStop, Op::TourStop,  kLens, 0, 0, 0, 0},
    {PTZCmd_FocusAuto,      Op::Once,      kLens, 0x04, 0x00, 0, 0},
    {PTZCmd_MenuOn,         Op::Keep,      kFunc, 0x17, 0x01, 0xFF, 0xFF},
    {PTZCmd_MenuEnter,      Op::Keep,      kFunc, 0x18, 0xFF, 0xFF, 0xFF},
    {PTZCmd_RunPattern,     Op::Numbered,  kFunc, 0x1B, 0x00, 0x01, 0xFF},
    {PTZCmd_PresetGo,       Op::Numbered,  kFunc, 0x19, 0x00, 0xFF, 0xFF},
    {PTZCmd_MenuOff,        Op::Keep,      kFunc, 0x17, 0x00, 0xFF, 0xFF},
};
// clang-format on

const Row* FindRow(uint32_t nCmd) {
    for (const Row& tRow : kRows)
        if (tRow.yCode == nCmd) return &tRow;
    return nullptr;
}

// Writes the whole frame and its check byte.
void MakeFrame(PTZPacket* ptPacket, uint32_t nAddress, uint8_t yGroup, uint8_t yCmd1, uint8_t yCmd2,
               uint8_t yData1, uint8_t yData2) {
    uint8_t* ab = ptPacket->abData;
    ab[0] = 0xA0;
    ab[1] = 0xFE;
    ab[2] = static_cast<uint8_t>(nAddress);
    ab[3] = yGroup;
    ab[4] = yCmd1;
    ab[5] = yCmd2;
    ab[6] = yData1;
    ab[7] = yData2;
    uint8_t ySum = 0;
    for (uint32_t i = 1; i < kFrameLength - 1; ++i) ySum = static_cast<uint8_t>(ySum + ab[i]);
    ab[8] = static_cast<uint8_t>(0xFF - ySum);
    ptPacket->nLength = kFrameLength;
}

}  // namespace

int32_t BuildCmd_SCC641(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                        uint32_t /*nParam2*/) {
    if (PTZBuildBegin(ptState, kPTZMoveMask)) return 0;
    const uint32_t nCmd = ptState->nCmd;
    const Row* ptRow = FindRow(nCmd);
    if (ptRow == nullptr) {
        ptState->nLastCmd = nCmd;
        return 0;
    }

    const int32_t nParam = ptState->nParam1;
    uint8_t yCmd2 = ptRow->yCmd2;
    uint8_t yData1 = ptRow->yData1;
    uint8_t yData2 = ptRow->yData2;
    switch (ptRow->eOp) {
    case Op::Move:
        yData1 = yData2 = static_cast<uint8_t>(
            ConvertSpeed(static_cast<uint32_t>(nParam), 5, 1, 64));
        break;
    case Op::Numbered:
    case Op::TourStart:
        if (nParam < kNumberMin || nParam > kNumberMax) {
            ptState->nLastCmd = kPTZCmdNone;
            return 0;
        }
        if (ptRow->eOp == Op::TourStart) {
            PTZTourStart(ptState, static_cast<uint32_t>(nParam));
            return 0;
        }
        yCmd2 = static_cast<uint8_t>(nParam);
        break;
    case Op::TourStop:
        PTZTourStop(ptState);
        break;
    case Op::Keep:
    case Op::Once:
        break;
    }

    MakeFrame(&atPacket[0], nAddress, ptRow->yGroup, ptRow->yCmd1, yCmd2, yData1, yData2);
    const bool bHeld = ptRow->eOp == Op::Keep || ptRow->eOp == Op::Move;
    ptState->nLastCmd = bHeld ? nCmd : kPTZCmdNone;
    return 1;
}
