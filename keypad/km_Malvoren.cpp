// Keypad-1: the recorder maker's own keypad. Front-panel keys come as short frames, camera
// control (channel, button, joystick) as long frames. All bytes unsigned; the check byte is the
// low 8 bits of the sum of the bytes before it.
//
//   short frame            long frame
//   0  0xAA                0  0xAA
//   1  keypad id           1  keypad id
//   2  command             2  0x80
//   3  data                3  camera channel 1..16
//   4  check of 0..3       4  button
//                          5  pan: 0 centre, 1..63 right, 129..223 left; or the button's number
//                          6  tilt: 0 centre, 1..63 down, 129..223 up
//                          7  check of 0..6
#include <termios.h>

#include "core/ptz_cntl.h"
#include "core/share_block.h"
#include "keypad/keypad_data.h"
#include "lib/ipc/MessageQueue.h"
#include "ptz/ptz_data.h"
#include "ptz/ptz_model.h"

const struct termios TermSet_Malvoren = {.c_cflag = CS8 | CREAD | CLOCAL};

namespace {
constexpr uint8_t kSync = 0xAA;
constexpr uint8_t kLongMark = 0x80;
constexpr int kShortLen = 5;
constexpr int kLongLen = 8;

constexpr uint32_t kMenuModeBit = 0x10;       // shared menu state: the recorder's menu has the keypad
constexpr uint32_t kMenuBlockMask = 0xE000;   // ... and none of these may be set for the joystick

constexpr uint32_t kMsgLayout = 0x2002D;      // p1 screen layout index
constexpr uint32_t kMsgNumberSelect = 0x20046;  // (0, 0) or (1, number - 1)
constexpr uint32_t kMsgSwitchOutput = 0x2001B;   // p1 output, p2 1 on / 0 off
constexpr uint32_t kMsgChannelPulse = 0x40024;   // to mailbox 4: p1 channel, p2 1 then 0
constexpr int kMailbox4 = 4;

// Data byte of command 12 for each screen layout, in layout order.
constexpr uint8_t kLayoutData[] = {1, 4, 6, 7, 8, 9, 10, 12, 13, 16};

// Codes whose stop (code + 32) is sent when the joystick and lens buttons are let go.
constexpr uint8_t kStoppable[] = {
    PTZCmd_FocusNear, PTZCmd_FocusFar, PTZCmd_ZoomWide, PTZCmd_ZoomTele, PTZCmd_UpLeft,
    PTZCmd_Up,        PTZCmd_UpRight,  PTZCmd_Left,     PTZCmd_Right,    PTZCmd_DownLeft,
    PTZCmd_Down,      PTZCmd_DownRight, PTZCmd_IrisOpen, PTZCmd_IrisClose, PTZCmd_IrisAuto,
    PTZCmd_FocusAuto, PTZCmd_Joystick,
};

uint8_t yLastPTZCmd = 0;       // button of the last long frame handled (kept for inspection)
uint8_t yLastArrowKey = 0;     // menu key held by the joystick; bit 7 = released
uint8_t yLastPTZArrowKey = 0;  // PTZ command started by joystick or lens button, 0 = none

uint8_t CheckSum(const uint8_t* b, int n) {
    uint8_t s = 0;
    for (int i = 0; i < n; ++i) s = static_cast<uint8_t>(s + b[i]);
    return s;
}

bool MenuHasKeypad() { return (ptShare->dwKeypadMenuState & kMenuModeBit) != 0; }
bool MenuHasJoystick() {
    const uint32_t s = ptShare->dwKeypadMenuState;
    return (s & kMenuModeBit) != 0 && (s & kMenuBlockMask) == 0;
}

bool AxisPlus(uint8_t v) { return v >= 1 && v <= 63; }      // right or down
bool AxisMinus(uint8_t v) { return v >= 129 && v <= 223; }  // left or up

void Click(uint8_t key) { SendKeyToMicom(key, kKeyClick); }

// Front-panel keys that need no more than the command byte.
uint8_t PlainKey(uint8_t cmd) {
    switch (cmd) {
        case 1: return Key_Lock;
        case 2: return Key_Play;
        case 3: return Key_Rew;
        case 4: return Key_FF;
        case 5: return Key_Stop;
        case 6: return Key_Rec;
        case 8: return Key_TSearch;
        case 10: return Key_Zoom;
        case 11: return Key_Info;
        case 26: return Key_Log;
        case 53: return Key_Backup;
        case 54: return Key_ESearch;
        case 55: return Key_Func3;
        case 56: return Key_Schedule;
        case 57: case 143: return Key_Cancel;
        case 131: return Key_StepBwd;
        case 132: return Key_StepFwd;
        case 133: return Key_Still;
        default: return 0;
    }
}

uint8_t ShortDisplay(uint8_t data) {
    if (data == 0) { Click(Key_Display); return 0; }
    if (data == 99) { Click(Key_Func2); return 0; }
    for (uint32_t i = 0; i < sizeof kLayoutData; ++i)
        if (kLayoutData[i] == data) { SendKeypadMsgToMicom(kMsgLayout, i, 0); break; }
    return 0;
}

uint8_t ProcShort(uint8_t cmd, uint8_t data) {
    if (const uint8_t key = PlainKey(cmd); key != 0) { Click(key); return 0; }
    switch (cmd) {
        case 7:
            if (data == 0) Click(Key_Menu);
            return 0;
        case 9:
            return 0;
        case 12:
            return ShortDisplay(data);
        case 50:
            if (data < 1 || data > 16) return 1;
            Click(kNumberKeys[data - 1]);
            return 0;
        case 58:
            if (data == 0) SendKeypadMsgToMicom(kMsgNumberSelect, 0, 0);
            else if (data <= 16) SendKeypadMsgToMicom(kMsgNumberSelect, 1, data - 1u);
            return 0;
        case 140:
            SendKeypadMsgToMicom(kMsgDisplayAlt, 0, 0);
            return 0;
        default:
            break;
    }
    if (cmd >= 32 && cmd <= 41) {
        if (MenuHasKeypad()) Click(kNumberKeys[cmd - 32]);
        return 0;
    }
    return 1;
}

void PTZ(uint32_t ch, uint8_t command, uint8_t param) { SendKeyToPTZ(ch, command, param, 0, 0, 0); }

// ON (bOn) or OFF with number n: the camera itself, a switchable output, or an auxiliary.
void SwitchKey(uint32_t ch, uint8_t n, bool bOn) {
    if (n == 0) PTZ(ch, bOn ? PTZCmd_CameraOn : PTZCmd_CameraOff, 0);
    else if (n <= ptShare->nSwitchOutputs) SendKeypadMsgToMicom(kMsgSwitchOutput, n - 1u, bOn ? 1 : 0);
    else if (n >= 101 && n <= 106) PTZ(ch, static_cast<uint8_t>(bOn ? n - 36 : n - 4), 0);
}

// Button 37: a press-and-release pulse for the channel, each half only while mailbox 4 is open.
void ChannelPulse(uint32_t ch) {
    if ((ptShare->dwKeyFlags & kKeyFlagMailbox4) != 0)
        SendMsgQ(kRecorderIpcId, kMailbox4, kOwnMailbox, kMsgChannelPulse, ch, 1, 0, 0, 0);
    if ((ptShare->dwKeyFlags & kKeyFlagMailbox4) != 0)
        SendMsgQ(kRecorderIpcId, kMailbox4, kOwnMailbox, kMsgChannelPulse, ch, 0, 0, 0, 0);
}

bool IsZoomButton(uint8_t b) { return b >= 144 && b <= 159; }
bool IsZoomTele(uint8_t b) { return b <= 151; }   // for zoom buttons: 144..151 tele, 152..159 wide

// Axis position class: 0 centre, 1 right/down, 2 left/up, 3 not a direction.
int AxisClass(uint8_t v) { return v == 0 ? 0 : AxisPlus(v) ? 1 : AxisMinus(v) ? 2 : 3; }

// What a joystick position means, by [tilt class][pan class]; 0 = nothing.
using DirectionTable = uint8_t[3][3];
// Menu navigation: straight positions only.
constexpr DirectionTable kMenuArrows = {
    /* tilt centre */ {0, Key_Right, Key_Left},
    /* tilt down   */ {Key_Down, 0, 0},
    /* tilt up     */ {Key_Up, 0, 0},
};
// Single-speed moves on a camera without proportional control.
constexpr DirectionTable kDirectionMoves = {
    /* tilt centre */ {0, PTZCmd_Right, PTZCmd_Left},
    /* tilt down   */ {PTZCmd_Down, PTZCmd_DownRight, PTZCmd_DownLeft},
    /* tilt up     */ {PTZCmd_Up, PTZCmd_UpRight, PTZCmd_UpLeft},
};

uint8_t DirectionOf(const DirectionTable& table, uint8_t pan, uint8_t tilt) {
    const int p = AxisClass(pan);
    const int t = AxisClass(tilt);
    return (p > 2 || t > 2) ? 0 : table[t][p];
}

// Joystick and zoom buttons while the recorder's menu has the keypad: arrow and INC/DEC keys.
void MenuJoystick(uint8_t button, uint8_t pan, uint8_t tilt) {
    uint8_t key = 0;
    if (button == 128 && pan == 0 && tilt == 0) {
        const uint8_t k = yLastArrowKey;
        if (k == Key_Left || k == Key_Up || k == Key_Right || k == Key_Down || k == Key_Dec || k == Key_Inc)
            SendKeyToMicom(k, kKeyRelease);
        yLastArrowKey |= 0x80;
        return;
    }
    if (button == 128) key = DirectionOf(kMenuArrows, pan, tilt);
    else if (IsZoomButton(button)) key = IsZoomTele(button) ? Key_Inc : Key_Dec;
    if (key == 0 || key == yLastArrowKey) return;
    yLastArrowKey = key;
    SendKeyToMicom(key, kKeyPress);
}

uint8_t LensCommand(uint8_t button) {
    switch (button) {
        case 129: return PTZCmd_IrisOpen;
        case 130: return PTZCmd_IrisClose;
        case 132: return PTZCmd_FocusFar;
        case 136: return PTZCmd_FocusNear;
        case 161: case 162: return PTZCmd_IrisAuto;
        case 164: case 168: return PTZCmd_FocusAuto;
        default: return 0;
    }
}

// A channel without a usable camera model has no proportional control.
bool ChannelHasJoystick(uint32_t ch) {
    const PTZModel* ptModel = PTZUsableModel(ptShare->atPtz[ch].nPtzModel);
    return ptModel != nullptr && (ptModel->ptCntlOpt->dwCaps & kPTZCapJoystick) != 0;
}

// Sends a held command once: nothing while the same one is still in force.
void StartHeld(uint32_t ch, uint8_t command) {
    if (command == yLastPTZArrowKey) return;
    yLastPTZArrowKey = command;
    PTZ(ch, command, 0);
}

void PtzJoystick(uint32_t ch, uint8_t button, uint8_t pan, uint8_t tilt) {
    if (button == 128 && pan == 0 && tilt == 0) {
        for (uint8_t code : kStoppable)
            if (code == yLastPTZArrowKey) { PTZ(ch, static_cast<uint8_t>(code + 32), 0); break; }
        yLastPTZArrowKey = 0;
        return;
    }
    if (const uint8_t lens = LensCommand(button); lens != 0) {
        StartHeld(ch, lens);
        return;
    }
    if (ChannelHasJoystick(ch)) {
        uint8_t zoom = 0;
        if ((button & 0x90) == 0x90)
            zoom = static_cast<uint8_t>(((button & 0x08) == 0 ? 0x80 : 0) | ((button & 0x07) * 16));
        SendKeyToPTZ(ch, PTZCmd_Joystick, pan, tilt, zoom, 0);
        yLastPTZArrowKey = PTZCmd_Joystick;
        return;
    }
    if (button == 128) {
        // Sent on every frame: only SendKeyToPTZ's own rule suppresses repeats, and that covers the
        // straight moves, not the diagonals.
        if (const uint8_t move = DirectionOf(kDirectionMoves, pan, tilt); move != 0) {
            yLastPTZArrowKey = move;
            PTZ(ch, move, 0);
        }
        return;
    }
    StartHeld(ch, IsZoomTele(button) ? PTZCmd_ZoomTele : PTZCmd_ZoomWide);
}

bool IsJoystickOrLens(uint8_t b) { return b == 128 || IsZoomButton(b) || LensCommand(b) != 0; }

uint8_t ProcLong(uint8_t chByte, uint8_t button, uint8_t n, uint8_t tilt) {
    if (chByte < 1 || chByte > 16) return 1;
    const uint32_t ch = chByte - 1u;
    if (IsJoystickOrLens(button)) {
        if (MenuHasJoystick()) MenuJoystick(button, n, tilt);
        else PtzJoystick(ch, button, n, tilt);
    } else {
        switch (button) {
            case 17: PTZ(ch, PTZCmd_PresetGo, n); break;
            case 18: PTZ(ch, PTZCmd_PresetTour, n); break;
            case 19: PTZ(ch, PTZCmd_RunPattern, n); break;
            case 20: PTZ(ch, PTZCmd_ExtRun, n); break;
            case 23: PTZ(ch, PTZCmd_PresetSet, n); break;
            case 24: SwitchKey(ch, n, true); break;
            case 25: SwitchKey(ch, n, false); break;
            case 32: PTZ(ch, PTZCmd_PresetSet, 0); break;
            case 33: PTZ(ch, PTZCmd_PresetGo, 0); break;
            case 34: PTZ(ch, PTZCmd_RunPattern, 0); break;
            case 35: PTZ(ch, PTZCmd_ExtRun, 0); break;
            case 36: PTZ(ch, PTZCmd_MenuOn, 0); break;
            case 37: ChannelPulse(ch); break;
            case 38: PTZ(ch, PTZCmd_MenuEnter, 0); break;
            case 39: Click(Key_Cancel); break;
            case 40: case 41: case 59: case 60: break;
            case 44: Click(Key_Enter); break;
            default: return 1;
        }
    }
    yLastPTZCmd = button;
    return 0;
}
}  // namespace

uint8_t CheckCmd_Malvoren(const uint8_t* bytes, int* length) {
    const int n = *length;
    if (bytes[0] != kSync) {
        *length = 1;
        return 0;
    }
    // A lone sync byte: the id byte has not arrived yet, so wait instead of judging a stale one.
    if (n < 2) {
        *length = 0;
        return 0;
    }
    // Another keypad's frame: drop the whole chunk offered.
    if (tGlobal.nKeypadSystemId != 0 && bytes[1] != tGlobal.nKeypadSystemId) return 0;
    if (n == kShortLen && bytes[4] == CheckSum(bytes, 4)) return kShortLen;
    if (n != kLongLen) {
        *length = 0;
        return 0;
    }
    // Eight bytes that are no long frame (also two short frames read together) are dropped.
    if (bytes[2] != kLongMark || bytes[7] != CheckSum(bytes, 7)) return 0;
    return kLongLen;
}

uint8_t ProcCmd_Malvoren(const uint8_t* bytes, int length) {
    if (length == kShortLen) return ProcShort(bytes[2], bytes[3]);
    if (length == kLongLen) return ProcLong(bytes[3], bytes[4], bytes[5], bytes[6]);
    return 1;
}
