// Shared by the text-insertion tests: a controllable record clock, a builder call shaped like the
// polling read's, and captured standard error.
#pragma once
#include <cstdint>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "pos/pos_model.h"
#include "pos/sm_common.h"

namespace postest {
constexpr uint32_t kT0 = 1700000000;   // 2023-11-14 22:13:20 UTC
void SetClock(uint32_t dwSeconds, uint32_t nMillis = 129);
std::string Stamp();                    // "seconds.hh" of the clock as set

// Calls a builder with the bytes NUL-terminated in a 257-byte buffer and returns the record
// text ("" when it returned 0), checking that the record is a line of at most 126 characters in
// 128 zero-filled bytes and that the returned time is the clock's.
inline std::string Record(PosProcCmdFn fn, const std::string& sInput) {
    char sText[257] = {};
    const size_t n = std::min<size_t>(sInput.size(), 256);
    std::memcpy(sText, sInput.data(), n);
    char sRecord[kPosRecordSize];
    std::memset(sRecord, 0x5A, sizeof sRecord);
    const uint32_t dwTime = fn(sRecord, sText, static_cast<int>(n));
    if (dwTime == 0) return "";
    const std::string s(sRecord, strnlen(sRecord, kPosRecordSize));
    EXPECT_LE(s.size(), 126u);
    EXPECT_EQ(std::string(sRecord + s.size(), kPosRecordSize - s.size()), std::string(kPosRecordSize - s.size(), '\0'));
    EXPECT_EQ(s.substr(s.find('|') + 1, 10), std::to_string(dwTime));
    return s;
}

template <class F> std::string Stderr(F f) {
    testing::internal::CaptureStderr();
    f();
    return testing::internal::GetCapturedStderr();
}
}  // namespace postest
