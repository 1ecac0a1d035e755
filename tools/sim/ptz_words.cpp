// The one place where a decoded frame becomes words.
#include <cstdio>

#include "tools/sim/ptz_decode.h"

namespace {

using A = PTZAction;

void Append(std::string* s, const std::string& w) {
    if (w.empty()) return;
    if (!s->empty()) *s += ' ';
    *s += w;
}

std::string WithNumber(const char* sWords, int32_t n) {
    return n >= 0 ? std::string(sWords) + " " + std::to_string(n) : sWords;
}

std::string OnOff(const char* sWhat, bool bOn) { return std::string(sWhat) + (bOn ? " on" : " off"); }

// Pan, tilt and (for a proportional move) zoom. Two axes at one speed read as the diagonal
// "move up left 16"; at two speeds each axis has its own.
std::string MoveWords(const PTZMeaning& m, int32_t nPan, int32_t nTilt) {
    const char* sPan = m.nPan < 0 ? "left" : m.nPan > 0 ? "right" : nullptr;
    const char* sTilt = m.nTilt > 0 ? "up" : m.nTilt < 0 ? "down" : nullptr;
    std::string s;
    if (sPan && sTilt && nPan == nTilt) {
        s = WithNumber((std::string("move ") + sTilt + " " + sPan).c_str(), nPan);
    } else if (sPan && sTilt) {
        s = "move " + WithNumber(sTilt, nTilt) + " " + WithNumber(sPan, nPan);
    } else if (sPan) {
        s = WithNumber((std::string("pan ") + sPan).c_str(), nPan);
    } else if (sTilt) {
        s = WithNumber((std::string("tilt ") + sTilt).c_str(), nTilt);
    }
    if (m.nLens != 0) Append(&s, m.nLens > 0 ? "zoom tele" : "zoom wide");
    return s.empty() ? "move" : s;
}

std::string Lens(const char* sWhat, int8_t nLens, const char* sPlus, const char* sMinus) {
    if (nLens == 0) return sWhat;
    return std::string(sWhat) + " " + (nLens > 0 ? sPlus : sMinus);
}

std::string MeaningWords(const PTZMeaning& m, const PtzFrameText& t) {
    switch (m.eAction) {
    case A::None: return "";
    case A::Stop: return "stop";
    case A::Move: return MoveWords(m, t.nPanSpeed, t.nTiltSpeed);
    case A::Zoom: {
        std::string s = Lens("zoom", m.nLens, "tele", "wide");
        if (t.nZoomSpeed >= 0) s += " speed " + std::to_string(t.nZoomSpeed);
        return s;
    }
    case A::Focus: return Lens("focus", m.nLens, "far", "near");
    case A::Iris: return Lens("iris", m.nLens, "open", "close");
    case A::AutoPan: return OnOff("auto pan", m.bOn);
    case A::CameraPower: return OnOff("camera", m.bOn);
    case A::IrisAuto: return OnOff("auto iris", m.bOn);
    case A::FocusAuto: return OnOff("auto focus", m.bOn);
    case A::Menu: return OnOff("menu", m.bOn);
    case A::MenuEnter: return "menu enter";
    case A::Aux: return OnOff(("aux " + std::to_string(m.nIndex)).c_str(), m.bOn);
    case A::PresetSet: return WithNumber("set preset", t.nNumber);
    case A::PresetClear: return WithNumber("clear preset", t.nNumber);
    case A::PresetGo: return WithNumber("go to preset", t.nNumber);
    case A::Pattern: return WithNumber("run pattern", t.nNumber);
    case A::PatternRecord: return m.bOn ? "record pattern start" : "record pattern end";
    case A::Tour: return WithNumber("tour", t.nNumber);
    case A::TourStop: return "tour stop";
    case A::ExtRun: return WithNumber("run", t.nNumber);
    }
    return "";
}

}  // namespace

std::string PtzWords(const PtzFrameText& t) {
    std::string s = MeaningWords(t.tWhat, t);
    if (t.tAlso.eAction != A::None) {
        // The convention's words carry no number of their own: "set preset 95 (menu on)".
        PtzFrameText tBare = t;
        tBare.nNumber = -1;
        s += " (" + MeaningWords(t.tAlso, tBare) + ")";
    }
    Append(&s, t.sNote);
    return s.empty() ? "(no command)" : s;
}

bool PtzDecode(const PtzProtocol& tProtocol, const uint8_t* bytes, size_t n, PtzFrameText* out) {
    if (bytes == nullptr || out == nullptr || n == 0) return false;
    *out = PtzFrameText{};
    if (!tProtocol.Decode(bytes, n, out) || out->nLength == 0 || out->nLength > n) return false;
    out->sWords = PtzWords(*out);
    return true;
}
