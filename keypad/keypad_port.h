// The serial ports of the keypad and of the KTT link, whose model table uses the keypad model
// record: one routine each to open a port, to set it up for a model of its table, to poll it, to
// run the model's periodic work and to close it. The caller keeps the descriptor (-1 while
// closed), the line settings found at open and the active model.
#pragma once
#include <termios.h>
#include <cstdint>

#include "keypad/keypad_model.h"
#include "lib/ipc/MsgLine.h"

// Opens sDevice non-blocking with synchronous writes (nAccess: O_RDONLY or O_RDWR) into *pFd and
// keeps its line settings in *ptOld. 1 after "Can't open keypad port" from source, line 76.
uint32_t KeypadPortOpen(int* pFd, const char* sDevice, int nAccess, struct termios* ptOld, const MsgSource& source);
// Makes model the active one (*pnActive). Refused (1, nothing changed) when the port is closed or
// the index is not below the keypad model count in the shared block, nor below the table's own
// length. A model with line settings applies them with its baud code (nWhen: TCSANOW or
// TCSADRAIN); so does the PTZ port, which shares the bus, unless the PTZ line owns /dev/ttyS0.
uint32_t KeypadPortInit(int fd, const KeypadModel* ptTable, uint32_t nTable, uint32_t model, int nWhen,
                        uint32_t* pnActive);
// 0 when input is ready within 10 ms, 1 otherwise. A closed port waits the 10 ms too, so that the
// main loop keeps its pace.
uint32_t KeypadPortPoll(int fd);
// 1 when no model is active, 0 when it has no periodic work, else the low byte of its result.
uint32_t KeypadPortStatus(const KeypadModel* ptTable, uint32_t nActive);
// Restores the line found at open and closes: 0, or 1 when the port was not open.
uint32_t KeypadPortClose(int* pFd, const struct termios& tOld);
