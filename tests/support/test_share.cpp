#include "tests/support/test_share.h"

#include <cstring>
#include <memory>

ShareBlock* ResetTestShare() {
    static std::unique_ptr<ShareBlock> block(new ShareBlock);
    std::memset(static_cast<void*>(block.get()), 0, sizeof(ShareBlock));
    ptShare = block.get();
    return block.get();
}
