#include "tools/sim/ptz_line.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace {

// A noise run this long is shown without waiting for the frame that ends it.
constexpr size_t kNoiseRunMax = 256;
// The shortest first part of a frame that is told from noise.
constexpr size_t kCutMin = 2;

constexpr int kRankGood = 2, kRankUnchecked = 1, kRankBad = 0;

}  // namespace

// --- PtzSplitter ---------------------------------------------------------------------------------

PtzSplitter::PtzSplitter(std::vector<const PtzProtocol*> atProtocols)
    : m_atProtocols(std::move(atProtocols)), m_aabLastGood(m_atProtocols.size()) {}

PtzSplitter::Reading PtzSplitter::BestAt(size_t nPos) const {
    Reading best;
    for (const PtzProtocol* p : m_atProtocols) {
        PtzFrameText t;
        if (!PtzDecode(*p, m_ab.data() + nPos, m_ab.size() - nPos, &t)) continue;
        const int nRank = t.bBadCheck ? kRankBad : p->bChecked ? kRankGood : kRankUnchecked;
        if (nRank > best.nRank) best = {p, std::move(t), nRank};
    }
    return best;
}

void PtzSplitter::Feed(const uint8_t* bytes, size_t n, std::vector<PtzPiece>* out) {
    m_ab.insert(m_ab.end(), bytes, bytes + n);
    Split(false, out);
}

void PtzSplitter::Flush(std::vector<PtzPiece>* out) {
    Split(true, out);
    EmitNoise(out);
}

void PtzSplitter::Split(bool bFinal, std::vector<PtzPiece>* out) {
    size_t nPos = 0;
    auto toNoise = [&](size_t n) {
        if (m_abNoise.empty()) m_nNoiseOffset = m_nOffset + nPos;
        m_abNoise.insert(m_abNoise.end(), m_ab.begin() + static_cast<long>(nPos),
                         m_ab.begin() + static_cast<long>(nPos + n));
        nPos += n;
    };
    while (nPos < m_ab.size()) {
        const size_t nAvail = m_ab.size() - nPos;
        Reading r = BestAt(nPos);
        if (r.nRank < 0) {
            // More bytes may still make a frame of these; past a whole frame's length they cannot.
            if (!bFinal && nAvail < static_cast<size_t>(kPTZFrameMax)) break;
            toNoise(1);
            if (m_abNoise.size() >= kNoiseRunMax) EmitNoise(out);
            continue;
        }
        const size_t nLength = r.tText.nLength;
        // Another protocol may yet read a longer frame here, better or as well and listed first.
        const bool bAlone = m_atProtocols.size() == 1 && r.nRank != kRankBad;
        if (!bFinal && !bAlone && nAvail < static_cast<size_t>(kPTZFrameMax)) break;
        if (r.nRank == kRankBad) {
            // Wait until any frame starting inside this one would be complete.
            if (!bFinal && nAvail < nLength + kPTZFrameMax) break;
            size_t k = 1;
            while (k < nLength && BestAt(nPos + k).nRank != kRankGood) ++k;
            if (k < nLength) {
                toNoise(k);
                continue;
            }
        }
        EmitNoise(out);
        std::vector<uint8_t> ab(m_ab.begin() + static_cast<long>(nPos),
                                m_ab.begin() + static_cast<long>(nPos + nLength));
        if (r.nRank != kRankBad) {
            const auto it = std::find(m_atProtocols.begin(), m_atProtocols.end(), r.ptProtocol);
            m_aabLastGood[static_cast<size_t>(it - m_atProtocols.begin())] = ab;
        }
        out->push_back({PtzPieceKind::Frame, m_nOffset + nPos, std::move(ab), r.ptProtocol,
                        std::move(r.tText)});
        nPos += nLength;
    }
    m_ab.erase(m_ab.begin(), m_ab.begin() + static_cast<long>(nPos));
    m_nOffset += nPos;
}

// A noise run may end with the first part of a frame whose rest never came: a protocol reads it
// as the start of a frame when the rest of a frame it has read before is put after it.
void PtzSplitter::EmitNoise(std::vector<PtzPiece>* out) {
    if (m_abNoise.empty()) return;
    const size_t n = m_abNoise.size();
    size_t nCut = n;
    const PtzProtocol* ptCut = nullptr;
    const size_t nFirst = n > static_cast<size_t>(kPTZFrameMax) ? n - kPTZFrameMax : 0;
    for (size_t s = nFirst; s + kCutMin <= n && ptCut == nullptr; ++s) {
        for (size_t i = 0; i < m_atProtocols.size() && ptCut == nullptr; ++i) {
            const std::vector<uint8_t>& abDone = m_aabLastGood[i];
            const size_t nPart = n - s;
            if (abDone.size() <= nPart) continue;
            std::vector<uint8_t> ab(m_abNoise.begin() + static_cast<long>(s), m_abNoise.end());
            ab.insert(ab.end(), abDone.begin() + static_cast<long>(nPart), abDone.end());
            PtzFrameText t;
            if (PtzDecode(*m_atProtocols[i], ab.data(), ab.size(), &t) && t.nLength > nPart) {
                ptCut = m_atProtocols[i];
                nCut = s;
            }
        }
    }
    const auto itCut = m_abNoise.begin() + static_cast<long>(nCut);
    if (nCut > 0)
        out->push_back({PtzPieceKind::Noise, m_nNoiseOffset, {m_abNoise.begin(), itCut}, nullptr,
                        {}});
    if (ptCut != nullptr)
        out->push_back({PtzPieceKind::Cut, m_nNoiseOffset + nCut, {itCut, m_abNoise.end()}, ptCut,
                        {}});
    m_abNoise.clear();
}

// --- PtzGuesser ----------------------------------------------------------------------------------

