// The table of camera models: display name, line setting and protocol driver of each.
#pragma once
#include <cstdint>

#include "ptz/drivers/pm_common.h"

struct PTZModel {
    uint32_t dwReserved1;
    uint32_t dwLineFlags;              // termios c_cflag bits the model adds: baud, CSTOPB, PARENB
    const PTZCntlOpt* ptCntlOpt;
    PTZBuildCmdFn BuildCmd;            // null only for "NONE" and drivers not built in
    PTZCheckStatusFn CheckStatus;      // null when the model has no status routine
    uint32_t dwReserved2;
    char sName[64];
};

constexpr uint32_t kPTZModelCount = 43;
extern const PTZModel ptPTZModelDatabase[kPTZModelCount];
uint32_t GetNumberOfPTZModel();
