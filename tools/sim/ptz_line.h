// Splits the bytes seen on the PTZ line into frames, names them by camera protocols, and tells
// which protocol a capture speaks. Shared by the simulator (dvrsim), the system tests and the wire
// decoder (ptzdecode).
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "core/share_block.h"
#include "tools/sim/ptz_decode.h"
#include "tools/sim/serial_line.h"

// --- Splitting a byte stream -------------------------------------------------------------------

enum class PtzPieceKind : uint8_t {
    Frame,    // a frame of a protocol, with a good check or not (tText.bBadCheck)
    Noise,    // bytes no protocol reads
    Cut,      // the first part of a frame whose rest never came (ptProtocol: the protocol)
};

struct PtzPiece {
    PtzPieceKind eKind;
    uint64_t nOffset;                 // stream offset of its first byte
    std::vector<uint8_t> abData;
    const PtzProtocol* ptProtocol;    // null for noise
    PtzFrameText tText;               // frames only
};

// Splits a stream of line bytes, arriving in pieces of any size, into frames of the given
// protocols, noise and cut frames, the same however the bytes are cut into pieces. A frame's first
// part is kept until the rest arrives. No frame is longer than 32 bytes: bytes are judged as noise
// once a frame could no longer start at them, and, with more than one protocol, a frame is taken
// once no other could still claim its bytes. Where protocols disagree, a frame with a good check
// byte wins over one without a check byte, which wins over one with a bad check, and the first
// protocol listed over the others; a frame with a bad check gives way to a good frame that starts
// inside it (it was noise before a frame).
class PtzSplitter {
public:
    explicit PtzSplitter(std::vector<const PtzProtocol*> atProtocols);

    // Adds bytes and appends to out the pieces they complete, in stream order.
    void Feed(const uint8_t* bytes, size_t n, std::vector<PtzPiece>* out);
    // The stream has ended or gone quiet: what is kept is judged as it stands.
    void Flush(std::vector<PtzPiece>* out);
    // Bytes kept, not yet judged.
    size_t Pending() const { return m_ab.size() + m_abNoise.size(); }

private:
    struct Reading {
        const PtzProtocol* ptProtocol = nullptr;
        PtzFrameText tText;
        int nRank = -1;   // 2 good check, 1 no check byte, 0 bad check; -1 nothing
    };
    Reading BestAt(size_t nPos) const;
    void Split(bool bFinal, std::vector<PtzPiece>* out);
    void EmitNoise(std::vector<PtzPiece>* out);

    std::vector<const PtzProtocol*> m_atProtocols;
    std::vector<std::vector<uint8_t>> m_aabLastGood;   // per protocol: its last good frame
    std::vector<uint8_t> m_ab;                         // bytes not yet judged
    uint64_t m_nOffset = 0;                            // stream offset of m_ab[0]
    std::vector<uint8_t> m_abNoise;                    // the noise run before m_ab
    uint64_t m_nNoiseOffset = 0;
};

// --- Which protocol speaks -----------------------------------------------------------------------

struct PtzProtocolScore {
    const PtzProtocol* ptProtocol;
    uint64_t nGoodBytes = 0;   // bytes in frames with a good check (no check byte: in frames)
    uint64_t nFrames = 0;
    uint64_t nBadFrames = 0;   // frames with a bad check
    double dShare = 0;         // nGoodBytes of all bytes
    double dScore = 0;         // what the ranking goes by
};

// Reads a stream with every protocol at once, each on its own, to tell which one speaks it.
class PtzGuesser {
public:
    PtzGuesser();
    void Feed(const uint8_t* bytes, size_t n);
    void Flush();
    // The protocols that read some bytes in good frames, best first: by the share of all bytes
    // they explain in good frames, where frames without a check byte count half (their shape is all
    // that was checked). Equal scores keep the registry's order.
    std::vector<PtzProtocolScore> Ranking() const;

private:
    void Count(size_t i, const std::vector<PtzPiece>& pieces);
    std::vector<PtzSplitter> m_atSplitters;
    std::vector<PtzProtocolScore> m_atScores;
    uint64_t m_nBytes = 0;
};

std::vector<PtzProtocolScore> RankPtzProtocols(const uint8_t* bytes, size_t n);

// --- Hex text ------------------------------------------------------------------------------------

// Bytes written as hex text, as they are pasted from a terminal: separated by blanks, commas or
// line breaks or not separated at all ("FF 01", "0xff,0x01", "FF01"), a lone digit being one byte;
// '#' starts a comment to the end of the line. Appends them to out; on anything else leaves
// out as it was and gives a one-line reason.
bool ParseHexText(const std::string& sText, std::vector<uint8_t>* out, std::string* sError);

// --- The simulator's view of the line ----------------------------------------------------------

struct PtzFrame {
    double tSeconds;
    std::vector<uint8_t> abData;
    std::string sSetting;          // line setting when it was read
    const PtzProtocol* ptProtocol; // null: not recognised
    PtzFrameText tText;
    std::string Describe() const;  // "Pelco-D addr 1: pan left 63" (+ " [BAD CHECK]")
};

// Frames in one chunk, trying the protocols of the channels' configured models.
std::vector<PtzFrame> SplitPtzFrames(const SerialChunk& chunk, const ShareBlock& share);
