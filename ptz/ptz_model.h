// The table of camera models: display name, line setting and protocol driver of each.
#pragma once
#include <cstdint>

#include "ptz/drivers/pm_common.h"

struct PTZModel {
    uint32_t dwReserved1;
    uint32_t dwLineFlags;              // termios c_cflag bits the model adds: baud, CSTOPB, PARENB
    const PTZCntlOpt* ptCntlOpt;
    PTZBuildCmdFn BuildCmd;            // null only for "NONE"
    PTZCheckStatusFn CheckStatus;      // null when the model has no status routine
    uint32_t dwReserved2;
    char sName[64];
};

constexpr uint32_t kPTZModelCount = 43;
extern const PTZModel ptPTZModelDatabase[];
uint32_t GetNumberOfPTZModel();

// The entry of a model number, or entry 0 ("NONE": no driver, no options) for a number beyond the
// table, so that a configuration word never indexes past it.
const PTZModel& PTZModelEntry(uint32_t nModel);
