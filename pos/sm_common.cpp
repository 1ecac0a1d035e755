// Record line, line copy, splitting and number reading shared by the record builders.
#include "pos/sm_common.h"

#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <cstring>

uint32_t PosRecordPrintf(char* psRecord, uint32_t dwTime, const char* format, ...) {
    std::memset(psRecord, 0, kPosRecordSize);
    va_list args;
    va_start(args, format);
    std::vsnprintf(psRecord, kPosRecordLimit, format, args);
    va_end(args);
    return dwTime;
}

int PosCopyLine(char* psLine, const char* psText, int nLength, int nMax) {
    int n = 0;
    const int nLimit = nLength < nMax ? nLength : nMax;
    while (n < nLimit && psText[n] != '\0') {
        psLine[n] = psText[n];
        ++n;
    }
    psLine[n] = '\0';
    return n;
}

bool PosCutAtNewline(char* psLine) {
    char* p = std::strchr(psLine, '\n');
    if (p == nullptr) return false;
    *p = '\0';
    return true;
}

int PosSplit(char* psLine, char cSep, char** apField, int nCount) {
    int nFound = 0;
    char* p = psLine;
    apField[0] = p;
    for (int i = 1; i < nCount; ++i) {
        char* q = std::strchr(p, cSep);
        if (q != nullptr) {
            *q = '\0';
            p = q + 1;
            ++nFound;
        } else {
            p += std::strlen(p);
        }
        apField[i] = p;
    }
    return nFound;
}

int32_t PosDecimal(const char* s, const char** ppEnd) {
    while (std::isspace(static_cast<unsigned char>(*s))) ++s;
    bool bNegative = false;
    if (*s == '+' || *s == '-') bNegative = (*s++ == '-');
    if (!std::isdigit(static_cast<unsigned char>(*s))) {
        if (ppEnd != nullptr) *ppEnd = nullptr;
        return 0;
    }
    int64_t n = 0;
    for (; std::isdigit(static_cast<unsigned char>(*s)); ++s) {
        if (n <= INT32_MAX) n = n * 10 + (*s - '0');
    }
    if (ppEnd != nullptr) *ppEnd = s;
    if (bNegative) return n > INT32_MAX ? INT32_MIN : static_cast<int32_t>(-n);
    return n > INT32_MAX ? INT32_MAX : static_cast<int32_t>(n);
}
