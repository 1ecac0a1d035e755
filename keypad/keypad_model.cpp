// The keypad model table. The index of an entry is the model number the recorder stores in the
// shared block, so the order is part of the configuration format.
#include "keypad/keypad_model.h"

#include <iterator>

namespace {
constexpr uint32_t k2400 = B2400;
constexpr uint32_t k4800 = B4800;
constexpr uint32_t k9600 = B9600;
}  // namespace

// clang-format off
const KeypadModel ptKeypadModelDatabase[] = {
    /* 0 */ {0,     nullptr,           nullptr,          nullptr,           nullptr, "NONE"},
    /* 1 */ {k9600, &TermSet_Malvoren, ProcCmd_Malvoren, CheckCmd_Malvoren, nullptr, "KEYPAD 1 - 9600 BPS"},
    /* 2 */ {k4800, &TermSet_Malvoren, ProcCmd_Malvoren, CheckCmd_Malvoren, nullptr, "KEYPAD 1 - 4800 BPS"},
    /* 3 */ {k2400, &TermSet_Malvoren, ProcCmd_Malvoren, CheckCmd_Malvoren, nullptr, "KEYPAD 1 - 2400 BPS"},
    /* 4 */ {k9600, &TermSet_WTX,      ProcCmd_WTX,      CheckCmd_WTX,      nullptr, "WONWOO - 9600 BPS"},
    /* 5 */ {k4800, &TermSet_WTX,      ProcCmd_WTX,      CheckCmd_WTX,      nullptr, "WONWOO - 4800 BPS"},
    /* 6 */ {k2400, &TermSet_WTX,      ProcCmd_WTX,      CheckCmd_WTX,      nullptr, "WONWOO - 2400 BPS"},
};
// clang-format on
static_assert(std::size(ptKeypadModelDatabase) == kKeypadModelCount);

uint32_t GetNumberOfKeypadModel() { return kKeypadModelCount; }
