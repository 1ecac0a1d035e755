// Speed and digit helpers, the meaning of the command codes, the check-byte rules and the bounded
// frame writer shared by every PTZ protocol driver.
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

bool PTZElapsedMs(uint32_t since, int32_t ms) {
    return TickReached(get_jiffies(), since + static_cast<uint32_t>(MsToTicks(ms)));
}

// --- Meaning of the codes ----------------------------------------------------------------------

namespace {

using A = PTZAction;

constexpr PTZMeaning Act(A eAction, int8_t nLens = 0) { return {eAction, 0, 0, nLens, false, 0}; }
constexpr PTZMeaning Go(int8_t nPan, int8_t nTilt) { return {A::Move, nPan, nTilt, 0, false, 0}; }
constexpr PTZMeaning Switch(A eAction, bool bOn, uint8_t nIndex = 0) {
    return {eAction, 0, 0, 0, bOn, nIndex};
}

// Codes 0-31 and 64-95 with the start of each action; their partners 32 above stop or switch off.
constexpr PTZMeaning Starting(uint32_t nCmd) {
    switch (nCmd) {
    case PTZCmd_AutoPan: return Switch(A::AutoPan, true);
    case PTZCmd_FocusNear: return Act(A::Focus, -1);
    case PTZCmd_FocusFar: return Act(A::Focus, +1);
    case PTZCmd_ZoomWide: return Act(A::Zoom, -1);
    case PTZCmd_ZoomTele: return Act(A::Zoom, +1);
    case PTZCmd_UpLeft: return Go(-1, +1);
    case PTZCmd_Up: return Go(0, +1);
    case PTZCmd_UpRight: return Go(+1, +1);
    case PTZCmd_Left: return Go(-1, 0);
    case PTZCmd_CameraOn: return Switch(A::CameraPower, true);
    case PTZCmd_Right: return Go(+1, 0);
    case PTZCmd_DownLeft: return Go(-1, -1);
    case PTZCmd_Down: return Go(0, -1);
    case PTZCmd_DownRight: return Go(+1, -1);
    case PTZCmd_PresetSet: return Act(A::PresetSet);
    case PTZCmd_PresetTour: return Act(A::Tour);
    case PTZCmd_IrisOpen: return Act(A::Iris, +1);
    case PTZCmd_IrisClose: return Act(A::Iris, -1);
    case PTZCmd_IrisAuto: return Switch(A::IrisAuto, true);
    case PTZCmd_FocusAuto: return Switch(A::FocusAuto, true);
    case PTZCmd_MenuOn: return Switch(A::Menu, true);
    case PTZCmd_MenuEnter: return Act(A::MenuEnter);
    case PTZCmd_RunPattern: return Act(A::Pattern);
    case PTZCmd_PresetGo: return Act(A::PresetGo);
    case PTZCmd_Joystick: return Act(A::Move);
    case PTZCmd_ExtRun: return Act(A::ExtRun);
    default: break;
    }
    if (nCmd >= PTZCmd_AuxOn1 && nCmd <= PTZCmd_AuxOn6)
        return Switch(A::Aux, true, static_cast<uint8_t>(nCmd - PTZCmd_AuxOn1 + 1));
    return Act(A::None);
}

int8_t Axis(uint32_t nValue, uint32_t nMagnitudeMask, int8_t nWithBit7) {
    if ((nValue & nMagnitudeMask) == 0) return 0;
    return (nValue & 0x80) ? nWithBit7 : static_cast<int8_t>(-nWithBit7);
}

}  // namespace

PTZMeaning PTZMeaningOf(uint32_t nCmd, uint32_t p1, uint32_t p2, uint32_t p3) {
    if (nCmd == PTZCmd_Joystick) {
        const PTZMeaning t = {A::Move, Axis(p1, 0x3F, -1), Axis(p2, 0x3F, +1), Axis(p3, 0x7F, +1),
                              false, 0};
        // Without pan or tilt it is a zoom, or, with nothing moving, a stop.
        if (t.nPan == 0 && t.nTilt == 0) return t.nLens != 0 ? Act(A::Zoom, t.nLens) : Act(A::Stop);
        return t;
    }
    if (nCmd >= 128) return Act(A::None);
    const bool bPartner = (nCmd & 0x20) != 0;
    PTZMeaning t = Starting(nCmd & ~0x20u);
    if (!bPartner) return t;
    switch (t.eAction) {
    case A::Move:
    case A::Zoom:
    case A::Focus:
    case A::Iris:
        return Act(A::Stop);
    case A::AutoPan:
    case A::CameraPower:
    case A::IrisAuto:
    case A::FocusAuto:
    case A::Menu:
    case A::Aux:
        t.bOn = false;
        return t;
    case A::PresetSet:
        return Act(A::PresetClear);
    case A::Tour:
        return Act(A::TourStop);
    default:
        return Act(A::None);
    }
}

