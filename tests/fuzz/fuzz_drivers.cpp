// Fuzz target: every camera driver of the model table, called through the PTZ core as the loop
// calls it. The input picks a model (any entry with a builder, so drivers added to the table are
// fuzzed without a change here), a camera address, random driver-private channel state, and a
// stream of commands with random codes and parameters and of status polls at random clock steps.
// Frames go into the channel's queue; each must fit its 32-byte slot and, for addresses up to 255,
// be one whole frame of the model's protocol with a good check, as the simulator's decoder reads
// it. A driver that fills more than the core's four packets overruns the core's array and is
// caught by the address sanitizer.
#include "core/ptz_cntl.h"
#include "ptz/ptz_model.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/support/fake_clock.h"
#include "tools/sim/ptz_decode.h"

namespace {
// Every frame queued since nBefore fits its slot and, given a protocol, is one whole frame of it
// with a good check, as the simulator's decoder reads it.
void CheckQueued(const PTZSendQueue& q, int32_t nBefore, const PtzProtocol* ptProtocol) {
    FUZZ_CHECK(q.nWritten - q.nRead >= 0 && q.nWritten - q.nRead < kPTZQueueSlots);
    for (int32_t k = nBefore; k < q.nWritten; ++k) {
        const auto& slot = q.atSlot[k % kPTZQueueSlots];
        FUZZ_CHECK(slot.nLength <= static_cast<uint32_t>(kPTZFrameMax));
        if (ptProtocol == nullptr) continue;
        // Twice in a row: a decoder may need the next frame's start to see where this one ends.
        uint8_t abTwice[2 * kPTZFrameMax];
        std::memcpy(abTwice, slot.abData, slot.nLength);
        std::memcpy(abTwice + slot.nLength, slot.abData, slot.nLength);
        PtzFrameText t;
        FUZZ_CHECK(PtzDecode(*ptProtocol, abTwice, 2 * slot.nLength, &t));
        FUZZ_CHECK(t.nLength == slot.nLength && !t.bBadCheck);
    }
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pyData, size_t nSize) {
    static ShareBlock tBlock{};
    if (ptShare == nullptr) {
        ptShare = &tBlock;
        PTZPublishModels();
    }
    FuzzInput in(pyData, nSize);
    uint32_t anBuilt[kPTZModelCount];
    uint32_t nBuilt = 0;
    for (uint32_t i = 0; i < GetNumberOfPTZModel(); ++i)
        if (ptPTZModelDatabase[i].BuildCmd != nullptr) anBuilt[nBuilt++] = i;
    if (nBuilt == 0) return 0;
    tBlock.nChannels = 1;
    tBlock.atPtz[0].nPtzModel = anBuilt[in.Byte() % nBuilt];
    tBlock.atPtz[0].nPtzAddress = in.Value();

    fakeclock::Set(in.Word());
    PTZInitChannels();
    PTZChannelState& s = tGlobal.atChannel[0];
    PTZSendQueue& q = tGlobal.atQueue[0];
    if (in.Byte() & 1) {
        // Driver-private state left by earlier commands, or by another model on this channel.
        s.nTourCount = in.Value();
        s.nTourIndex = in.Value();
        s.nIrisLevel = in.Value();
        s.nRampStep = in.Value();
        s.dwReserved1 = in.Value();
        for (uint32_t& w : s.adwReserved) w = in.Value();
        s.bStatusActive = in.Byte();
        s.nLastCmd = in.Value();
    }
    while (!in.Empty()) {
        const uint8_t op = in.Byte();
        const int32_t nBefore = q.nWritten;
        if (op < 0xC0) {
            const uint32_t nCmd = op < 0x80 ? op : in.Value();
            const uint32_t p1 = in.Value(), p2 = in.Value(), p3 = in.Value();
            PTZControl(in.Byte(), 0, nCmd, p1, p2, p3, 0);
        } else {
            fakeclock::AdvanceTicks(op < 0xF0 ? op - 0xC0u : in.Value());
            CheckPTZStatus();
        }
        // Beyond address 255 a frame need not be one its decoder reads: decimal address digits
        // are computed in signed integers, so an address past 2^31 has none.
        const bool bDecodable = tBlock.atPtz[0].nPtzAddress < 256;
        CheckQueued(q, nBefore, bDecodable ? ProtocolOfModel(tBlock.atPtz[0].nPtzModel) : nullptr);
        q.nRead = q.nWritten;   // sent
    }
    return 0;
}
