// Extended Pelco-P camera protocol: the Pelco-P frame with the address unchanged and a check over
// the address and data bytes only; one 8-byte frame per command.
//
//   byte | 0    | 1       | 2      | 3      | 4      | 5      | 6    | 7
//        | 0xA0 | address | data 1 | data 2 | data 3 | data 4 | 0xAF | check
//
//   address  low 8 bits of the configured address, unchanged
//   data 3   pan speed, 1 on focus and iris, or 0
//   data 4   tilt speed, 1 on focus and iris, or a preset number, or 0
//   check    XOR of bytes 1 to 5
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_pelco_family.h"

const PTZCntlOpt CntlOpt_ExtPelcoP = {10, 0xFE802002};

namespace {

using Arg = PelcoArg;

constexpr uint32_t kFrameLength = 8;
constexpr uint8_t kNumberMax = 32;        // presets and tour length 1..32

// Codes not listed (among them automatic pan and the joystick) are unsupported: nothing is sent and
// the code becomes nLastCmd. With this camera family AuxOn1 / AuxOff1 start and end recording a
// pattern and AuxOn2 runs it; AuxOff2 is a plain stop. Camera off is data 1 = 0x01, unlike
// Pelco-P, and focus and iris carry 1 in both speed bytes; all deliberate. Numbered rows and the
// tour carry their highest number in data 4.
constexpr PelcoCode kCodes[] = {
    {PTZCmd_FocusNear, 0x02, 0x00, Arg::Fixed, 1, 1, true},
    {PTZCmd_Ext4, 0x00, 0x00, Arg::Refused, 0, 0, false},
    {PTZCmd_FocusFar, 0x01, 0x00, Arg::Fixed, 1, 1, true},
    {PTZCmd_Ext6, 0x00, 0x00, Arg::Refused, 0, 0, false},
    {PTZCmd_Ext8, 0x00, 0x00, Arg::Refused, 0, 0, false},
    {PTZCmd_ZoomWide, 0x00, 0x40, Arg::Fixed, 0, 0, true},
    {PTZCmd_Ext10, 0x00, 0x00, Arg::Refused, 0, 0, false},
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
    {PTZCmd_PresetTour, 0x00, 0x00, Arg::TourStart, 0, kNumberMax, false},
    {PTZCmd_IrisOpen, 0x04, 0x00, Arg::Fixed, 1, 1, false},
    {PTZCmd_IrisClose, 0x08, 0x00, Arg::Fixed, 1, 1, false},
    {PTZCmd_FocusNearStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_FocusFarStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_ZoomWideStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_ZoomTeleStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_UpLeftStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_UpStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_UpRightStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_LeftStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_CameraOff, 0x01, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_RightStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_DownLeftStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_DownStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_DownRightStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_PresetTourStop, 0x00, 0x00, Arg::TourStop, 0, 0, false},
    {PTZCmd_IrisOpenStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_IrisCloseStop, 0x00, 0x00, Arg::Fixed, 0, 0, false},
    {PTZCmd_AuxOn1, 0x00, 0x1F, Arg::Fixed, 0, 0, false},
    {PTZCmd_AuxOn2, 0x00, 0x23, Arg::Fixed, 0, 0, false},
    {PTZCmd_PresetGo, 0x00, kPelcoGoToPreset, Arg::Number, 0, kNumberMax, false},
    {PTZCmd_AuxOff1, 0x00, 0x21, Arg::Fixed, 0, 0, false},
    {PTZCmd_AuxOff2, 0x00, 0x00, Arg::Fixed, 0, 0, false},
};

// Appends the check byte to the frame of nBody bytes and returns the number of frames (1). The
// start byte and the end byte (the last of the body) are left out of the check.
int32_t ExtPelcoPFinish(PTZPacket* ptPacket, uint32_t nBody) {
    uint8_t yCheck = 0;
    for (uint32_t i = 1; i + 1 < nBody; ++i) yCheck ^= ptPacket->abData[i];
    ptPacket->abData[nBody] = yCheck;
    ptPacket->nLength = nBody + 1;
    return 1;
}

int32_t Frame(uint32_t nAddress, PTZPacket* ptPacket, uint8_t yData1, uint8_t yData2, uint8_t yData3,
              uint8_t yData4) {
    uint8_t* b = ptPacket->abData;
    b[0] = 0xA0;
    b[1] = static_cast<uint8_t>(nAddress);
    b[2] = yData1;
    b[3] = yData2;
    b[4] = yData3;
    b[5] = yData4;
    b[6] = 0xAF;
    return ExtPelcoPFinish(ptPacket, kFrameLength - 1);
}

// The builder stores only tours of 1..32 presets, but a refused tour start still becomes the
// previous command, and the poller may be armed by an earlier ramp: with no tour ever stored the
// count is 0, an empty tour: nothing to visit, disarm.
constexpr PelcoDriver kExtPelcoP = {kCodes, Frame, PelcoEmptyTour::Disarm};
static_assert(PelcoCoversMoves(kCodes));

}  // namespace

int32_t BuildCmd_ExtPelcoP(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                           uint32_t) {
    return PelcoBuildCmd(kExtPelcoP, nAddress, atPacket, ptState);
}

int32_t CheckStatus_ExtPelcoP(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PelcoCheckStatus(kExtPelcoP, nAddress, atPacket, ptState);
}
