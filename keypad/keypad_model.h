// Entry of the keypad model table; the KTT link model table uses the same record.
#pragma once
#include <termios.h>
#include <cstdint>

using KeypadProcCmdFn = uint8_t (*)(const uint8_t* bytes, int length);
using KeypadCheckCmdFn = uint8_t (*)(const uint8_t* bytes, int* length);
using KeypadCheckStatusFn = uint8_t (*)();

struct KeypadModel {
    uint32_t dwBaud;                     // termios baud code OR-ed into the control flags
    const struct termios* ptTermSet;     // base line settings, null = leave the line alone
    KeypadProcCmdFn ProcCmd;
    KeypadCheckCmdFn CheckCmd;
    KeypadCheckStatusFn CheckStatus;
    char sName[64];
};

// The keypad models; the index is the model number the recorder stores in the shared block.
constexpr uint32_t kKeypadModelCount = 7;
extern const KeypadModel ptKeypadModelDatabase[kKeypadModelCount];
uint32_t GetNumberOfKeypadModel();

// Keypad-1 (km_Malvoren).
extern const struct termios TermSet_Malvoren;
uint8_t CheckCmd_Malvoren(const uint8_t* bytes, int* length);
uint8_t ProcCmd_Malvoren(const uint8_t* bytes, int length);

// WONWOO WTX-1200A (km_WTX_1200A).
extern const struct termios TermSet_WTX;
uint8_t CheckCmd_WTX(const uint8_t* bytes, int* length);
uint8_t ProcCmd_WTX(const uint8_t* bytes, int length);
