// The recorder's shared system block (System V segment 47), as far as this process uses it.
// The main application owns the segment and every byte not named here; offsets are fixed and
// shared with it. Configuration words are volatile: the main application may change them at any
// time, and every use must read the block afresh.
#pragma once
#include <cstddef>
#include <cstdint>

#include "lib/log/log.h"

constexpr int kMaxChannels = 16;

// Per-channel PTZ settings written by the main application (52 bytes each).
struct SharePtzSetting {
    volatile uint32_t nPtzModel;     // index into ptPTZModelDatabase, 0 = none
    volatile uint32_t nPtzAddress;   // camera address handed to the driver
    uint8_t abApplication[44];
};
static_assert(sizeof(SharePtzSetting) == 52);

// Last accepted PTZ command of a channel, replayed after a restart (32 bytes each).
struct SharePtzLastCmd {
    uint32_t nSource;
    uint32_t nCmd;       // 0 = nothing to replay
    uint32_t nParam1;
    uint32_t nParam2;
    uint32_t nParam3;
    uint32_t nParam4;
    uint8_t abUnused[8];
};
static_assert(sizeof(SharePtzLastCmd) == 32);

constexpr int kShareModelNameLen = 64;
constexpr int kSharePosLayoutSize = 452;

struct ShareBlock {
    uint8_t abReserved0[36];
    volatile uint32_t nChannels;            //     36 camera channels of the recorder
    uint8_t abReserved40[4];
    volatile uint32_t nSwitchOutputs;       //     44 outputs the keypad ON/OFF keys address
    volatile uint32_t dwKeyFlags;           //     48 bit 1: keys to recorder; bit 2: mailbox 4
    uint8_t abReserved52[13];
    volatile uint8_t bPosStore;             //     65 append text records to the daily file
    uint8_t abReserved66[358];
    volatile uint32_t nKeypadSystemIdCfg;   //    424
    uint8_t abReserved428[4];
    volatile uint8_t bPtzLock1;             //    432 keypad PTZ keys inhibited
    uint8_t abReserved433[43];
    volatile uint32_t nKeypadModel;         //    476
    volatile uint32_t nPosModel;            //    480
    uint8_t abReserved484[4];
    volatile uint32_t nPortAssign;          //    488 3: PTZ line on ttyS0; 2: text input owns ttyS0
    uint8_t abReserved492[868];
    volatile uint32_t dwAtmAlarmAddr;       //   1360 IPv4 (network order) of the ATM alarm receiver
    volatile uint32_t nVariant;             //   1364 4: KTT link variant; 3: no preset tours
    uint8_t abReserved1368[96];
    volatile uint32_t nKttEventEnable;      //   1464
    uint8_t abReserved1468[1604];
    volatile uint32_t dwFeatures;           //   3072 bit 0: text insertion enabled
    uint8_t abReserved3076[2324];
    SharePtzSetting atPtz[kMaxChannels];    //   5400
    uint8_t abReserved6232[940];
    volatile uint32_t bPtzLock2;            //   7172 keypad PTZ keys inhibited
    uint8_t abReserved7176[6136];
    volatile uint32_t dwKeypadMenuState;    //  13312 bit 4: menu mode; 0xE000 must be clear
    uint8_t abReserved13316[132092];
    volatile uint32_t nPtzModelCount;       // 145408
    char asPtzModelName[64][kShareModelNameLen];       // 145412
    uint32_t adwPtzModelCaps[64];                      // 149508
    uint32_t adwPtzStatus[kMaxChannels][7];            // 149764
    volatile uint32_t nKeypadModelCount;               // 150212
    char asKeypadModelName[16][kShareModelNameLen];    // 150216
    volatile uint32_t nPosModelCount;                  // 151240
    char asPosModelName[16][kShareModelNameLen];       // 151244
    volatile uint32_t nKttModelCount;                  // 152268
    char asKttModelName[16][kShareModelNameLen];       // 152272
    uint8_t abPosLayout[kSharePosLayoutSize];          // 153296 DPRCSet of the active text model
    SharePtzLastCmd atPtzLastCmd[kMaxChannels];        // 153748
    uint8_t abReserved154260[4];
    volatile uint8_t bPtzDebug;                        // 154264
    volatile uint8_t bKeypadDebug;                     // 154265
    uint8_t abReserved154266[3154];
    LogUpHistory tUpHistory;                           // 157420 kept by LeaveUpLog
};

#define SHARE_AT(field, off) static_assert(offsetof(ShareBlock, field) == (off), #field)
SHARE_AT(nChannels, 36);
SHARE_AT(nSwitchOutputs, 44);
SHARE_AT(dwKeyFlags, 48);
SHARE_AT(bPosStore, 65);
SHARE_AT(nKeypadSystemIdCfg, 424);
SHARE_AT(bPtzLock1, 432);
SHARE_AT(nKeypadModel, 476);
SHARE_AT(nPosModel, 480);
SHARE_AT(nPortAssign, 488);
SHARE_AT(dwAtmAlarmAddr, 1360);
SHARE_AT(nVariant, 1364);
SHARE_AT(nKttEventEnable, 1464);
SHARE_AT(dwFeatures, 3072);
SHARE_AT(atPtz, 5400);
SHARE_AT(bPtzLock2, 7172);
SHARE_AT(dwKeypadMenuState, 13312);
SHARE_AT(nPtzModelCount, 145408);
SHARE_AT(asPtzModelName, 145412);
SHARE_AT(adwPtzModelCaps, 149508);
SHARE_AT(adwPtzStatus, 149764);
SHARE_AT(nKeypadModelCount, 150212);
SHARE_AT(asKeypadModelName, 150216);
SHARE_AT(nPosModelCount, 151240);
SHARE_AT(asPosModelName, 151244);
SHARE_AT(nKttModelCount, 152268);
SHARE_AT(asKttModelName, 152272);
SHARE_AT(abPosLayout, 153296);
SHARE_AT(atPtzLastCmd, 153748);
SHARE_AT(bPtzDebug, 154264);
SHARE_AT(bKeypadDebug, 154265);
SHARE_AT(tUpHistory, 157420);
#undef SHARE_AT
static_assert(sizeof(ShareBlock) == 157504, "the last field used ends at byte 157504");

// Values of the words above that this process tests.
constexpr uint32_t kVariantKtt = 4;            // nVariant: KTT monitoring link present
constexpr uint32_t kVariantNoTour = 3;         // nVariant: preset tours refused
constexpr uint32_t kPortAssignPtzOnS0 = 3;     // nPortAssign: PTZ line and keypad on /dev/ttyS0
constexpr uint32_t kPortAssignPosOnS0 = 2;     // nPortAssign: text input owns /dev/ttyS0
constexpr uint32_t kKeyFlagToRecorder = 0x2;   // dwKeyFlags
constexpr uint32_t kKeyFlagMailbox4 = 0x4;     // dwKeyFlags
constexpr uint32_t kFeatureTextInsertion = 0x1;  // dwFeatures

extern ShareBlock* ptShare;   // attached at start-up, null before
