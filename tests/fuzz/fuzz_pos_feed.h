// Feeds fuzz input to a text-insertion record builder the way the polling read does. The input is
// cut into reads (a length byte, then up to that many bytes); each read is NUL-terminated in a
// 257-byte buffer and, when longer than 128 bytes, cut to 127 characters and a newline. Every
// record must stay a NUL-terminated line inside its 128 bytes.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "core/share_block.h"
#include "pos/pos_model.h"

// A zeroed shared block: no alarm receiver, no notifications, unless the target sets them.
inline ShareBlock* FuzzShare() {
    static ShareBlock tBlock{};
    ptShare = &tBlock;
    return &tBlock;
}

inline void FuzzFeed(PosProcCmdFn fn, const uint8_t* pyData, size_t nSize) {
    if (ptShare == nullptr) FuzzShare();
    for (size_t i = 0; i < nSize;) {
        size_t n = pyData[i++];
        if (n > nSize - i) n = nSize - i;
        char sText[257];
        std::memcpy(sText, pyData + i, n);
        sText[n] = '\0';
        if (n > 128) {
            sText[127] = '\n';
            sText[128] = '\0';
        }
        i += n;
        char sRecord[128];
        if (fn(sRecord, sText, static_cast<int>(n)) != 0 && sRecord[127] != '\0') std::abort();
    }
}
