// Panasonic WV-CS850/860 series protocol driver: one ASCII frame per command, no check byte.
//
//   02  "AD"  a a  ";"  "GC"  n  ":"  command  [":" command]  03
//
//   a a      camera address, two decimal digits, 1-99; other addresses cannot be reached
//   n        characters after the colon as one hexadecimal digit: '7' one command, 'F' two
//   command  7 characters; pan/tilt is "202136" + direction, then "2022" + pan and tilt speed
//            digits (1-7) + "0"; a preset is "00219F0", then "0022" + two hexadecimal digits + "0"
//
// An independent public decoder reads these frames the same way. Zoom, focus and pan/tilt are the
// camera's "with timeout" commands: it stops them by itself unless reminded, so they are re-sent
// every 200 ms while held. Codes not listed (camera power, automatic focus and iris, the menu,
// patterns, the joystick, aux 2-6) have no frame here and send nothing.
#include "ptz/drivers/pm_drivers.h"
#include "ptz/drivers/pm_engine.h"

const PTZCntlOpt CntlOpt_PSonicCS85x = {10, 0xFE900502};

namespace {

using enum PTZOp;

constexpr uint8_t kPresetMax = 64;        // presets and tour length
constexpr uint8_t kPresetGo = 0x00;       // offset of the preset number in the second command
constexpr uint8_t kPresetStore = 0x64;
constexpr const char* kLensStop = "2021224";   // zoom and focus
constexpr const char* kIrisStop = "0021004";

// Move rows carry the direction digit; preset rows the offset of their number.
// clang-format off
constexpr PTZCode kCodes[] = {
    {PTZCmd_AutoPan,        Once,      {}, 0, "2021300"},
    {PTZCmd_FocusNear,      Held,      {}, 0, "202126E"},
    {PTZCmd_FocusFar,       Held,      {}, 0, "202126A"},
    {PTZCmd_ZoomWide,       Held,      {}, 0, "202122C"},
    {PTZCmd_ZoomTele,       Held,      {}, 0, "2021228"},
    {PTZCmd_UpLeft,         Move,      {'9'}},
    {PTZCmd_Up,             Move,      {'A'}},
    {PTZCmd_UpRight,        Move,      {'B'}},
    {PTZCmd_Left,           Move,      {'8'}},
    {PTZCmd_Right,          Move,      {'C'}},
    {PTZCmd_DownLeft,       Move,      {'F'}},
    {PTZCmd_Down,           Move,      {'E'}},
    {PTZCmd_DownRight,      Move,      {'D'}},
    {PTZCmd_PresetSet,      Number,    {kPresetStore}, kPresetMax},
    {PTZCmd_PresetTour,     TourStart, {}, kPresetMax},
    {PTZCmd_IrisOpen,       Once,      {}, 0, "0021002"},
    {PTZCmd_IrisClose,      Once,      {}, 0, "0021003"},
    {PTZCmd_AutoPanOff,     Once,      {}, 0, "2021301"},
    {PTZCmd_FocusNearStop,  Once,      {}, 0, kLensStop},
    {PTZCmd_FocusFarStop,   Once,      {}, 0, kLensStop},
    {PTZCmd_ZoomWideStop,   Once,      {}, 0, kLensStop},
    {PTZCmd_ZoomTeleStop,   Once,      {}, 0, kLensStop},
    {PTZCmd_IrisOpenStop,   Once,      {}, 0, kIrisStop},
    {PTZCmd_IrisCloseStop,  Once,      {}, 0, kIrisStop},
    {kPTZAnyStop,           Once,      {}, 0, "2021324"},   // pan/tilt stop
    {PTZCmd_PresetTourStop, TourStop},
    {PTZCmd_AuxOn1,         Once,      {}, 0, "2021160"},
    {PTZCmd_PresetGo,       Number,    {kPresetGo}, kPresetMax},
    {PTZCmd_AuxOff1,        Once,      {}, 0, "2021161"},
};
// clang-format on
static_assert(PTZCovers(kCodes, kPTZMoveMask));

// A speed digit of the axis, '0' for an axis that does not move; wild levels stay in 1-7.
uint32_t SpeedDigit(int8_t nAxis, int32_t nSpeed) {
    if (nAxis == 0) return 0;
    return nSpeed < 1 ? 1 : nSpeed > 7 ? 7 : static_cast<uint32_t>(nSpeed);
}

void Write(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x) {
    if (nAddress < 1 || nAddress > 99) return;
    const bool bTwo = c.eOp == Move || c.eOp == Number;
    out.Start().Put(0x02).Text("AD").Dec(nAddress, 2).Text(";GC").Hex(bTwo ? 15 : 7, 1).Put(':');
    if (c.eOp == Move) {
        out.Text("202136").Put(c.ay[0]).Text(":2022");
        out.Dec(SpeedDigit(x.tMeaning.nPan, x.nPanSpeed), 1);
        out.Dec(SpeedDigit(x.tMeaning.nTilt, x.nTiltSpeed), 1).Put('0');
    } else if (bTwo) {
        out.Text("00219F0:0022").Hex(c.ay[0] + x.nNumber - 1, 2).Put('0');
    } else {
        out.Text(c.sText);
    }
    out.Put(0x03);
}

// Speed digits 1-7; level 0 starts at 1 and ramps to 3, then 6.
constexpr PTZSpeedScale kSpeeds = {1, 1, 7, 3, 6};
constexpr PTZDriver kPanasonic = {kCodes, Write, kSpeeds, kSpeeds, {}, kPTZMoveMask, 200};

}  // namespace

int32_t BuildCmd_PSonicCS85x(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                             uint32_t /*nParam2*/) {
    return PTZBuild(kPanasonic, nAddress, atPacket, ptState);
}

int32_t CheckStatus_PSonicCS85x(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState) {
    return PTZStatus(kPanasonic, nAddress, atPacket, ptState);
}
