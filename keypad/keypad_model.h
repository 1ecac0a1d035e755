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