PtzGuesser::PtzGuesser() {
    for (const PtzProtocol& p : PtzProtocols()) {
        m_atSplitters.emplace_back(std::vector<const PtzProtocol*>{&p});
        m_atScores.push_back({&p});
    }
}

void PtzGuesser::Count(size_t i, const std::vector<PtzPiece>& pieces) {
    PtzProtocolScore& s = m_atScores[i];
    for (const PtzPiece& p : pieces) {
        if (p.eKind != PtzPieceKind::Frame) continue;
        ++s.nFrames;
        if (p.tText.bBadCheck) ++s.nBadFrames;
        else s.nGoodBytes += p.abData.size();
    }
}

void PtzGuesser::Feed(const uint8_t* bytes, size_t n) {
    m_nBytes += n;
    for (size_t i = 0; i < m_atSplitters.size(); ++i) {
        std::vector<PtzPiece> pieces;
        m_atSplitters[i].Feed(bytes, n, &pieces);
        Count(i, pieces);
    }
}

void PtzGuesser::Flush() {
    for (size_t i = 0; i < m_atSplitters.size(); ++i) {
        std::vector<PtzPiece> pieces;
        m_atSplitters[i].Flush(&pieces);
        Count(i, pieces);
    }
}

std::vector<PtzProtocolScore> PtzGuesser::Ranking() const {
    std::vector<PtzProtocolScore> out;
    for (PtzProtocolScore s : m_atScores) {
        if (s.nGoodBytes == 0 || m_nBytes == 0) continue;
        s.dShare = static_cast<double>(s.nGoodBytes) / static_cast<double>(m_nBytes);
        s.dScore = s.ptProtocol->bChecked ? s.dShare : s.dShare / 2;
        out.push_back(s);
    }
    auto better = [](const PtzProtocolScore& a, const PtzProtocolScore& b) {
        return a.dScore > b.dScore;
    };
    std::stable_sort(out.begin(), out.end(), better);
    return out;
}

std::vector<PtzProtocolScore> RankPtzProtocols(const uint8_t* bytes, size_t n) {
    PtzGuesser g;
    g.Feed(bytes, n);
    g.Flush();
    return g.Ranking();
}

// --- Hex text ------------------------------------------------------------------------------------

bool ParseHexText(const std::string& sText, std::vector<uint8_t>* pOut, std::string* sError) {
    std::vector<uint8_t> ab;
    std::vector<uint8_t>* out = &ab;
    auto isHex = [](char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; };
    auto isGap = [](char c) {
        return std::isspace(static_cast<unsigned char>(c)) != 0 || c == ',';
    };
    auto value = [](char c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; };
    size_t nLine = 1;
    for (size_t i = 0; i < sText.size();) {
        const char c = sText[i];
        if (c == '#') {
            while (i < sText.size() && sText[i] != '\n') ++i;
            continue;
        }
        if (isGap(c)) {
            nLine += c == '\n';
            ++i;
            continue;
        }
        size_t j = i;
        while (j < sText.size() && !isGap(sText[j]) && sText[j] != '#') ++j;
        const std::string sToken = sText.substr(i, j - i);
        std::string sDigits = sToken;
        if (sDigits.size() > 2 && sDigits[0] == '0' && (sDigits[1] == 'x' || sDigits[1] == 'X'))
            sDigits = sDigits.substr(2);
        const bool bHex = std::all_of(sDigits.begin(), sDigits.end(), isHex);
        if (!bHex || (sDigits.size() > 1 && sDigits.size() % 2 != 0)) {
            *sError = std::string(bHex ? "odd number of hex digits in \"" : "bad hex \"") + sToken +
                      "\" on line " + std::to_string(nLine);
            return false;
        }
        if (sDigits.size() == 1) out->push_back(static_cast<uint8_t>(value(sDigits[0])));
        for (size_t k = 0; k + 1 < sDigits.size(); k += 2)
            out->push_back(static_cast<uint8_t>(value(sDigits[k]) * 16 + value(sDigits[k + 1])));
        i = j;
    }
    pOut->insert(pOut->end(), ab.begin(), ab.end());
    return true;
}

// --- The simulator's view ----------------------------------------------------------------------

std::string PtzFrame::Describe() const {
    if (!ptProtocol) return "(not a frame of a configured protocol)";
    std::string s = std::string(ptProtocol->sName) + " addr " + std::to_string(tText.nAddress) +
                    ": " + tText.sWords;
    if (tText.bBadCheck) s += " [BAD CHECK]";
    return s;
}

std::vector<PtzFrame> SplitPtzFrames(const SerialChunk& chunk, const ShareBlock& share) {
    std::vector<const PtzProtocol*> candidates;
    const uint32_t nChannels = share.nChannels < kMaxChannels ? share.nChannels : kMaxChannels;
    for (uint32_t ch = 0; ch < nChannels; ++ch) {
        const PtzProtocol* p = ProtocolOfModel(share.atPtz[ch].nPtzModel);
        if (p && std::find(candidates.begin(), candidates.end(), p) == candidates.end())
            candidates.push_back(p);
    }
    PtzSplitter splitter(candidates);
    std::vector<PtzPiece> pieces;
    splitter.Feed(chunk.abData.data(), chunk.abData.size(), &pieces);
    splitter.Flush(&pieces);
    std::vector<PtzFrame> out;
    for (PtzPiece& p : pieces) {
        // Noise and cut frames alike are bytes no configured protocol reads.
        PtzFrame f{chunk.tSeconds, std::move(p.abData), chunk.sSetting, nullptr, {}};
        if (p.eKind == PtzPieceKind::Frame) {
            f.ptProtocol = p.ptProtocol;
            f.tText = std::move(p.tText);
        }
        out.push_back(std::move(f));
    }
    return out;
}
