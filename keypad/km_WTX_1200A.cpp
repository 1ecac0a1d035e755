// WONWOO WTX-1200A keypad. It drives only the recorder: every frame becomes a key event or one
// mailbox message. No check byte.
//
//   0  0xA1
//   1  keypad id (must equal the recorder's id; 0 is no wildcard here)
//   2  key code
//   3  modifier: 3 = second function of the numeric keys, 2 = second function of key 34;
//      joystick (code 128): pan in the high nibble, tilt in the low nibble
//   4  0xAF
#include <termios.h>

#include "core/ptz_cntl.h"
#include "keypad/keypad_data.h"

const struct termios TermSet_WTX = {.c_cflag = CS8 | CREAD | CLOCAL};

namespace {
constexpr uint8_t kStart = 0xA1;
constexpr uint8_t kEnd = 0xAF;
constexpr int kFrameLen = 5;

constexpr uint8_t kModSecond = 3;    // second function of the numeric keys
constexpr uint8_t kModDisplay = 2;   // second function of DISPLAY
constexpr uint8_t kCodeJoystick = 128;

// Navigation direction held: 4 left, 5 right, 6 up, 7 down, 8 INC, 9 DEC; -1 centred.
constexpr int kDirNone = -1;
constexpr int kDirLeft = 4;
constexpr int kDirRight = 5;
constexpr int kDirUp = 6;
constexpr int kDirDown = 7;
constexpr int kDirInc = 8;
constexpr int kDirDec = 9;
constexpr int kDirIgnore = 100;      // position with no meaning: the held key stays held
// Recorder key of each direction 4..9.
constexpr uint8_t kDirKeys[] = {Key_Left, Key_Right, Key_Up, Key_Down, Key_Inc, Key_Dec};
static_assert(sizeof kDirKeys == kDirDec - kDirLeft + 1);

int last_dir_key = 0;

// Second functions of the numeric keys 1..10: "NUM 11" .. "NUM 16", "FUNC 1" .. "FUNC 3", "NUM 10".
constexpr uint8_t kSecondNumberKeys[10] = {52, 53, 54, 55, 56, 57, Key_Func1, Key_Func2, Key_Func3, 51};

uint8_t SecondKey(uint8_t code) {
    if (code >= 1 && code <= 10) return kSecondNumberKeys[code - 1];
    switch (code) {
        case 18: return Key_ESearch;
        case 19: return Key_Backup;
        case 21: return Key_Info;
        case 34: return Key_Still;
        default: return 0;
    }
}

uint8_t PlainKey(uint8_t code) {
    if (code >= 1 && code <= 10) return kNumberKeys[code - 1];
    switch (code) {
        case 17: return Key_Rec;
        case 18: return Key_TSearch;
        case 19: return Key_Log;
        case 20: return Key_Schedule;
        case 21: return Key_Ptz;
        case 32: return Key_Cancel;
        case 33: return Key_Enter;
        case 34: return Key_Display;
        case 35: return Key_Play;
        case 36: return Key_Stop;
        case 37: return Key_Rew;
        case 38: return Key_FF;
        case 39: return Key_StepBwd;
        case 40: return Key_StepFwd;
        case 41: return Key_Menu;
        default: return 0;
    }
}

bool NibbleMinus(uint8_t v) { return v >= 2 && v <= 7; }    // pan left, tilt up
bool NibblePlus(uint8_t v) { return v >= 10 && v <= 15; }   // pan right, tilt down

int JoystickDirection(uint8_t pos) {
    const uint8_t pan = pos >> 4;
    const uint8_t tilt = pos & 0x0F;
    if (pos == 0) return kDirNone;
    if (tilt == 0 && NibblePlus(pan)) return kDirRight;
    if (tilt == 0 && NibbleMinus(pan)) return kDirLeft;
    if (pan == 0 && NibblePlus(tilt)) return kDirDown;
    if (pan == 0 && NibbleMinus(tilt)) return kDirUp;
    return kDirIgnore;
}

int Direction(uint8_t code, uint8_t mod) {
    if (code == kCodeJoystick) return JoystickDirection(mod);
    if (code >= 132 && code <= 135) return kDirDec;
    if (code >= 140 && code <= 143) return kDirInc;
    return kDirIgnore;
}

bool IsNavigation(int dir) { return dir >= kDirLeft && dir <= kDirDec; }

// A held direction is reported once: a change releases the old key and presses the new one.
void Navigate(int dir) {
    if (dir == kDirIgnore || dir == last_dir_key) return;
    if (IsNavigation(last_dir_key)) SendKeyToMicom(kDirKeys[last_dir_key - kDirLeft], kKeyRelease);
    last_dir_key = dir;
    if (IsNavigation(dir)) SendKeyToMicom(kDirKeys[dir - kDirLeft], kKeyPress);
}
}  // namespace

uint8_t CheckCmd_WTX(const uint8_t* bytes, int* length) {
    if (bytes[0] != kStart) {
        *length = 1;
        return 0;
    }
    if (*length < kFrameLen) {
        *length = 0;
        return 0;
    }
    *length = kFrameLen;
    return (bytes[4] == kEnd && bytes[1] == tGlobal.nKeypadSystemId) ? kFrameLen : 0;
}

uint8_t ProcCmd_WTX(const uint8_t* bytes, int /*length*/) {
    const uint8_t code = bytes[2];
    const uint8_t mod = bytes[3];
    if (code < 128 && mod == kModSecond) {
        if (const uint8_t key = SecondKey(code); key != 0) SendKeyToMicom(key, kKeyClick);
        return 0;
    }
    if (mod == kModDisplay) {
        if (code == 34) SendKeypadMsgToMicom(kMsgDisplayAlt, 0, 0);
        return 0;
    }
    if (const uint8_t key = PlainKey(code); key != 0) {
        SendKeyToMicom(key, kKeyClick);
        return 0;
    }
    Navigate(Direction(code, mod));
    return 0;
}
