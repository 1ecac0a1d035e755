// VCL Orbiter Microsphere protocol driver (9600 baud, two stop bits). An independent public
// decoder reads these frames and codes the same way.
//
//  byte  0               1         2
//        80 + (A - 1)    command   data (some commands only)
//
//  A        the configured camera, 1-128; the driver sends nothing to any other
//  command  00-7F: pan left 4C, right 52, tilt up 55, down 4E (data = speed), pan stop 72, tilt
//           stop 75; zoom tele 3A, wide 3B, stops 2A, 2B; focus near 3C, far 3D, stops 2C, 2D;
//           iris open 3E, close 3F, stops 2E, 2F; auto focus 41, manual 61; auto iris 4D,
//           manual 6D; go to preset 42 n, store 47 n; aux 1-3 on 5B-5D, off 7B-7D; run pattern 5E n
//  data     00-7F
//  no terminator and no check: only a header has bit 7 set, so the next one starts the next frame
//
// A diagonal is a pan frame followed by a tilt frame, and its stop a pan stop and a tilt stop.
// No menu, automatic pan or camera power: those codes send nothing.
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_engine.h"

const PTZCntlOpt CntlOpt_VCL = {10, 0xFC002002};

namespace {

using enum PTZOp;

constexpr uint32_t kCameraMax = 128;
constexpr uint8_t kLeft = 0x4C, kRight = 0x52, kUp = 0x55, kDown = 0x4E;
constexpr uint8_t kPanStop = 0x72, kTiltStop = 0x75;
constexpr int32_t kDataMax = 0x7F;
constexpr uint8_t kNumberMax = 127;   // presets, patterns and tour length: one data byte

// Moves: pan command, tilt command (0 where the axis stands still). Lens rows: the command, then
// the one that stops it. Stops not listed stop what they end, or pan and tilt when it is not known
// here.
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_FocusNear,      Held,      {0x3C, 0x2C}},
    {PTZCmd_FocusFar,       Held,      {0x3D, 0x2D}},
    {PTZCmd_ZoomWide,       Held,      {0x3B, 0x2B}},
    {PTZCmd_ZoomTele,       Held,      {0x3A, 0x2A}},
    {PTZCmd_UpLeft,         Move,      {kLeft, kUp}},
    {PTZCmd_Up,             Move,      {0, kUp}},
    {PTZCmd_UpRight,        Move,      {kRight, kUp}},
    {PTZCmd_Left,           Move,      {kLeft, 0}},
    {PTZCmd_Right,          Move,      {kRight, 0}},
    {PTZCmd_DownLeft,       Move,      {kLeft, kDown}},
    {PTZCmd_Down,           Move,      {0, kDown}},
    {PTZCmd_DownRight,      Move,      {kRight, kDown}},
    {PTZCmd_PresetSet,      Number,    {0x47}, kNumberMax},
    {PTZCmd_PresetTour,     TourStart, {}, kNumberMax},
    {PTZCmd_IrisOpen,       Held,      {0x3E, 0x2E}},
    {PTZCmd_IrisClose,      Held,      {0x3F, 0x2F}},
    {PTZCmd_IrisAuto,       Once,      {0x4D}},
    {kPTZAnyStop,           Once},
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_IrisAutoOff,    Once,      {0x6D}},
    {PTZCmd_FocusAuto,      Once,      {0x41}},
    {PTZCmd_AuxOn1,         Once,      {0x5B}},
    {PTZCmd_AuxOn2,         Once,      {0x5C}},
    {PTZCmd_AuxOn3,         Once,      {0x5D}},
    {PTZCmd_RunPattern,     Number,    {0x5E}, kNumberMax},
    {PTZCmd_PresetGo,       Number,    {0x42}, kNumberMax},
    {PTZCmd_FocusAutoOff,   Once,      {0x61}},
    {PTZCmd_AuxOff1,        Once,      {0x7B}},
    {PTZCmd_AuxOff2,        Once,      {0x7C}},
    {PTZCmd_AuxOff3,        Once,      {0x7D}},
};
// clang-format on
static_assert(PTZCovers(kCodes, kPTZMoveMask));

constexpr int32_t kNoData = -1;

// One frame: the camera's header, the command and, where it takes one, the data byte, held inside
// 00-7F so that it can never be taken for the next header.
void MKCMD(PTZFrames& out, uint32_t nAddress, uint8_t yCmd, int32_t nData = kNoData) {
    out.Start().Put(0x80 + nAddress - 1).Put(yCmd & 0x7F);
    if (nData == kNoData) return;
    out.Put(static_cast<uint32_t>(nData < 0 ? 0 : nData > kDataMax ? kDataMax : nData));
}

// The stop of what a stop code ends: each moving axis, the lens action, or pan and tilt.
void Stop(PTZFrames& out, uint32_t nAddress, const PTZCode* ptStopped) {
    const bool bMove = ptStopped == nullptr || ptStopped->eOp == Move;
    if (!bMove) return MKCMD(out, nAddress, ptStopped->ay[1]);
    if (ptStopped == nullptr || ptStopped->ay[0] != 0) MKCMD(out, nAddress, kPanStop);
    if (ptStopped == nullptr || ptStopped->ay[1] != 0) MKCMD(out, nAddress, kTiltStop);
}

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    if (nAddress < 1 || nAddress > kCameraMax) return;
    if (c.nCode == kPTZAnyStop) return Stop(out, nAddress, x.ptStopped);
    switch (c.eOp) {
    case Move:
        if (c.ay[0] != 0) MKCMD(out, nAddress, c.ay[0], x.nPanSpeed);
        if (c.ay[1] != 0) MKCMD(out, nAddress, c.ay[1], x.nTiltSpeed);
        return;
    case Number:
        return MKCMD(out, nAddress, c.ay[0], static_cast<int32_t>(x.nNumber));
    default:
        return MKCMD(out, nAddress, c.ay[0]);
    }
}

// Speeds 1-127; a level-0 move starts at 8 and ramps to 48 and 113, Pelco-D's steps on this range.
constexpr PTZSpeedScale kSpeeds = {8, 1, kDataMax, 48, 113};
constexpr PTZDriver kVCL = {kCodes, Write, kSpeeds, kSpeeds};

}  // namespace

int32_t BuildCmd_VCL(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                     uint32_t /*nParam2*/) {
    return PTZBuild(kVCL, nAddress, atPacket, ptState);
}

int32_t CheckStatus_VCL(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kVCL, nAddress, atPacket, ptState);
}
