// Test main: refuses to run outside the sandbox, then runs the GoogleTest cases.
#include <gtest/gtest.h>

#include "tools/sim/sandbox_guard.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // Listing the tests touches nothing; everything else needs the sandbox.
    if (!testing::GTEST_FLAG(list_tests)) RequireSandbox(argv[0]);
    return RUN_ALL_TESTS();
}
