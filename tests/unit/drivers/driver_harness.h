// Drives one camera driver the way the PTZ core does for one channel: stores each command, calls
// the builder, records the command as the previous one and stamps the clocks; polls the status
// routine while the driver keeps it armed. Time comes from the fake clock.
#pragma once
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "lib/ipc/Clock.h"
#include "ptz/drivers/pm_common.h"
#include "tests/support/fake_clock.h"

using Bytes = std::vector<uint8_t>;

class DriverHarness {
public:
    // nAddress is the camera address configured for the channel. tStart is the fake clock's start
    // value; the channel record starts as the core sets it up.
    DriverHarness(PTZBuildCmdFn build, PTZCheckStatusFn status, uint32_t nAddress,
                  uint32_t tStart = 1000)
        : m_build(build), m_status(status), m_nAddress(nAddress) {
        fakeclock::Set(tStart);
        m_state.nLastCmd = kPTZCmdNone;
        m_state.nIrisLevel = 58;
        m_state.tCmdClock = m_state.tStatusClock = get_jiffies();
    }

    // One incoming command; returns the frames built for it (the driver's count is in Count()).
    std::vector<Bytes> Send(uint32_t nCmd, int32_t p1 = 0, uint32_t p2 = 0, uint32_t p3 = 0,
                            uint32_t p4 = 0) {
        m_state.nCmd = nCmd;
        m_state.nParam1 = p1;
        m_state.nParam2 = p2;
        m_state.nParam3 = p3;
        m_state.nParam4 = p4;
        m_state.nSource = 128;
        m_nCount = m_build(m_nAddress, m_packets, &m_state, p2);
        if (m_state.nLastCmd == kPTZCmdNone) CopyToPrevious();
        if (m_nCount != 0) {
            CopyToPrevious();
            m_state.tCmdClock = get_jiffies();
            m_state.tStatusClock = get_jiffies();
        }
        return Frames();
    }

    // One status pass; nothing when the driver is not armed or has no status routine.
    std::vector<Bytes> Poll() {
        m_nCount = 0;
        if (m_status == nullptr || m_state.bStatusActive == 0) return {};
        m_nCount = m_status(m_nAddress, m_packets, &m_state);
        if (m_nCount != 0) m_state.tStatusClock = get_jiffies();
        return Frames();
    }

    // Advances the clock in steps of the main loop's 10 ms, polling after each step, and returns
    // every frame the status routine produced on the way.
    std::vector<Bytes> RunMs(uint32_t ms) {
        std::vector<Bytes> all;
        for (uint32_t t = 0; t < ms; t += 10) {
            fakeclock::AdvanceMs(10);
            for (Bytes& b : Poll()) all.push_back(b);
        }
        return all;
    }

    int32_t Count() const { return m_nCount; }
    PTZChannelState& State() { return m_state; }

private:
    void CopyToPrevious() {
        m_state.nPrevCmd = m_state.nCmd;
        m_state.nPrevParam1 = m_state.nParam1;
        m_state.nPrevParam2 = m_state.nParam2;
        m_state.nPrevParam3 = m_state.nParam3;
        m_state.nPrevParam4 = m_state.nParam4;
        m_state.nPrevSource = m_state.nSource;
    }

    std::vector<Bytes> Frames() const {
        std::vector<Bytes> out;
        for (int32_t i = 0; i < m_nCount && i < kPTZPacketsPerCall; ++i) {
            const PTZPacket& p = m_packets[i];
            const uint32_t n = p.nLength < sizeof p.abData ? p.nLength : sizeof p.abData;
            out.emplace_back(p.abData, p.abData + n);
        }
        return out;
    }

    PTZBuildCmdFn m_build;
    PTZCheckStatusFn m_status;
    uint32_t m_nAddress;
    PTZChannelState m_state{};
    PTZPacket m_packets[kPTZPacketsPerCall]{};
    int32_t m_nCount = 0;
};

// Frames written as hex bytes, frames separated by '|': "FF 01 00 04 3F 00 44"; "" = no frame.
inline std::vector<Bytes> ParseFrames(const char* sHex) {
    std::vector<Bytes> out;
    Bytes cur;
    bool bAny = false;
    for (const char* p = sHex; *p != '\0';) {
        if (*p == '|') {
            out.push_back(cur);
            cur.clear();
            ++p;
        } else if (*p == ' ') {
            ++p;
        } else {
            char* end = nullptr;
            cur.push_back(static_cast<uint8_t>(std::strtoul(p, &end, 16)));
            p = end;
            bAny = true;
        }
    }
    if (bAny) out.push_back(cur);
    return out;
}

// One command on a fresh channel and what it must yield.
struct GoldenRow {
    uint32_t nCmd;
    int32_t p1;
    uint32_t p2;
    uint32_t p3;
    uint32_t nAddress;
    const char* sFrames;     // as for ParseFrames
    uint32_t nLastCmd;       // nLastCmd after the call
};

// Runs every row on a fresh channel and checks frames and nLastCmd.
template <size_t N>
void ExpectGolden(PTZBuildCmdFn build, const GoldenRow (&rows)[N]) {
    for (const GoldenRow& r : rows) {
        SCOPED_TRACE(testing::Message() << "code " << r.nCmd << " p1 " << r.p1 << " address "
                                        << r.nAddress);
        DriverHarness h(build, nullptr, r.nAddress);
        EXPECT_EQ(h.Send(r.nCmd, r.p1, r.p2, r.p3), ParseFrames(r.sFrames));
        EXPECT_EQ(h.State().nLastCmd, r.nLastCmd);
    }
}
