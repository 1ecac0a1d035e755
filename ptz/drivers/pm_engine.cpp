// The table-driven builder and status routine behind every camera driver.
#include "ptz/drivers/pm_engine.h"

namespace {

bool InRange(uint32_t n, uint32_t nMax) { return n >= 1 && n <= nMax; }

int32_t Speed(const PTZSpeedScale& t, uint32_t nLevel) {
    return ConvertSpeed(nLevel, t.nZero, t.nMin, t.nMax);
}

bool HasZoomSpeed(const PTZDriver& d) { return d.tZoom.nMax != 0; }

// Held actions a camera that stops by itself must be reminded of.
bool Refreshable(const PTZMeaning& t) {
    return t.eAction == PTZAction::Move || t.eAction == PTZAction::Zoom ||
           t.eAction == PTZAction::Focus;
}

bool HeldRow(const PTZCode* c) {
    return c != nullptr && (c->eOp == PTZOp::Held || c->eOp == PTZOp::Move);
}

// The arguments of a command's row, with its speeds at the given level.
PTZArgs ArgsAt(const PTZDriver& d, PTZWhy eWhy, uint32_t nCmd, uint32_t nLevel, uint32_t p2,
               uint32_t p3, PTZChannelState* ptState) {
    PTZArgs x{eWhy, PTZMeaningOf(nCmd, nLevel, p2, p3), 0, 0, 0, 0, nullptr, ptState};
    if (nCmd == PTZCmd_Joystick) {
        x.nPanSpeed = static_cast<int32_t>(nLevel & 0x3F);
        x.nTiltSpeed = static_cast<int32_t>(p2 & 0x3F);
        return x;
    }
    x.nPanSpeed = Speed(d.tPan, nLevel);
    x.nTiltSpeed = Speed(d.tTilt, nLevel);
    if (HasZoomSpeed(d)) x.nZoomSpeed = Speed(d.tZoom, nLevel);
    return x;
}

// A ramp step's speeds in place of the level's.
void AtRampStep(const PTZDriver& d, uint32_t nStep, PTZArgs* x) {
    if (nStep == 0) return;
    x->nPanSpeed = nStep == 1 ? d.tPan.nRampMiddle : d.tPan.nRampTop;
    x->nTiltSpeed = nStep == 1 ? d.tTilt.nRampMiddle : d.tTilt.nRampTop;
    x->nZoomSpeed = nStep == 1 ? d.tZoom.nRampMiddle : d.tZoom.nRampTop;
}

int32_t Write(const PTZDriver& d, uint32_t nAddress, PTZPacket* atPacket, const PTZCode& c,
              const PTZArgs& x) {
    PTZFrames out(atPacket);
    d.write(out, nAddress, c, x);
    return out.Count();
}

// The preset of the due tour step; nTourIndex moves on cyclically. nTourCount is not 0.
uint32_t TourAdvance(PTZChannelState* s) {
    const uint32_t nPreset = s->nTourIndex % s->nTourCount + 1;
    s->nTourIndex = nPreset % s->nTourCount;
    return nPreset;
}

}  // namespace

const PTZCode* PTZFindCode(const PTZDriver& d, uint32_t nCmd) {
    const PTZCode* ptAnyStop = nullptr;
    for (std::span<const PTZCode> at : {d.atCodes, d.atShared}) {
        for (const PTZCode& c : at) {
            if (c.nCode == nCmd) return &c;
            if (c.nCode == kPTZAnyStop && ptAnyStop == nullptr) ptAnyStop = &c;
        }
    }
    return PTZIsStop(nCmd) ? ptAnyStop : nullptr;
}

