// What every PTZ protocol driver shares: the abstract command codes and what each one asks of a
// camera, the frame slot, the per-channel state, the options record, the speed and digit helpers,
// the check-byte rules and the bounded frame writer.
#pragma once
#include <cstdint>

// Codes 0-31 start an action or switch a feature on; code + 32 stops it. 64-95 and 96-127 likewise.
enum PTZCmd : uint32_t {
    PTZCmd_AutoPan = 0,       PTZCmd_AutoPanOff = 32,
    PTZCmd_Ext1 = 1,          PTZCmd_Ext1Stop = 33,
    PTZCmd_Ext2 = 2,          PTZCmd_Ext2Stop = 34,
    PTZCmd_FocusNear = 3,     PTZCmd_FocusNearStop = 35,
    PTZCmd_Ext4 = 4,          PTZCmd_Ext4Stop = 36,
    PTZCmd_FocusFar = 5,      PTZCmd_FocusFarStop = 37,
    PTZCmd_Ext6 = 6,          PTZCmd_Ext6Stop = 38,
    PTZCmd_Ext8 = 8,          PTZCmd_Ext8Stop = 40,
    PTZCmd_ZoomWide = 9,      PTZCmd_ZoomWideStop = 41,
    PTZCmd_Ext10 = 10,        PTZCmd_Ext10Stop = 42,
    PTZCmd_ZoomTele = 11,     PTZCmd_ZoomTeleStop = 43,
    PTZCmd_UpLeft = 12,       PTZCmd_UpLeftStop = 44,
    PTZCmd_Up = 13,           PTZCmd_UpStop = 45,
    PTZCmd_UpRight = 14,      PTZCmd_UpRightStop = 46,
    PTZCmd_Left = 15,         PTZCmd_LeftStop = 47,
    PTZCmd_CameraOn = 16,     PTZCmd_CameraOff = 48,
    PTZCmd_Right = 17,        PTZCmd_RightStop = 49,
    PTZCmd_DownLeft = 18,     PTZCmd_DownLeftStop = 50,
    PTZCmd_Down = 19,         PTZCmd_DownStop = 51,
    PTZCmd_DownRight = 20,    PTZCmd_DownRightStop = 52,
    PTZCmd_PresetSet = 21,    PTZCmd_PresetClear = 53,
    PTZCmd_PresetTour = 22,   PTZCmd_PresetTourStop = 54,
    PTZCmd_IrisOpen = 27,     PTZCmd_IrisOpenStop = 59,
    PTZCmd_IrisClose = 28,    PTZCmd_IrisCloseStop = 60,
    PTZCmd_IrisAuto = 29,     PTZCmd_IrisAutoOff = 61,
    PTZCmd_FocusAuto = 64,    PTZCmd_FocusAutoOff = 96,
    PTZCmd_AuxOn1 = 65,       PTZCmd_AuxOff1 = 97,
    PTZCmd_AuxOn2 = 66,       PTZCmd_AuxOff2 = 98,
    PTZCmd_AuxOn3 = 67,       PTZCmd_AuxOff3 = 99,
    PTZCmd_AuxOn4 = 68,       PTZCmd_AuxOff4 = 100,
    PTZCmd_AuxOn5 = 69,       PTZCmd_AuxOff5 = 101,
    PTZCmd_AuxOn6 = 70,       PTZCmd_AuxOff6 = 102,
    PTZCmd_MenuOn = 72,       PTZCmd_MenuOff = 104,
    PTZCmd_MenuEnter = 73,
    PTZCmd_RunPattern = 74,
    PTZCmd_PresetGo = 80,
    PTZCmd_Joystick = 81,     PTZCmd_JoystickStop = 113,
    PTZCmd_ExtRun = 90,
};

constexpr uint32_t kPTZCmdNone = 255;       // nLastCmd: nothing in force, anything may be sent
constexpr int kPTZFrameMax = 32;            // bytes in one frame slot
constexpr int kPTZPacketsPerCall = 4;       // frames one driver call may yield

