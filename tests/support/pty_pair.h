// A pseudo-terminal pair from the sandbox's own devpts, for unit tests of serial code.
#pragma once
#include <cstdint>
#include <vector>

struct PtyPair {
    int master = -1;
    int slave = -1;
    PtyPair();     // raw mode on both ends
    ~PtyPair();
    PtyPair(const PtyPair&) = delete;
    PtyPair& operator=(const PtyPair&) = delete;
    // Everything readable on the master within timeout_ms after the last byte.
    std::vector<uint8_t> Drain(int timeout_ms = 20) const;
};
