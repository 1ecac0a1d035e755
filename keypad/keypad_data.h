// The keypad side of the shared PTZ/keypad serial line: port, receive ring, the hand-over of
// received bytes to the selected keypad model, and the two ways keys leave the keypad module
// (key events to the recorder, PTZ commands to the PTZ core).
#pragma once
#include <cstdint>

#include "keypad/keypad_model.h"

// Keypad port descriptor, -1 while closed.
extern int fdKeypadUart;

// Receive ring: the first kKeypadRingSize bytes of the buffer. gBufOverlap is set while the
// write position has wrapped and the read position has not yet followed.
constexpr int kKeypadRingSize = 24;
constexpr int kKeypadChunkMax = 8;      // bytes handed to a protocol per turn
extern int gBufWritePos;
extern int gBufReadPos;
extern uint8_t gBufOverlap;

// Publishes the model count and names to the shared block and corrects an out-of-range
// selected model to 0.
void KeypadPublishModels();
uint32_t KeypadDeviceOpen();                 // 0 opened, 1 failed
uint32_t KeypadDeviceInit(uint32_t model);   // 0 model active, 1 refused (range or port closed)
uint32_t KeypadDeviceClose();                // 0 closed, 1 was not open
uint32_t KeypadDevicePoll();                 // 0 input ready within 10 ms, 1 otherwise
uint32_t ReceiveKeypadData();                // 0 a chunk was offered, 1 nothing waiting
uint32_t CheckKeypadStatus();                // 1 no model active, else the model's periodic result
int32_t WriteKeypadData(const uint8_t* bytes, uint32_t length);

// Key action bits of SendKeyToMicom.
constexpr uint32_t kKeyPress = 1;
constexpr uint32_t kKeyRelease = 2;
constexpr uint32_t kKeyClick = kKeyPress | kKeyRelease;

// Key event for the recorder (mailbox 2, message 0x20007; a release carries key | 0x80). A held
// key reported again with the same action produces nothing; a repeated click always goes out.
void SendKeyToMicom(uint32_t key, uint32_t action);
// Message from the keypad to the recorder (mailbox 2), sent only while key delivery is enabled.
void SendKeypadMsgToMicom(uint32_t code, uint32_t p1, uint32_t p2);
// PTZ command from the keypad. A straight move or joystick move repeated with the same data is
// passed on once; everything else every time.
void SendKeyToPTZ(uint32_t channel, uint8_t command, uint8_t d1, uint8_t d2, uint8_t d3, uint8_t d4);

// Recorder key codes sent by the keypad protocols.
enum RecorderKey : uint8_t {
    Key_Lock = 2,       Key_ESearch = 3,    Key_Backup = 4,     Key_Schedule = 5,
    Key_Ptz = 6,        Key_Zoom = 12,      Key_Menu = 13,      Key_Cancel = 14,
    Key_Left = 15,      Key_Up = 16,        Key_Display = 17,   Key_Right = 21,
    Key_Down = 22,      Key_TSearch = 23,   Key_Log = 24,       Key_Enter = 25,
    Key_Dec = 26,       Key_Inc = 27,       Key_Play = 31,      Key_Still = 32,
    Key_Stop = 33,      Key_Rec = 34,       Key_FF = 58,        Key_Rew = 59,
    Key_StepBwd = 90,   Key_StepFwd = 91,   Key_Info = 95,      Key_Func1 = 115,
    Key_Func2 = 116,    Key_Func3 = 117,
};
// "NUM 1" .. "NUM 16".
inline constexpr uint8_t kNumberKeys[16] = {36, 37, 41, 42, 43, 44, 45, 46, 47, 51, 52, 53, 54, 55, 56, 57};

// Mailbox message codes of the keypad path.
constexpr uint32_t kMsgKeyEvent = 0x20007;      // p1 key code, | 0x80 on release
constexpr uint32_t kMsgDisplayAlt = 0x2002E;    // second function of DISPLAY
