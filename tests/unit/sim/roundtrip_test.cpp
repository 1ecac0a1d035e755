// Every model row, every command code, through the real dispatch: what a driver puts on the wire is
// read back by its protocol's decoder as the command it came from.
#include <array>
#include <set>
#include <string>
#include <vector>

#include "ptz/ptz_model.h"
#include "ptz/ptz_data.h"
#include "tests/unit/drivers/driver_harness.h"
#include "tools/sim/ptz_decode.h"

namespace {

using A = PTZAction;

bool Numbered(A e) {
    return e == A::PresetSet || e == A::PresetClear || e == A::PresetGo || e == A::Pattern;
}

// Whether one frame's reading fits what was asked: the same action, an iris level for an iris
// step, or one axis of a move whose frames each carry an axis. A number read must be the number
// asked, unless the frame says it by a camera convention (set preset 95 for the menu).
bool Fits(const PtzFrameText& t, const PTZMeaning& want, int32_t nAsked) {
    for (const PTZMeaning* pm : {&t.tWhat, &t.tAlso}) {
        const PTZMeaning& m = *pm;
        bool bFits = m == want;
        if (want.eAction == A::Iris && m.eAction == A::Iris && m.nLens == 0) bFits = true;
        if (want.eAction == A::Move && m.eAction == A::Move && m.nLens == want.nLens)
            bFits = (m.nPan == 0 || m.nPan == want.nPan) && (m.nTilt == 0 || m.nTilt == want.nTilt);
        if (!bFits) continue;
        if (pm == &t.tWhat && Numbered(want.eAction) && t.nNumber >= 0 && t.nNumber != nAsked)
            return false;
        return true;
    }
    return false;
}

// Commands a driver deliberately answers with another command's frame, as the recorder's cameras
// have always been driven: Samsung stops on automatic focus off.
struct Stand { uint32_t nModel, nCmd, nAsWhat; };
constexpr Stand kStandIns[] = {
    {4, PTZCmd_FocusAutoOff, PTZCmd_UpStop},
};

uint32_t AsWhat(uint32_t nModel, uint32_t nCmd) {
    for (const Stand& s : kStandIns)
        if (s.nModel == nModel && s.nCmd == nCmd) return s.nAsWhat;
    return nCmd;
}

struct Outcome {
    bool bOk = true;
    std::string sWhy;
    void Fail(const std::string& s) {
        if (bOk) sWhy = s;
        bOk = false;
    }
};

// How one frame reads on its own: whole with the next frame (a copy of itself) behind it, refused
// when cut short, and, where its protocol has a check, no single changed byte unnoticed (the frame
// is refused, reads differently, or is flagged); no other protocol with a check reads it, with a
// good check, as a frame of its own.
void CheckFrameAlone(const PtzProtocol& tOwn, const Bytes& f, Outcome* o) {
    Bytes line = f;
    line.insert(line.end(), f.begin(), f.end());
    PtzFrameText t;
    if (!PtzDecode(tOwn, line.data(), line.size(), &t) || t.nLength != f.size())
        return o->Fail("not whole with a frame behind it");
    for (size_t n = 0; n < f.size(); ++n) {
        PtzFrameText tCut;
        if (PtzDecode(tOwn, f.data(), n, &tCut)) o->Fail("read cut to " + std::to_string(n) + " bytes");
    }
    for (size_t i = 0; tOwn.bChecked && i < f.size(); ++i) {
        for (uint8_t yFlip : {0x01, 0x80}) {
            Bytes g = line;
            g[i] ^= yFlip;
            PtzFrameText tBad;
            if (PtzDecode(tOwn, g.data(), g.size(), &tBad) && !tBad.bBadCheck &&
                tBad.nLength == t.nLength && tBad.nAddress == t.nAddress && tBad.sWords == t.sWords)
                o->Fail("byte " + std::to_string(i) + " changed unnoticed: " + t.sWords);
        }
    }
    for (const PtzProtocol& p : PtzProtocols()) {
        PtzFrameText tOther;
        if (&p != &tOwn && p.bChecked && PtzDecode(p, line.data(), line.size(), &tOther) &&
            !tOther.bBadCheck)
            o->Fail(std::string("also read by ") + p.sName + ": " + tOther.sWords);
    }
}

// The frames of one command, read back by the model's decoder.
Outcome Check(const PtzProtocol& tProtocol, uint32_t nAddress, const Frames& frames,
              uint32_t nCmd, int32_t p1, uint32_t p2, uint32_t p3) {
    Outcome o;
    if (frames.size() > kPTZPacketsPerCall) o.Fail("more than 4 frames");
    PTZMeaning want = PTZMeaningOf(nCmd, static_cast<uint32_t>(p1), p2, p3);
    // A tour's frames, where a driver sends any, go to its first preset; a tour stop's are stops.
    if (want.eAction == A::Tour) {
        want = PTZMeaningOf(PTZCmd_PresetGo);
        p1 = 1;
    }
    if (want.eAction == A::TourStop) want = PTZMeaningOf(PTZCmd_UpStop);
    int8_t nPanSeen = 0, nTiltSeen = 0;
    bool bActed = false;
    for (const Bytes& f : frames) {
        PtzFrameText t;
        if (!PtzDecode(tProtocol, f.data(), f.size(), &t)) {
            o.Fail("not decoded: " + Ascii(std::string(f.begin(), f.end())));
            continue;
        }
        if (t.nLength != f.size()) o.Fail("read as " + std::to_string(t.nLength) + " bytes: " + t.sWords);
        if (t.bBadCheck) o.Fail("bad check: " + t.sWords);
        // Every protocol carries addresses 1-63; beyond, some keep only their decimal digits.
        if (nAddress < 64 && t.nAddress != nAddress && t.nAddress != 0)
            o.Fail("address " + std::to_string(t.nAddress));
        if (t.tWhat.eAction == A::None && t.tAlso.eAction == A::None) continue;   // a setting
        bActed = true;
        if (want.eAction == A::None) continue;   // a model's own key: any command may do
        if (!Fits(t, want, p1)) o.Fail("read as \"" + t.sWords + "\"");
        if (t.tWhat.eAction == A::Move) nPanSeen |= t.tWhat.nPan, nTiltSeen |= t.tWhat.nTilt;
    }
    if (!frames.empty() && !bActed && want.eAction != A::None) o.Fail("only settings sent");
    if (want.eAction == A::Move && bActed && (nPanSeen != want.nPan || nTiltSeen != want.nTilt))
        o.Fail("axes of the move incomplete");
    return o;
}

// Parameters worth trying for a code: speed levels 0-8 and beyond, numbers in and out of every
// driver's range, proportional moves in every direction; a code that takes none gets two tries.
std::vector<std::array<uint32_t, 3>> ParamsFor(uint32_t nCmd) {
    if (nCmd == PTZCmd_Joystick)
        return {{0x90, 0x05, 0}, {0x05, 0x83, 0x81}, {0x3F, 0, 0}, {0, 0xBF, 0}, {0, 0, 0x85},
                {0, 0, 0}, {0xFF, 0xFF, 0xFF}};
    const A e = PTZMeaningOf(nCmd).eAction;
    if (e != A::Move && e != A::Zoom && e != A::Tour && e != A::ExtRun && !Numbered(e))
        return {{0, 0, 0}, {5, 0, 0}};
    std::vector<std::array<uint32_t, 3>> out;
    for (uint32_t p1 : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u, 9u, 32u, 33u, 49u, 50u, 63u, 64u, 99u,
                        100u, 127u, 128u, 192u, 193u, 255u, 256u, 0x7FFFFFFFu, 0xFFFFFFFFu})
        out.push_back({p1, 0, 0});
    return out;
}

}  // namespace