int32_t PTZBuild(const PTZDriver& d, uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* s) {
    const uint32_t nCmd = s->nCmd;
    if (nCmd == s->nLastCmd) return 0;
    if (PTZCodeIn(d.dwRampMask, nCmd) && s->nParam1 == 0) {
        s->bStatusActive = 1;
        s->nRampStep = 0;
    }
    const PTZCode* c = PTZFindCode(d, nCmd);
    if (c == nullptr || c->eOp == PTZOp::Unsupported) {
        s->nLastCmd = c == nullptr && d.eUnlisted == PTZUnlisted::Forget ? kPTZCmdNone : nCmd;
        return 0;
    }
    // Held actions stay in force; everything else, sent or refused, may come again at once.
    const bool bHeld = HeldRow(c);
    s->nLastCmd = bHeld ? nCmd : kPTZCmdNone;

    const uint32_t n = static_cast<uint32_t>(s->nParam1);
    PTZArgs x = ArgsAt(d, PTZWhy::Command, nCmd, n, s->nParam2, s->nParam3, s);
    switch (c->eOp) {
    case PTZOp::Number:
        if (!InRange(n, c->nMax)) return 0;
        x.nNumber = n;
        break;
    case PTZOp::TourStart:
    case PTZOp::TourGo:
        if (c->nMax != 0 && !InRange(n, c->nMax)) return 0;
        s->nTourCount = n;
        s->nTourIndex = 0;
        s->bStatusActive = 1;
        if (c->eOp == PTZOp::TourStart) return 0;
        s->nTourIndex = 1;
        x.nNumber = 1;
        break;
    case PTZOp::TourStop:
        s->bStatusActive = 0;
        return 0;
    case PTZOp::Silent:
        return 0;
    case PTZOp::Halt:
        s->bStatusActive = 0;
        break;
    default:
        break;
    }
    if (PTZIsStop(nCmd)) x.ptStopped = PTZFindCode(d, nCmd - 32);

    const int32_t nFrames = Write(d, nAddress, atPacket, *c, x);
    // A camera that stops by itself is reminded of a held action by the status routine. A move
    // given a speed has no ramp to run.
    if (d.nRefreshMs > 0 && bHeld && Refreshable(x.tMeaning) && nFrames > 0) {
        s->bStatusActive = 1;
        if (n != 0) s->nRampStep = 2;
    }
    return nFrames;
}

int32_t PTZStatus(const PTZDriver& d, uint32_t nAddress, PTZPacket* atPacket, PTZChannelState* s) {
    const uint32_t nPrev = s->nPrevCmd;
    const uint32_t nLevel = static_cast<uint32_t>(s->nPrevParam1);
    const PTZCode* c = PTZFindCode(d, nPrev);
    const bool bRamps = PTZCodeIn(d.dwRampMask, nPrev);
    const bool bRefreshes =
        d.nRefreshMs > 0 && HeldRow(c) && Refreshable(PTZMeaningOf(nPrev));
    if (bRamps || bRefreshes) {
        if (c == nullptr) return 0;
        PTZArgs x = ArgsAt(d, PTZWhy::Ramp, nPrev, nLevel, s->nPrevParam2, s->nPrevParam3, s);
        if (bRamps && PTZElapsedMs(s->tCmdClock, kPTZRampTopMs) && s->nRampStep == 1) {
            s->nRampStep = 2;
            AtRampStep(d, 2, &x);
            return Write(d, nAddress, atPacket, *c, x);
        }
        if (bRamps && PTZElapsedMs(s->tCmdClock, kPTZRampMiddleMs) && s->nRampStep == 0) {
            s->nRampStep = 1;
            AtRampStep(d, 1, &x);
            return Write(d, nAddress, atPacket, *c, x);
        }
        if (bRefreshes && PTZElapsedMs(s->tStatusClock, d.nRefreshMs)) {
            // The speed in force: the level's, or where the ramp of a level-0 move has got to.
            x.eWhy = PTZWhy::Refresh;
            if (nLevel == 0 && bRamps) AtRampStep(d, s->nRampStep, &x);
            return Write(d, nAddress, atPacket, *c, x);
        }
        return 0;
    }
    if (nPrev == PTZCmd_PresetTour) {
        if (!PTZElapsedMs(s->tStatusClock, kPTZTourDwellMs)) return 0;
        const PTZCode* ptGo = PTZFindCode(d, PTZCmd_PresetGo);
        // A tour of no presets has nothing to visit; a driver without presets cannot tour.
        if (s->nTourCount == 0 || ptGo == nullptr) {
            if (ptGo == nullptr || d.eEmptyTour == PTZEmptyTour::Disarm) s->bStatusActive = 0;
            return 0;
        }
        // A tour started under another model may count more presets than this driver's own tour
        // takes: it goes on over the presets this one would have toured.
        const PTZCode* ptTour = PTZFindCode(d, PTZCmd_PresetTour);
        if (ptTour != nullptr && ptTour->nMax != 0 && s->nTourCount > ptTour->nMax)
            s->nTourCount = ptTour->nMax;
        PTZArgs x{PTZWhy::TourStep, PTZMeaningOf(PTZCmd_PresetGo), 0, 0, 0, 0, nullptr, s};
        x.nNumber = TourAdvance(s);
        return Write(d, nAddress, atPacket, *ptGo, x);
    }
    s->bStatusActive = 0;
    return 0;
}
