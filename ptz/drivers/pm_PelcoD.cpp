// Pelco-D camera protocol: one 7-byte frame per command.
//
//   byte | 0    | 1       | 2         | 3         | 4      | 5      | 6
//        | 0xFF | address | command 1 | command 2 | data 1 | data 2 | check
//
//   address  low 8 bits of the configured address, unchanged
//   data 1   pan speed, or 0
//   data 2   tilt speed, or a preset / pattern / option number, or 0
//   check    (byte 1 + ... + byte 5) mod 256
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_pelco_family.h"

const PTZCntlOpt CntlOpt_PelcoD = {10, 0xFC08E503};

namespace {

using Arg = PelcoArg;

constexpr uint32_t kFrameLength = 7;

// Codes not listed are unsupported: nothing is sent and the code becomes nLastCmd. Numbered rows
// carry their highest number in data 2; the tour count is taken unchecked (data 2 = 0).
// Both asymmetries below are deliberate: FocusAuto and MenuOn keep their code while IrisAuto does
// not, and the menu is opened with set-preset 95 but has no frame to close it.
constexpr PelcoCode kCodes[] = {
    {PTZCmd_AutoPan, 0x90, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_FocusNear, 0x01, 0x00, Arg::Fixed, 0, 0, true},
    {PTZCmd_FocusFar, 0x00, 0x80, Arg::Fixed, 0, 0, true},
    {PTZCmd_ZoomWide, 0x00, 0x40, Arg::Fixed, 0, 0, true},
    {PTZCmd_ZoomTele, 0x00, 0x20, Arg::Fixed, 0, 0, true},
    {PTZCmd_UpLeft, 0x00, 0x0C, Arg::PanTilt, 0, 0, true},
    {PTZCmd_Up, 0x00, 0x08, Arg::Tilt, 0, 0, true},
    {PTZCmd_UpRight, 0x00, 0x0A, Arg::PanTilt, 0, 0, true},
    {PTZCmd_Left, 0x00, 0x04, Arg::Pan, 0, 0, true},
    {PTZCmd_CameraOn, 0x88, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_Right, 0x00, 0x02, Arg::Pan, 0, 0, true},
    {PTZCmd_DownLeft, 0x00, 0x14, Arg::PanTilt, 0, 0, true},
    {PTZCmd_Down, 0x00, 0x10, Arg::Tilt, 0, 0, true},
    {PTZCmd_DownRight, 0x00, 0x12, Arg::PanTilt, 0, 0, true},
    {PTZCmd_PresetSet, 0x00, 0x03, Arg::Number, 0, 255, false},
    {PTZCmd_PresetTour, 0x00, 0x00, Arg::TourStart, 0, 0, false},
    {PTZCmd_IrisOpen, 0x02, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_IrisClose, 0x04, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_IrisAuto, 0x00, 0x2D, Arg::Fixed, 0, 1, false},
    {PTZCmd_AutoPanOff, 0x10, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_FocusNearStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_FocusFarStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_ZoomWideStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_ZoomTeleStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_UpLeftStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_UpStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_UpRightStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_LeftStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_CameraOff, 0x08, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_RightStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_DownLeftStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_DownStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_DownRightStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_PresetTourStop, 0x00, 0x00, Arg::TourStop, 0, 0, false},
    {PTZCmd_IrisOpenStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_IrisCloseStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_IrisAutoOff, 0x00, 0x2D, Arg::Fixed, 0, 2, false},
    {PTZCmd_FocusAuto, 0x00, 0x2B, Arg::Fixed, 0, 1, true},
    {PTZCmd_MenuOn, 0x00, 0x03, Arg::Fixed, 0, 95, true},
    {PTZCmd_RunPattern, 0x00, 0x23, Arg::Number, 0, 32, false},
    {PTZCmd_PresetGo, 0x00, kPelcoGoToPreset, Arg::Number, 0, 255, false},
    {PTZCmd_Joystick, 0x00, 0x00, Arg::Joystick, 0, 0, false},
    {PTZCmd_FocusAutoOff, 0x00, 0x2B, Arg::Fixed, 0, 2, false},
    {PTZCmd_JoystickStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
};

// Appends the check byte to the frame of nBody bytes and returns the number of frames (1).
int32_t PelcoDFinish(PTZPacket* ptPacket, uint32_t nBody) {
    uint32_t nSum = 0;
    for (uint32_t i = 1; i < nBody; ++i) nSum += ptPacket->abData[i];
    ptPacket->abData[nBody] = static_cast<uint8_t>(nSum);
    ptPacket->nLength = nBody + 1;
    return 1;
}

int32_t Frame(uint32_t nAddress, PTZPacket* ptPacket, uint8_t yCmd1, uint8_t yCmd2, uint8_t yData1,
              uint8_t yData2) {
    uint8_t* b = ptPacket->abData;
    b[0] = 0xFF;
    b[1] = static_cast<uint8_t>(nAddress);
    b[2] = yCmd1;
    b[3] = yCmd2;
    b[4] = yData1;
    b[5] = yData2;
    return PelcoDFinish(ptPacket, kFrameLength - 1);
}

// A tour of 0 presets is accepted by the builder; it is an empty tour: nothing to visit, so the
// poller disarms instead of stepping.
constexpr PelcoDriver kPelcoD = {kCodes, Frame, PelcoEmptyTour::Disarm};
static_assert(PelcoCoversMoves(kCodes));

}  // namespace

int32_t BuildCmd_PelcoD(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState, uint32_t) {
    return PelcoBuildCmd(kPelcoD, nAddress, atPacket, ptState);
}

int32_t CheckStatus_PelcoD(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PelcoCheckStatus(kPelcoD, nAddress, atPacket, ptState);
}