// Masks of command codes (bit n = code n).
constexpr uint32_t kPTZMoveMask = 0x1EF000;       // the eight moves 12-15, 17-20
constexpr uint32_t kPTZMoveZoomMask = 0x1EFA00;   // the moves and zoom wide/tele (AutoDome)
constexpr bool PTZCodeIn(uint32_t mask, uint32_t code) { return code < 32 && ((mask >> code) & 1u); }

// --- What a command asks of a camera -----------------------------------------------------------

// The common meaning of a command code, whatever the protocol. Drivers place speeds by it and
// refresh held actions by it; the wire decoders report frames in the same terms.
enum class PTZAction : uint8_t {
    None,           // no common meaning: model-specific keys and undefined codes
    Stop,           // ends a held move, zoom, focus or iris action
    Move,           // pan and tilt (a proportional move may zoom too)
    Zoom,           // held; nLens +1 tele, -1 wide
    Focus,          // held; nLens +1 far, -1 near
    Iris,           // nLens +1 open, -1 close
    AutoPan,        // switches (bOn)
    CameraPower,
    IrisAuto,
    FocusAuto,
    Menu,
    MenuEnter,
    Aux,            // auxiliary output nIndex (1-6), bOn
    PresetSet,      // numbered: the number travels as the command's parameter
    PresetClear,
    PresetGo,
    Pattern,        // run a stored pattern
    PatternRecord,  // bOn: start / end recording a pattern (a camera convention, no code of its own)
    Tour,           // the driver's own preset tour
    TourStop,
    ExtRun,
};

struct PTZMeaning {
    PTZAction eAction = PTZAction::None;
    int8_t nPan = 0;      // +1 right, -1 left
    int8_t nTilt = 0;     // +1 up, -1 down
    int8_t nLens = 0;     // zoom, focus or iris direction (a proportional move: zoom)
    bool bOn = false;     // switches
    uint8_t nIndex = 0;   // auxiliary output
    friend bool operator==(const PTZMeaning&, const PTZMeaning&) = default;
};

// What nCmd asks for. A proportional move takes its directions from p1 (pan), p2 (tilt) and p3
// (zoom): bit 7 set = left / up / tele, a zero magnitude = that axis stands still; without pan and
// tilt it is a zoom, or a stop.
PTZMeaning PTZMeaningOf(uint32_t nCmd, uint32_t p1 = 0, uint32_t p2 = 0, uint32_t p3 = 0);

// True for the codes that stop a held move, zoom, focus, iris or proportional move.
bool PTZIsStop(uint32_t nCmd);

// --- Frames and check bytes --------------------------------------------------------------------

// One frame to send.
struct PTZPacket {
    uint32_t nLength;               // valid bytes in abData
    uint32_t nModel;                // model that built it; written by the core, never by a driver
    uint8_t abData[kPTZFrameMax];
};
static_assert(sizeof(PTZPacket) == 40);

// The check-byte rules of the protocols, each written once.
enum class PTZCheck : uint8_t {
    Sum8,         // 8-bit sum
    Xor,          // XOR
    Sum7,         // sum masked to 7 bits
    Complement,   // 0xFF minus the 8-bit sum
    Negate,       // 0 minus the 8-bit sum
};

// The check of bytes [nFrom, nTo) of ab.
uint8_t PTZCheckOf(PTZCheck eCheck, const uint8_t* ab, uint32_t nFrom, uint32_t nTo);

// Writes the frames of one driver call into the core's 4 slots, byte by byte. Nothing is ever
// written past a slot: a frame that would outgrow its 32 bytes is dropped whole, and a fifth frame
// goes nowhere. Each frame starts with Start() and may end with a finisher that appends its check.
class PTZFrames {
public:
    explicit PTZFrames(PTZPacket* atPacket) : m_atPacket(atPacket) {}

