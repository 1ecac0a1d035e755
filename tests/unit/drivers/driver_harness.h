// Drives one camera driver as the PTZ core drives one channel: stores the command, builds, copies
// it to the previous command and stamps the clocks; polls while the driver keeps the poller armed.
#pragma once
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "lib/ipc/Clock.h"
#include "ptz/drivers/pm_common.h"
#include "tests/support/fake_clock.h"

using Bytes = std::vector<uint8_t>;
using Frames = std::vector<Bytes>;
constexpr uint32_t kNone = kPTZCmdNone;

struct DriverHarness {
    DriverHarness(PTZBuildCmdFn build, PTZCheckStatusFn status, uint32_t nAddress,
                  uint32_t tStart = 1000)
        : m_build(build), m_status(status), m_nAddress(nAddress) {
        fakeclock::Set(tStart);
        m_state.nLastCmd = kPTZCmdNone;
        m_state.nIrisLevel = 58;
        m_state.tCmdClock = m_state.tStatusClock = get_jiffies();
    }

    Frames Send(uint32_t nCmd, int32_t p1 = 0, uint32_t p2 = 0, uint32_t p3 = 0) {
        m_state.nCmd = nCmd;
        m_state.nParam1 = p1;
        m_state.nParam2 = p2;
        m_state.nParam3 = p3;
        const int32_t n = m_build(m_nAddress, m_packets, &m_state, p2);
        // Drivers read only nPrevCmd of the previous command.
        if (m_state.nLastCmd == kPTZCmdNone || n != 0) m_state.nPrevCmd = nCmd;
        if (n != 0) m_state.tCmdClock = m_state.tStatusClock = get_jiffies();
        return Out(n);
    }

    Frames Poll() {
        if (m_status == nullptr || m_state.bStatusActive == 0) return {};
        const int32_t n = m_status(m_nAddress, m_packets, &m_state);
        if (n != 0) m_state.tStatusClock = get_jiffies();
        return Out(n);
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

    PTZChannelState& State() { return m_state; }

    Frames Out(int32_t n) const {
        EXPECT_TRUE(n >= 0 && n <= kPTZPacketsPerCall) << n;
        Frames out;
        for (int32_t i = 0; i < n && i < kPTZPacketsPerCall; ++i)
            out.emplace_back(m_packets[i].abData, m_packets[i].abData + m_packets[i].nLength);
        return out;
    }

    PTZBuildCmdFn m_build;
    PTZCheckStatusFn m_status;
    uint32_t m_nAddress;
    PTZChannelState m_state{};
    PTZPacket m_packets[kPTZPacketsPerCall]{};
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

// One command on a fresh channel: the frames it yields and nLastCmd afterwards.
struct GoldenRow {
    uint32_t nCmd; int32_t p1; uint32_t nAddress; std::string sFrames;
    uint32_t nLastCmd, p2 = 0, p3 = 0;
};

inline void ExpectGolden(PTZBuildCmdFn build, const std::vector<GoldenRow>& rows) {
    for (const GoldenRow& r : rows) {
        SCOPED_TRACE(testing::Message() << r.nCmd << " p1 " << r.p1 << " @" << r.nAddress);
        DriverHarness h(build, nullptr, r.nAddress);
        EXPECT_EQ(h.Send(r.nCmd, r.p1, r.p2, r.p3), Hex(r.sFrames));
        EXPECT_EQ(h.State().nLastCmd, r.nLastCmd);
    }
}
