// The KTT monitoring-link model table. The index of an entry is the KTT model number, so the
// order is part of the configuration format.
//
// The reporting protocols that would fill ProcCmd and CheckStatus of entries 1 to 3 (terminal
// command words, DTMF and FSK reporting) are not part of this program: those entries carry their
// line settings only. No code path activates a KTT model, so the link runs with model 0.
#include "ktt/ktt_model.h"

#include <iterator>

namespace {
constexpr uint32_t k9600 = B9600;
constexpr uint32_t k57600 = B57600;
constexpr uint32_t k115200 = B115200;

constexpr struct termios RawOneByte() {
    struct termios t{};
    t.c_cflag = CS8 | CREAD | CLOCAL;
    t.c_cc[VMIN] = 1;
    t.c_cc[VTIME] = 0;
    return t;
}

constexpr struct termios CanonicalLines() {
    struct termios t{};
    t.c_oflag = OPOST | ONLCR;
    t.c_cflag = CS8 | CREAD | CLOCAL;
    t.c_lflag = ICANON;
    return t;
}
}  // namespace

const struct termios TermSet_KTTTerm = RawOneByte();
const struct termios TermSet_KTTDTMF = CanonicalLines();

// clang-format off
const KeypadModel ptKttModelDatabase[] = {
    /* 0 */ {0,       nullptr,          nullptr, nullptr, nullptr, "NONE"},
    /* 1 */ {k115200, &TermSet_KTTTerm, nullptr, nullptr, nullptr, "CUSTOM MODE 4 TERMINAL"},
    /* 2 */ {k57600,  &TermSet_KTTDTMF, nullptr, nullptr, nullptr, "CUSTOM MODE 4 DTMF"},
    /* 3 */ {k9600,   &TermSet_KTTDTMF, nullptr, nullptr, nullptr, "CUSTOM MODE 4 FSK"},
};
// clang-format on
static_assert(std::size(ptKttModelDatabase) == kKttModelCount);

uint32_t GetNumberOfKttModel() { return kKttModelCount; }
