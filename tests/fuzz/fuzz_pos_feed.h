// Feeds fuzz input to a text-insertion record builder through the polling read's own hand-over
// (PosBuildRecord). The input is cut into reads (a length byte, then up to that many bytes), each
// in a buffer with room for exactly one byte more, so that the sanitizer sees any step past it.
// Every record must stay a NUL-terminated line inside its 128 bytes.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "core/share_block.h"
#include "pos/pos_data.h"
#include "pos/pos_model.h"
#include "pos/sm_common.h"

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
        std::vector<char> sText(n + 1);
        std::memcpy(sText.data(), pyData + i, n);
        i += n;
        char sRecord[kPosRecordSize];
        if (PosBuildRecord(fn, sText.data(), static_cast<int>(n), sRecord) != 0 && sRecord[kPosRecordSize - 1] != '\0')
            std::abort();
    }
}