bool PTZIsStop(uint32_t nCmd) {
    return nCmd < 128 && (nCmd & 0x20) != 0 && PTZMeaningOf(nCmd).eAction == A::Stop;
}

// --- Check bytes and the frame writer ----------------------------------------------------------

uint8_t PTZCheckOf(PTZCheck eCheck, const uint8_t* ab, uint32_t nFrom, uint32_t nTo) {
    uint8_t ySum = 0, yXor = 0;
    for (uint32_t i = nFrom; i < nTo; ++i) {
        ySum = static_cast<uint8_t>(ySum + ab[i]);
        yXor = static_cast<uint8_t>(yXor ^ ab[i]);
    }
    switch (eCheck) {
    case PTZCheck::Sum8: return ySum;
    case PTZCheck::Xor: return yXor;
    case PTZCheck::Sum7: return static_cast<uint8_t>(ySum & 0x7F);
    case PTZCheck::Complement: return static_cast<uint8_t>(0xFF - ySum);
    case PTZCheck::Negate: return static_cast<uint8_t>(0 - ySum);
    }
    return 0;
}

void PTZFrames::Close() {
    if (!m_bOpen) return;
    m_bOpen = false;
    if (m_bSpoilt) m_atPacket[m_nDone].nLength = 0;
    else ++m_nDone;
}

PTZFrames& PTZFrames::Start() {
    Close();
    if (m_nDone < kPTZPacketsPerCall) {
        m_bOpen = true;
        m_bSpoilt = false;
        m_atPacket[m_nDone].nLength = 0;
    }
    return *this;
}

PTZFrames& PTZFrames::Put(uint32_t y) {
    if (!m_bOpen) return *this;
    PTZPacket& p = m_atPacket[m_nDone];
    if (p.nLength >= kPTZFrameMax) {
        m_bSpoilt = true;
        return *this;
    }
    p.abData[p.nLength++] = static_cast<uint8_t>(y);
    return *this;
}

PTZFrames& PTZFrames::Text(const char* s) {
    for (; s != nullptr && *s != '\0'; ++s) Put(static_cast<uint8_t>(*s));
    return *this;
}

PTZFrames& PTZFrames::Dec(uint32_t nValue, int nDigits) {
    for (int i = nDigits - 1; i >= 0; --i) Put(static_cast<uint8_t>(INT2BCD(nValue, i)));
    return *this;
}

PTZFrames& PTZFrames::Hex(uint32_t nValue, int nDigits) {
    for (int i = nDigits - 1; i >= 0; --i)
        Put(static_cast<uint8_t>(INT2CHAR(static_cast<int32_t>(nValue), static_cast<uint32_t>(i))));
    return *this;
}

PTZFrames& PTZFrames::Check(PTZCheck eCheck, uint32_t nFrom, uint32_t nSkipTail, uint8_t yFlip) {
    if (!m_bOpen) return *this;
    const PTZPacket& p = m_atPacket[m_nDone];
    const uint32_t nTo = p.nLength > nSkipTail ? p.nLength - nSkipTail : 0;
    return Put(PTZCheckOf(eCheck, p.abData, nFrom, nTo) ^ yFlip);
}

PTZFrames& PTZFrames::CheckHex(PTZCheck eCheck, uint32_t nFrom) {
    if (!m_bOpen) return *this;
    const PTZPacket& p = m_atPacket[m_nDone];
    return Hex(PTZCheckOf(eCheck, p.abData, nFrom, p.nLength), 2);
}

uint32_t PTZFrames::Length() const { return m_bOpen ? m_atPacket[m_nDone].nLength : 0; }

int32_t PTZFrames::Count() {
    Close();
    return m_nDone;
}