TEST(RoundTrip, EveryModelAndCodeIsReadBackAsItsCommand) {
    int nFrames = 0;
    std::set<Bytes> seen;
    for (uint32_t nModel = 1; nModel < kPTZModelCount; ++nModel) {
        const PtzProtocol* ptProtocol = ProtocolOfModel(nModel);
        ASSERT_NE(ptProtocol, nullptr) << "model " << nModel << " has no decoder";
        for (uint32_t nAddress : {1u, 23u, 254u, 255u}) {
            DriverHarness h(nModel, nAddress);
            std::vector<uint32_t> codes;
            for (uint32_t c = 0; c < 130; ++c) codes.push_back(c);
            for (uint32_t c : {255u, 256u, 0xFFFFFFFFu}) codes.push_back(c);
            for (uint32_t nCmd : codes) {
                for (const auto& p : ParamsFor(nCmd)) {
                    h.Fresh();
                    const Frames f = h.Send(nCmd, static_cast<int32_t>(p[0]), p[1], p[2]);
                    nFrames += static_cast<int>(f.size());
                    Outcome o = Check(*ptProtocol, nAddress, f, AsWhat(nModel, nCmd),
                                      static_cast<int32_t>(p[0]), p[1], p[2]);
                    for (const Bytes& b : f)
                        if (seen.insert(b).second) CheckFrameAlone(*ptProtocol, b, &o);
                    EXPECT_TRUE(o.bOk) << "model " << nModel << " (" << ptProtocol->sName
                                       << ") address " << nAddress << " code " << nCmd << " p "
                                       << p[0] << "/" << p[1] << "/" << p[2] << ": " << o.sWhy;
                }
            }
        }
    }
    EXPECT_GT(nFrames, 1000);
}

