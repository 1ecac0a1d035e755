// A shared system block in ordinary memory for unit tests.
#pragma once
#include "core/share_block.h"

// Zeroes the test block, points ptShare at it and returns it.
ShareBlock* ResetTestShare();
