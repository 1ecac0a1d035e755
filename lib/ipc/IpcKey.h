// The recorder's naming rule for System V IPC objects: identifier n in the top byte, 0x55AA55 below.
#pragma once
#include <sys/types.h>
#include <cstdint>

constexpr key_t IpcKey(int n) { return static_cast<key_t>((static_cast<uint32_t>(n) << 24) | 0x55AA55u); }
static_assert(static_cast<uint32_t>(IpcKey(47)) == 0x2F55AA55u);

constexpr int kRecorderIpcId = 47;   // queue, shared block and semaphore set of the recorder
