// APER Chomguard security controller: binary packets with checksums, reassembled across reads.
//
//   offset  width    content (multi-byte numbers big-endian; L = length of the data block)
//   0       4        start pattern 00 43 47 86
//   4       1        first number of the record
//   5       2        L
//   7       2        start of the data block, not used
//   9       2        third number of the record (5 digits)
//   11      1        second number of the record
//   12      L - 5    event text (end of the data block)
//   7 + L   1        data checksum: sum of bytes 7 .. 6 + L, modulo 256
//   8 + L   1        transport checksum: sum of bytes 0 .. 7 + L, modulo 256
//   9 + L   1        end marker FF
//   record  APER|sec.hh|byte 4|byte 11|u16 at 9|TEXT (upper case)|#
#include <cctype>
#include <cstdio>
#include <cstring>

#include "pos/pos_model.h"
#include "pos/sm_common.h"

constexpr struct termios TermSet_APER_Chomguard = PosTermSet(IGNCR, ICANON, 0xFF);
constexpr char POSName_APER_Chomguard[] = "APER, Chomguard";
constexpr DPRCSet DPRCSet_APER_Chomguard = {4, {
    {"TIME", 128, 3, 2, 0, 85, 1},
    {"CH", 32, 1, 2, 87, 45, 2},
    {"CODE", 80, 1, 2, 134, 75, 32},
    {"DATA", 134, 4, 1, 211, 313, 4},
}};

namespace {
constexpr int kSBufSize = 256;
constexpr uint8_t kStart[4] = {0x00, 0x43, 0x47, 0x86};
constexpr int kOverhead = 10;     // packet bytes besides the data block's L
constexpr int kTextOffset = 12;
constexpr int kTextHeader = 5;    // data-block bytes before the text
constexpr uint8_t kEndMarker = 0xFF;

// Reassembly buffer. Bytes at and beyond nSBufSize are always zero, so that a short packet whose
// fields reach past its end reads zeros, never stale bytes.
uint8_t pySBuf[kSBufSize];
int nSBufSize = 0;

// Removes the first n bytes (n <= nSBufSize) and moves the rest to the front.
void Consume(int n) {
    std::memmove(pySBuf, pySBuf + n, static_cast<size_t>(nSBufSize - n));
    std::memset(pySBuf + nSBufSize - n, 0, static_cast<size_t>(n));
    nSBufSize -= n;
}

// The buffer never holds more than 256 bytes: what does not fit pushes the oldest bytes out, so a
// packet announced longer than the buffer (or endless noise) cannot block the line for good.
void Append(const uint8_t* pyData, int nCount) {
    if (nCount > kSBufSize) {
        pyData += nCount - kSBufSize;
        nCount = kSBufSize;
    }
    if (nSBufSize + nCount > kSBufSize) Consume(nSBufSize + nCount - kSBufSize);
    std::memcpy(pySBuf + nSBufSize, pyData, static_cast<size_t>(nCount));
    nSBufSize += nCount;
}

int FindStart() {
    for (int k = 0; k + 4 <= nSBufSize; ++k) {
        if (std::memcmp(pySBuf + k, kStart, 4) == 0) return k;
    }
    return -1;
}

uint8_t Sum(int nFrom, int nTo) {
    uint32_t s = 0;
    for (int i = nFrom; i <= nTo; ++i) s += pySBuf[i];
    return static_cast<uint8_t>(s);
}

// A packet with L < 5 has no text; its fields past the packet's end read as zeros.
uint32_t WriteRecord(char* psRecord, int nL) {
    char sText[kPosLineMax + 1] = {};
    int nText = nL - kTextHeader;
    if (nText > kPosLineMax) nText = kPosLineMax;
    for (int i = 0; i < nText; ++i) sText[i] = static_cast<char>(std::toupper(pySBuf[kTextOffset + i]));
    const WallTime t = GetWallTime();
    PosRecordPrintf(psRecord, t.dwTime, "APER|%d.%02d|%d|%d|%05d|%s|#\n", PosSeconds(t),
                    PosHundredths(t), pySBuf[4], pySBuf[11], (pySBuf[9] << 8) | pySBuf[10], sText);
    std::fprintf(stderr, "POSDBG : %s", psRecord);
    return t.dwTime;
}
}  // namespace

uint32_t ProcCmd_APER_Chomguard(char* psRecord, const char* psText, int nLength) {
    if (nLength > 0) Append(reinterpret_cast<const uint8_t*>(psText), nLength);

    const int k = FindStart();
    if (k > 0) {
        Consume(k);
        std::fprintf(stderr, "POSDBG : delete first %d data\n", k);
    }
    if (k < 0) {
        std::fprintf(stderr, "POSDBG : STX & APER group number detection fail (%02x %02x %02x %02x)\n",
                     pySBuf[0], pySBuf[1], pySBuf[2], pySBuf[3]);
        return 0;
    }
    const int nL = (pySBuf[5] << 8) | pySBuf[6];
    const int nPacket = nL + kOverhead;
    if (nSBufSize < nPacket) {
        std::fprintf(stderr, "POSDBG : Need more data in buffer\n");
        return 0;
    }

    uint32_t dwTime = 0;
    const uint8_t yEnd = pySBuf[9 + nL];
    const uint8_t yData = pySBuf[7 + nL];
    const uint8_t yTransport = pySBuf[8 + nL];
    if (yEnd != kEndMarker) {
        std::fprintf(stderr, "POSDBG : End of data(%02x) is not 0xff\n", yEnd);
    } else if (const uint8_t yDataSum = Sum(7, 6 + nL); yDataSum != yData) {
        std::fprintf(stderr, "POSDBG : Data payload checksum mismatch (s=%02x / d=%02x)\n", yData, yDataSum);
    } else if (const uint8_t yTransportSum = Sum(0, 7 + nL); yTransportSum != yTransport) {
        std::fprintf(stderr, "POSDBG : Transport packet checksum mismatch (s=%02x / d=%02x)\n",
                     yTransport, yTransportSum);
    } else {
        dwTime = WriteRecord(psRecord, nL);
    }
    // Everything behind the packet moves up, not only L + 10 bytes of it: a longer rest (a bigger
    // packet following a small one) would otherwise be cut apart.
    Consume(nPacket);
    return dwTime;
}