namespace {

// What a model's frames say of a tilt: the last tilt speed read (-1: none read), and whether all
// of them read as a tilt up or a setting.
struct TiltRead { int32_t nSpeed = -1; bool bAllUp = true; };
TiltRead ReadTilt(const PtzProtocol& pr, const Frames& frames) {
    TiltRead r;
    for (const Bytes& f : frames) {
        PtzFrameText t;
        if (!PtzDecode(pr, f.data(), f.size(), &t)) r.bAllUp = false;
        if (t.tWhat.eAction == A::None) continue;
        r.bAllUp = r.bAllUp && t.tWhat.eAction == A::Move && t.tWhat.nTilt > 0 && t.tWhat.nPan == 0;
        if (t.nTiltSpeed >= 0) r.nSpeed = t.nTiltSpeed;
    }
    return r;
}

// The presets the frames go to, in order.
std::vector<int32_t> PresetsGone(const PtzProtocol& pr, const Frames& frames) {
    std::vector<int32_t> out;
    for (const Bytes& f : frames) {
        PtzFrameText t;
        if (PtzDecode(pr, f.data(), f.size(), &t) && t.tWhat.eAction == A::PresetGo)
            out.push_back(t.nNumber);
    }
    return out;
}

}  // namespace

// Every model with a status routine ramps a level-0 move in its own frames (where they carry a
// speed, it rises at each step) and steps a preset tour with its own go-to frames, presets 1, 2, 3,
// 1 every 3 s, until the tour's stop. A model without one does neither.
TEST(RoundTrip, StatusRoutinesRampAndTourInTheirOwnFrames) {
    for (uint32_t nModel = 1; nModel < kPTZModelCount; ++nModel) {
        const PtzProtocol& pr = *ProtocolOfModel(nModel);
        const bool bStatus = ptPTZModelDatabase[nModel].CheckStatus != nullptr;
        SCOPED_TRACE(testing::Message() << "model " << nModel << " (" << pr.sName << ")");
        DriverHarness h(nModel, 1);
        const Frames start = h.Send(PTZCmd_Up, 0);
        if (!start.empty()) {
            std::vector<int32_t> speeds = {ReadTilt(pr, start).nSpeed};
            for (int32_t ms : {kPTZRampMiddleMs, kPTZRampTopMs - kPTZRampMiddleMs}) {
                const Frames f = h.RunMs(static_cast<uint32_t>(ms));
                EXPECT_EQ(f.empty(), !bStatus);
                const TiltRead r = ReadTilt(pr, f);
                EXPECT_TRUE(r.bAllUp);
                speeds.push_back(r.nSpeed);
            }
            if (bStatus && speeds[0] >= 0) {
                EXPECT_LT(speeds[0], speeds[1]);
                EXPECT_LT(speeds[1], speeds[2]);
            }
        }
        const bool bPresets = !DriverHarness(nModel, 1).Send(PTZCmd_PresetGo, 2).empty();
        DriverHarness t(nModel, 1);
        Frames tour = t.Send(PTZCmd_PresetTour, 3);
        for (int i = 0; i < 4; ++i)
            for (Bytes& b : t.RunMs(kPTZTourDwellMs)) tour.push_back(b);
        const std::vector<int32_t> gone = PresetsGone(pr, tour);
        if (!bStatus || !bPresets) {
            EXPECT_TRUE(gone.empty());
            continue;
        }
        ASSERT_GE(gone.size(), 4u);
        for (size_t i = 0; i < gone.size(); ++i) EXPECT_EQ(gone[i], static_cast<int32_t>(i % 3) + 1);
        t.Send(PTZCmd_PresetTourStop);
        EXPECT_TRUE(t.RunMs(2 * kPTZTourDwellMs).empty());
    }
}
