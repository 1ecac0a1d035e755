// Decoding of the controller-link frames (Ikegami i-LAN, Toa, Toshiba SC1000, PT2000).
//
//   02, address, LEN, payload (LEN bytes), 03, XOR of bytes 1 .. the 03
//
// The payload is always Pelco-D's four variable bytes (command 1, command 2, data 1, data 2), so
// LEN is 4 and a frame is 9 bytes; any other length byte, or a missing 03, is not one of these
// frames. Set preset 95 opens the menu, as with Pelco-D.
#include "tools/sim/decode_pelco.h"

namespace {

constexpr uint8_t kSTX = 0x02, kETX = 0x03;
constexpr uint8_t kPayload = 4;
constexpr size_t kLength = 5u + kPayload;

}  // namespace

bool DecodeControllerLink(const uint8_t* b, size_t n, PtzFrameText* t) {
    if (n < kLength || b[0] != kSTX || b[2] != kPayload || b[3 + kPayload] != kETX) return false;
    t->nLength = kLength;
    t->nAddress = b[1];
    t->bBadCheck = PTZCheckOf(PTZCheck::Xor, b, 1, kLength - 1) != b[kLength - 1];
    PelcoDCommand(b[3], b[4], b[5], b[6], kPelcoMenuBySet95, t);
    return true;
}
