// Fuzz target: the keypad input path. Bytes reach the port in chunks of any size (a pipe stands in
// for the line), the receive ring gathers them and hands them to the Keypad-1 or WTX-1200A framer
// and translator; the model, the keypad id, the key-delivery and menu words and the cameras'
// models change between chunks. The ring positions must stay inside the ring and every PTZ
// command a key causes must leave the channel queue within its bounds.
#include <fcntl.h>
#include <unistd.h>

#include "core/ptz_cntl.h"
#include "keypad/keypad_data.h"
#include "tests/fuzz/fuzz_input.h"

namespace {
int g_fdLine = -1;   // our end of the line: what we write here the keypad port reads

void Setup() {
    static ShareBlock tBlock{};
    ptShare = &tBlock;
    FuzzQueue();
    int fds[2];
    FUZZ_CHECK(pipe2(fds, O_NONBLOCK | O_CLOEXEC) == 0);
    fdKeypadUart = fds[0];
    g_fdLine = fds[1];
    KeypadPublishModels();
    PTZInitChannels();
}

void CheckBounds() {
    FUZZ_CHECK(gBufWritePos >= 0 && gBufWritePos < kKeypadRingSize);
    FUZZ_CHECK(gBufReadPos >= 0 && gBufReadPos < kKeypadRingSize);
    for (const PTZSendQueue& q : tGlobal.atQueue) {
        FUZZ_CHECK(q.nWritten - q.nRead >= 0 && q.nWritten - q.nRead < kPTZQueueSlots);
        for (int32_t k = q.nRead; k < q.nWritten; ++k) FUZZ_CHECK(q.atSlot[k % kPTZQueueSlots].nLength <= kPTZFrameMax);
    }
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pyData, size_t nSize) {
    if (g_fdLine < 0) Setup();
    FuzzInput in(pyData, nSize);
    gBufWritePos = gBufReadPos = 0;
    gBufOverlap = 0;
    KeypadDeviceInit(in.Byte() % (kKeypadModelCount + 1));
    tGlobal.nKeypadSystemId = in.Byte() % 4;
    ptShare->dwKeyFlags = in.Byte();
    ptShare->dwKeypadMenuState = static_cast<uint32_t>(in.Byte()) << 8;
    ptShare->nSwitchOutputs = in.Byte() % 8;
    ptShare->nChannels = kMaxChannels;
    for (auto& ch : ptShare->atPtz) ch.nPtzModel = 14;   // Pelco-D: no joystick, ramps

    while (!in.Empty()) {
        const uint8_t op = in.Byte();
        if (op < 0xE0) {
            // A chunk of 1..32 bytes arrives, then the loop turns 1..4 times.
            uint8_t chunk[32];
            const size_t n = in.Bytes(chunk, (op & 31u) + 1);
            FUZZ_CHECK(write(g_fdLine, chunk, n) == static_cast<ssize_t>(n));
            for (int turn = 0; turn <= (op >> 5) % 4; ++turn) {
                ReceiveKeypadData();
                CheckBounds();
            }
        } else if (op < 0xE8) {
            KeypadDeviceInit(in.Byte() % (kKeypadModelCount + 1));   // 7 is refused
        } else if (op < 0xF0) {
            tGlobal.nKeypadSystemId = in.Byte() % 4;
        } else if (op < 0xF8) {
            ptShare->atPtz[in.Byte() % kMaxChannels].nPtzModel = in.Value();
        } else {
            ptShare->dwKeypadMenuState = in.Value() << 8;
            ptShare->dwKeyFlags = in.Byte();
        }
        FuzzDrainRecorderMail();
    }
    // Whatever is still on the line or in the ring is left behind.
    uint8_t rest[256];
    while (read(fdKeypadUart, rest, sizeof rest) > 0) {
    }
    for (PTZSendQueue& q : tGlobal.atQueue) q.nRead = q.nWritten;
    return 0;
}
