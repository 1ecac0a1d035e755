// Drives one camera model through the PTZ core's own entry points on channel 0, as the main loop
// does: PTZControl stores the command, calls the driver and queues its frames; CheckPTZStatus
// polls the status routine. The harness only reads back what was queued. One harness at a time:
// each one starts the core afresh.
#pragma once
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "core/ptz_cntl.h"
#include "core/share_block.h"
#include "ptz/drivers/pm_common.h"
#include "ptz/ptz_data.h"
#include "tests/support/fake_clock.h"
#include "tests/support/test_share.h"

using Bytes = std::vector<uint8_t>;
using Frames = std::vector<Bytes>;
constexpr uint32_t kNone = kPTZCmdNone;

struct DriverHarness {
    DriverHarness(uint32_t nModel, uint32_t nAddress, uint32_t tStart = 1000) {
        fakeclock::Set(tStart);
        ShareBlock* ptBlock = ResetTestShare();
        PTZInitChannels();
        PTZPublishModels();
        ptBlock->nChannels = 1;
        ptBlock->atPtz[0].nPtzModel = nModel;
        ptBlock->atPtz[0].nPtzAddress = nAddress;
    }

    // The channel as at start: the state and the queue of a process that just started.
    void Fresh(uint32_t tStart = 1000) {
        fakeclock::Set(tStart);
        PTZInitChannels();
    }

    Frames Send(uint32_t nCmd, int32_t p1 = 0, uint32_t p2 = 0, uint32_t p3 = 0) {
        PTZControl(1, 0, nCmd, static_cast<uint32_t>(p1), p2, p3, 0);
        return Take();
    }

    Frames Poll() {
        CheckPTZStatus();
        return Take();
    }

    // Advances the clock in the main loop's 10 ms steps, polling after each; all frames polled.
    Frames RunMs(uint32_t ms) {
        Frames all;
        for (uint32_t t = 0; t < ms; t += 10) {
            fakeclock::AdvanceMs(10);
            for (Bytes& b : Poll()) all.push_back(b);
        }
        return all;
    }

    PTZChannelState& State() { return tGlobal.atChannel[0]; }

    // The frames queued since the last look, oldest first.
    static Frames Take() {
        PTZSendQueue& q = tGlobal.atQueue[0];
        Frames out;
        for (; q.nRead < q.nWritten; ++q.nRead) {
            const PTZPacket& p = q.atSlot[q.nRead % kPTZQueueSlots];
            out.emplace_back(p.abData, p.abData + p.nLength);
        }
        return out;
    }
};

// Frames as hex bytes, frames separated by " | ": "FF 01 00 04 3F 00 44"; "" = no frame.
inline Frames Hex(const std::string& s) {
    Frames out(s.empty() ? 0 : 1);
    std::istringstream in(s);
    for (std::string w; in >> w;) {
        if (w == "|") out.emplace_back();
        else out.back().push_back(static_cast<uint8_t>(std::stoul(w, nullptr, 16)));
    }
    return out;
}

// Characters as they travel, for text protocols: Ascii("AD01") = "41 44 30 31".
inline std::string Ascii(const std::string& s) {
    std::string out;
    for (unsigned char c : s) {
        if (!out.empty()) out += ' ';
        out += "0123456789ABCDEF"[c >> 4];
        out += "0123456789ABCDEF"[c & 15];
    }
    return out;
}

// One command on a fresh channel: the frames it yields and nLastCmd afterwards.
struct GoldenRow {
    uint32_t nCmd; int32_t p1; uint32_t nAddress; std::string sFrames;
    uint32_t nLastCmd, p2 = 0, p3 = 0;
};

inline void ExpectGolden(uint32_t nModel, const std::vector<GoldenRow>& rows) {
    for (const GoldenRow& r : rows) {
        SCOPED_TRACE(testing::Message() << "model " << nModel << " code " << r.nCmd << " p1 " << r.p1
                                        << " @" << r.nAddress);
        DriverHarness h(nModel, r.nAddress);
        EXPECT_EQ(h.Send(r.nCmd, r.p1, r.p2, r.p3), Hex(r.sFrames));
        EXPECT_EQ(h.State().nLastCmd, r.nLastCmd);
    }
}
