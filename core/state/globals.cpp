// Process-wide state shared by the subsystems.
#include "core/ptz_cntl.h"
#include "core/share_block.h"

ProcessGlobals tGlobal;
ShareBlock* ptShare = nullptr;
