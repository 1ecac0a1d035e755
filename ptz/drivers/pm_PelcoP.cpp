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
#include "ptz/drivers/pm_pelco_family.h"

const PTZCntlOpt CntlOpt_PelcoP = {10, 0xFC08E503};

namespace {

using Arg = PelcoArg;

constexpr uint32_t kFrameLength = 8;
constexpr uint8_t kNumberMax = 127;       // presets and patterns 1..127

// Codes not listed are unsupported: nothing is sent and the code becomes nLastCmd. Unlike Pelco-D,
// automatic pan is go-to-preset 99 / 96, focus near and far swap bits, and AutoPan keeps its code
// while MenuOn does not; these differences are deliberate. Numbered rows carry their highest
// number in data 4; the tour count is taken unchecked (data 4 = 0).
constexpr PelcoCode kCodes[] = {
    {PTZCmd_AutoPan, 0x00, kPelcoGoToPreset, Arg::Fixed, 0, 99, true},
    {PTZCmd_FocusNear, 0x02, 0x00, Arg::Fixed, 0, 0, true},
    {PTZCmd_FocusFar, 0x01, 0x00, Arg::Fixed, 0, 0, true},
    {PTZCmd_ZoomWide, 0x00, 0x40, Arg::Fixed, 0, 0, true},
    {PTZCmd_ZoomTele, 0x00, 0x20, Arg::Fixed, 0, 0, true},
    {PTZCmd_UpLeft, 0x00, 0x0C, Arg::PanTilt, 0, 0, true},
    {PTZCmd_Up, 0x00, 0x08, Arg::Tilt, 0, 0, true},
    {PTZCmd_UpRight, 0x00, 0x0A, Arg::PanTilt, 0, 0, true},
    {PTZCmd_Left, 0x00, 0x04, Arg::Pan, 0, 0, true},
    {PTZCmd_CameraOn, 0x40, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_Right, 0x00, 0x02, Arg::Pan, 0, 0, true},
    {PTZCmd_DownLeft, 0x00, 0x14, Arg::PanTilt, 0, 0, true},
    {PTZCmd_Down, 0x00, 0x10, Arg::Tilt, 0, 0, true},
    {PTZCmd_DownRight, 0x00, 0x12, Arg::PanTilt, 0, 0, true},
    {PTZCmd_PresetSet, 0x00, 0x03, Arg::Number, 0, kNumberMax, false},
    {PTZCmd_PresetTour, 0x00, 0x00, Arg::TourStart, 0, 0, false},
    {PTZCmd_IrisOpen, 0x04, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_IrisClose, 0x08, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_AutoPanOff, 0x00, kPelcoGoToPreset, Arg::Fixed, 0, 96, false},
    {PTZCmd_FocusNearStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_FocusFarStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_ZoomWideStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_ZoomTeleStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_UpLeftStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_UpStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_UpRightStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_LeftStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_CameraOff, 0x10, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_RightStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_DownLeftStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_DownStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_DownRightStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_PresetTourStop, 0x00, 0x00, Arg::TourStop, 0, 0, false},
    {PTZCmd_IrisOpenStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_IrisCloseStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_MenuOn, 0x00, 0x03, Arg::Fixed, 0, 95, false},
    {PTZCmd_RunPattern, 0x00, 0x23, Arg::Number, 0, kNumberMax, false},
    {PTZCmd_PresetGo, 0x00, kPelcoGoToPreset, Arg::Number, 0, kNumberMax, false},
    {PTZCmd_Joystick, 0x00, 0x00, Arg::Joystick, 0, 0, false},
    {PTZCmd_JoystickStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
};

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

// A tour of 0 presets sends nothing but leaves the poller armed.
constexpr PelcoDriver kPelcoP = {kCodes, Frame, PelcoEmptyTour::StayArmed};
static_assert(PelcoCoversMoves(kCodes));

}  // namespace

int32_t BuildCmd_PelcoP(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState, uint32_t) {
    return PelcoBuildCmd(kPelcoP, nAddress, atPacket, ptState);
}

int32_t CheckStatus_PelcoP(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PelcoCheckStatus(kPelcoP, nAddress, atPacket, ptState);
}
