// Speed and digit helpers, and the rules shared by every PTZ protocol driver.
#include "ptz/drivers/pm_common.h"

#include "lib/ipc/Clock.h"

int32_t ConvertSpeed(uint32_t nLevel, int32_t nZero, uint32_t nMin, int32_t nMax) {
    if (nLevel == 0) return nZero;
    if (nLevel == 1) return static_cast<int32_t>(nMin);
    if (nLevel == 8) return nMax;
    // The product is formed modulo 2^32, as the target's 32-bit arithmetic does, so that a wild
    // level from the mailbox yields some speed instead of signed overflow.
    const uint32_t nProduct = (nLevel - 1) * static_cast<uint32_t>(nMax - static_cast<int32_t>(nMin));
    return static_cast<int32_t>(nMin + static_cast<uint32_t>(static_cast<int32_t>(nProduct) / 8));
}

char INT2BCD(uint32_t nValue, int32_t nDigit) {
    int32_t v = static_cast<int32_t>(nValue);
    for (int32_t i = 0; i < nDigit; ++i) v /= 10;
    return static_cast<char>('0' + v % 10);
}

char INT2CHAR(int32_t nValue, uint32_t nNibble) {
    const uint32_t nShift = 4 * nNibble;
    int32_t d;
    if (nShift >= 32) d = nValue < 0 ? 15 : 0;
    else d = static_cast<int32_t>((static_cast<uint32_t>(nValue) >> nShift) & 0xF);
    return static_cast<char>(d < 10 ? '0' + d : 'A' + d - 10);
}

bool PTZBuildBegin(PTZChannelState* ptState, uint32_t dwRampMask) {
    if (ptState->nCmd == ptState->nLastCmd) return true;
    if (PTZCodeIn(dwRampMask, ptState->nCmd) && ptState->nParam1 == 0) {
        ptState->bStatusActive = 1;
        ptState->nRampStep = 0;
    }
    return false;
}

void PTZTourStart(PTZChannelState* ptState, uint32_t nCount) {
    ptState->nTourCount = nCount;
    ptState->nTourIndex = 0;
    ptState->bStatusActive = 1;
    ptState->nLastCmd = kPTZCmdNone;
}

void PTZTourStop(PTZChannelState* ptState) {
    ptState->bStatusActive = 0;
    ptState->nLastCmd = kPTZCmdNone;
}

bool PTZElapsedMs(uint32_t since, int32_t ms) {
    return TickReached(get_jiffies(), since + static_cast<uint32_t>(MsToTicks(ms)));
}

PTZStatusStep PTZStatusPlan(PTZChannelState* ptState, uint32_t dwRampMask) {
    const uint32_t nPrev = ptState->nPrevCmd;
    if (PTZCodeIn(dwRampMask, nPrev)) {
        if (PTZElapsedMs(ptState->tCmdClock, kPTZRampTopMs) && ptState->nRampStep == 1) {
            ptState->nRampStep = 2;
            return PTZStatusStep::RampTop;
        }
        if (PTZElapsedMs(ptState->tCmdClock, kPTZRampMiddleMs) && ptState->nRampStep == 0) {
            ptState->nRampStep = 1;
            return PTZStatusStep::RampMiddle;
        }
        return PTZStatusStep::Idle;
    }
    if (nPrev == PTZCmd_PresetTour)
        return PTZElapsedMs(ptState->tStatusClock, kPTZTourDwellMs) ? PTZStatusStep::TourStep
                                                                 : PTZStatusStep::Idle;
    ptState->bStatusActive = 0;
    return PTZStatusStep::Disarmed;
}

uint32_t PTZTourAdvance(PTZChannelState* ptState) {
    const uint32_t nPreset = (ptState->nTourIndex + 1) & 0xFF;
    ptState->nTourIndex = (ptState->nTourIndex + 1) % ptState->nTourCount;
    return nPreset;
}
