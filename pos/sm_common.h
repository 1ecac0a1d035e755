// What the text-insertion record builders share: the time columns, the record line, the line
// copy and splitting, number reading, and the serial line settings.
#pragma once
#include <termios.h>
#include <cstdint>

#include "lib/ipc/Clock.h"

constexpr int kPosRecordSize = 128;   // one record of the daily file
constexpr int kPosRecordLimit = 127;  // print limit of a record line: at most 126 characters
constexpr int kPosLineMax = 128;      // characters a builder takes from its input

// The time columns of a record line, from a reading of the wall clock (GetWallTime).
inline int PosSeconds(const WallTime& t) { return static_cast<int>(t.dwTime); }
inline int PosHundredths(const WallTime& t) { return static_cast<int>(t.nMillitm / 10); }

// Zero-fills the 128-byte record and prints one record line into it ("TAG|%d.%02d|...|#\n",
// seconds and hundredths first). Returns dwTime.
uint32_t PosRecordPrintf(char* psRecord, uint32_t dwTime, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

// Copies at most nMax characters of the input (never more than nLength bytes, stopping at a NUL)
// into psLine, which holds nMax + 1 bytes, and terminates it. Returns the length copied.
int PosCopyLine(char* psLine, const char* psText, int nLength, int nMax);

// Cuts the text at its first newline. False when there is none.
bool PosCutAtNewline(char* psLine);

// Splits psLine at its first nCount - 1 separators, replacing each by a NUL. Fields for which no
// separator was found are empty strings (the terminating NUL of the line). Returns the number of
// separators found.
int PosSplit(char* psLine, char cSep, char** apField, int nCount);

// Reads a decimal number as atoi does (leading white space, a sign, digits), saturating at the
// 32-bit range. No digits gives 0 and, when ppEnd is given, *ppEnd = null; otherwise *ppEnd
// points after the digits.
int32_t PosDecimal(const char* s, const char** ppEnd = nullptr);

// The line settings of the serial models: 9600 baud, 8N1, receiver on, modem lines ignored,
// no output processing; input flags, local flags and line-end characters per model.
constexpr struct termios PosTermSet(tcflag_t dwIFlag, tcflag_t dwLFlag, cc_t yEol, cc_t yStart = 0,
                                    cc_t yStop = 0, cc_t yLnext = 0) {
    struct termios t{};
    t.c_iflag = dwIFlag;
    t.c_cflag = B9600 | CS8 | CREAD | CLOCAL;
    t.c_lflag = dwLFlag;
    t.c_cc[VEOL] = yEol;
    t.c_cc[VSTART] = yStart;
    t.c_cc[VSTOP] = yStop;
    t.c_cc[VLNEXT] = yLnext;
    return t;
}

// --- AVE line rules, shared by VSI-Pro and Hydra (sm_AVE_VSIPro.cpp) ---------------------------

struct AveLine {
    const char* sType;    // ADD, ITEM, BILL, TIME, CLERK, ERR1, ERR2
    const char* sText;
    const char* sValue;
};
// Classifies one line (cut at its first newline; false when it has none). Points into psLine,
// which it may cut.
bool AveClassifyLine(char* psLine, AveLine* ptLine);
