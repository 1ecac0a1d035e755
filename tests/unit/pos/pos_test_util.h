// Shared by the text-insertion tests: the record clock set through the test clock, a builder call
// shaped like the polling read's, and captured standard error.
#pragma once
#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "pos/pos_model.h"
#include "pos/sm_common.h"
#include "tests/support/fake_clock.h"

namespace postest {
constexpr uint32_t kT0 = 1700000000;   // 2023-11-14 22:13:20 UTC
inline void SetClock(uint32_t dwSeconds, uint32_t nMillis = 129) { fakeclock::SetWall(dwSeconds, nMillis); }
// "seconds.hh" of the clock as set.
inline std::string Stamp() {
    const WallTime t = GetWallTime();
    return std::to_string(t.dwTime) + "." + std::to_string(t.nMillitm / 100) + std::to_string(t.nMillitm / 10 % 10);
}

// Calls a builder with at most 256 bytes, as one read, and returns the record text ("" for none),
// checking that it is at most 126 characters in 128 zero-filled bytes and carries the returned time.
inline std::string Record(PosProcCmdFn fn, const std::string& sInput) {
    std::string sRecord(kPosRecordSize, '\x5A');
    const uint32_t dwTime = fn(sRecord.data(), sInput.c_str(), static_cast<int>(std::min<size_t>(sInput.size(), 256)));
    if (dwTime == 0) return "";
    const std::string s = sRecord.c_str();
    EXPECT_LE(s.size(), 126u);
    EXPECT_EQ(sRecord.substr(s.size()), std::string(kPosRecordSize - s.size(), '\0'));
    EXPECT_EQ(s.substr(s.find('|') + 1, 10), std::to_string(dwTime));
    return s;
}

template <class F> std::string Stderr(F f) {
    testing::internal::CaptureStderr();
    f();
    return testing::internal::GetCapturedStderr();
}
}  // namespace postest
