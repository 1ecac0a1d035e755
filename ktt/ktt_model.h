// The KTT monitoring-link model table. Its entries use the keypad model record; the index is the
// KTT model number, and the names are published to the shared block in this order.
#pragma once
#include <termios.h>
#include <cstdint>

#include "keypad/keypad_model.h"

constexpr uint32_t kKttModelCount = 4;
extern const KeypadModel ptKttModelDatabase[kKttModelCount];
uint32_t GetNumberOfKttModel();

// Line settings of the terminal model (raw, one byte satisfies a read) and of the DTMF and FSK
// models (canonical line input, newline expanded on output). The baud code is added per model.
extern const struct termios TermSet_KTTTerm;
extern const struct termios TermSet_KTTDTMF;
