// The rules every camera driver follows, written once: repeat suppression and nLastCmd, ramp
// arming, parameter ranges, preset tours, and the status plan (speed ramp, refresh of held actions
// for cameras that stop by themselves, tour steps). A driver describes itself with a PTZDriver: its
// code table, its speed scales, and a writer that lays out the bytes of one table row as frames.
// Its BuildCmd_X and CheckStatus_X are then one call each into PTZBuild and PTZStatus.
#pragma once
#include <cstdint>
#include <span>

#include "ptz/drivers/pm_common.h"

// What a row of a code table does with its command.
enum class PTZOp : uint8_t {
    Held,          // the row's frame; the code stays in force, so a repeat sends nothing
    Move,          // as Held, with the pan and tilt speeds of p1 (the axes follow the code)
    Once,          // the row's frame; nLastCmd none: it may be sent again at once
    Number,        // as Once with p1 as the number, accepted in 1..nMax
    Joystick,      // as Once: a proportional move from p1 (pan), p2 (tilt), p3 (zoom)
    Halt,          // as Once, and the status routine is disarmed at once
    TourStart,     // no frame: the tour of p1 presets (1..nMax, any when nMax is 0) is armed
    TourGo,        // as TourStart, and the frames of going to preset 1 at once
    TourStop,      // no frame: the tour is disarmed
    Silent,        // no frame; nLastCmd none, as if the command had completed
    Unsupported,   // no frame; the code is remembered, so a repeat is suppressed
};

// Row code that stands for every stop (PTZAction::Stop) the table does not list by itself.
constexpr uint8_t kPTZAnyStop = 0xFE;

// One command of a driver: the bytes are the protocol's, laid out by the driver's writer.
struct PTZCode {
    uint8_t nCode;
    PTZOp eOp;
    uint8_t ay[6];
    uint8_t nMax = 0;              // Number, TourStart, TourGo: the highest number accepted
    const char* sText = nullptr;   // the command's characters, for text protocols
};

// Why a writer is called.
enum class PTZWhy : uint8_t { Command, Ramp, Refresh, TourStep };

// What the engine hands a writer along with the row.
struct PTZArgs {
    PTZWhy eWhy;
    PTZMeaning tMeaning;           // what the command asks; for a tour step, go to a preset
    int32_t nPanSpeed;             // in the protocol's units; a proportional move: magnitude 0-63
    int32_t nTiltSpeed;
    int32_t nZoomSpeed;            // zoom rows of drivers with a zoom scale
    uint32_t nNumber;              // preset, pattern or tour number; a tour step's preset
    const PTZCode* ptStopped;      // a stop row: the row of the action it ends, if listed
    PTZChannelState* ptState;      // for drivers that keep private state in the channel
};

using PTZWriteFn = void (*)(PTZFrames& out, uint32_t nAddress, const PTZCode& c, const PTZArgs& x);

// ConvertSpeed's arguments for one axis, and the speeds of the two ramp steps of a level-0 move.
struct PTZSpeedScale {
    int32_t nZero;
    uint32_t nMin;
    int32_t nMax;
    int32_t nRampMiddle;
    int32_t nRampTop;
};

// What a code the table does not list does to nLastCmd.
enum class PTZUnlisted : uint8_t { Remember, Forget };

// What a tour step of a tour of 0 presets does: nothing is sent either way.
enum class PTZEmptyTour : uint8_t { Disarm, StayArmed };

struct PTZDriver {
    std::span<const PTZCode> atCodes;
    PTZWriteFn write;
    PTZSpeedScale tPan;
    PTZSpeedScale tTilt;
    PTZSpeedScale tZoom = {};                // all zero: the protocol has no zoom speed
    uint32_t dwRampMask = kPTZMoveMask;      // codes whose level 0 arms the speed ramp
    int32_t nRefreshMs = 0;                  // re-send held moves, zoom and focus this often; 0 never
    PTZEmptyTour eEmptyTour = PTZEmptyTour::Disarm;
    PTZUnlisted eUnlisted = PTZUnlisted::Remember;
    std::span<const PTZCode> atShared = {};  // rows a family of drivers shares, after atCodes
};

// The speed scale of the Pelco-D command set, which most makes copy: 4 for level 0, 1-63, ramped
// to 24 and 56.
constexpr PTZSpeedScale kPTZPelcoSpeeds = {4, 1, 63, 24, 56};

int32_t PTZBuild(const PTZDriver& tDriver, uint32_t nAddress, PTZPacket* atPacket,
                 PTZChannelState* ptState);
int32_t PTZStatus(const PTZDriver& tDriver, uint32_t nAddress, PTZPacket* atPacket,
                  PTZChannelState* ptState);

// The row of nCmd in the driver's tables: its own row, else a stop row for a stop, else null.
const PTZCode* PTZFindCode(const PTZDriver& tDriver, uint32_t nCmd);

// True when every code of the mask has a row that builds a frame, which the status routine needs
// to ramp them; each ramping driver checks its tables with it at compile time.
constexpr bool PTZCovers(std::span<const PTZCode> atCodes, uint32_t dwMask,
                         std::span<const PTZCode> atShared = {}) {
    for (uint32_t nCode = 0; nCode < 32; ++nCode) {
        if (!PTZCodeIn(dwMask, nCode)) continue;
        bool bFound = false;
        for (std::span<const PTZCode> at : {atCodes, atShared})
            for (const PTZCode& c : at)
                bFound = bFound || (c.nCode == nCode && (c.eOp == PTZOp::Move || c.eOp == PTZOp::Held));
        if (!bFound) return false;
    }
    return true;
}