    PTZFrames& Start();
    PTZFrames& Put(uint32_t y);                   // one byte, the low 8 bits of y
    PTZFrames& Text(const char* s);               // the characters of s
    PTZFrames& Dec(uint32_t nValue, int nDigits); // decimal digits, most significant first
    PTZFrames& Hex(uint32_t nValue, int nDigits); // upper-case hexadecimal digits, likewise

    // Finishers: append the check of the current frame's bytes from nFrom up to its end less
    // nSkipTail bytes, as one byte (with the bits of yFlip inverted, for a protocol that seeds its
    // check) or as two upper-case hexadecimal characters.
    PTZFrames& Check(PTZCheck eCheck, uint32_t nFrom, uint32_t nSkipTail = 0, uint8_t yFlip = 0);
    PTZFrames& CheckHex(PTZCheck eCheck, uint32_t nFrom);

    uint32_t Length() const;          // bytes of the current frame so far
    int32_t Count();                  // complete frames, the current one included

private:
    void Close();
    PTZPacket* m_atPacket;
    int32_t m_nDone = 0;       // frames complete and kept
    bool m_bOpen = false;      // a frame is being written in slot m_nDone
    bool m_bSpoilt = false;    // ... and has outgrown its slot: it will be dropped
};

// --- Per-channel state and driver interface ----------------------------------------------------

// Per-channel command and driver state. The core owns it; drivers read the command fields and the
// clocks and write bStatusActive .. nRampStep.
struct PTZChannelState {
    uint32_t nCmd;
    int32_t nParam1;
    uint32_t nParam2;
    uint32_t nParam3;
    uint32_t nParam4;
    uint32_t nSource;
    uint32_t nPrevCmd;
    int32_t nPrevParam1;
    uint32_t nPrevParam2;
    uint32_t nPrevParam3;
    uint32_t nPrevParam4;
    uint32_t nPrevSource;
    uint32_t tCmdClock;        // jiffies of the last frame-producing command
    uint32_t tStatusClock;     // ... or of the last status call that produced frames
    uint8_t bStatusActive;     // driver wants its status routine polled
    uint32_t nLastCmd;         // last accepted code, kPTZCmdNone = none
    uint32_t dwReserved1;      // private state of drivers without their own fields
    uint32_t nTourCount;
    uint32_t nTourIndex;
    uint32_t nIrisLevel;       // Canon VC-C4 iris level
    uint32_t nRampStep;        // 0, 1, 2: how far the ramp of a level-0 move has gone
    uint32_t adwReserved[4];
};
static_assert(sizeof(PTZChannelState) == 100);

// Driver options: least gap between two frames and the capability word published to the recorder.
struct PTZCntlOpt {
    uint32_t nMinGapMs;
    uint32_t dwCaps;           // bit 0: accepts PTZCmd_Joystick
};
constexpr uint32_t kPTZCapJoystick = 0x1;

using PTZBuildCmdFn = int32_t (*)(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState,
                                  uint32_t nParam2);
using PTZCheckStatusFn = int32_t (*)(uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* ptState);

// Level 0 -> nZero, 1 -> nMin, 8 -> nMax, L between: nMin + (L-1)(nMax-nMin)/8. Not clamped above 8.
int32_t ConvertSpeed(uint32_t nLevel, int32_t nZero, uint32_t nMin, int32_t nMax);
// ASCII of decimal digit nDigit of nValue (0 = units).
char INT2BCD(uint32_t nValue, int32_t nDigit);
// ASCII of hexadecimal digit nNibble of nValue, upper case.
char INT2CHAR(int32_t nValue, uint32_t nNibble);

// Timing of the status plan: the ramp of a level-0 move steps up this long after the move's frame;
// a preset tour dwells this long on each preset.
constexpr int32_t kPTZRampMiddleMs = 300;
constexpr int32_t kPTZRampTopMs = 800;
constexpr int32_t kPTZTourDwellMs = 3000;

// True once ms milliseconds have passed since the tick time `since` (signed difference).
bool PTZElapsedMs(uint32_t since, int32_t ms);
