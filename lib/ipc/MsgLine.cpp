// Error and information lines on standard error. Formatted on the stack (the PTZ, keypad and KTT
// paths report through here and allocate nothing) and written with one call, so that a line
// reaches the recorder's log in one piece.
#include "lib/ipc/MsgLine.h"

#include <cstdarg>
#include <cstdio>

namespace {
constexpr int kTagWidth = 10;

void Emit(const char* prefix, const char* format, va_list args) {
    char text[512];
    va_list again;
    va_copy(again, args);
    const int n = std::vsnprintf(text, sizeof text, format, args);
    if (n >= 0 && n < static_cast<int>(sizeof text)) {
        std::fprintf(stderr, "%s%s\n", prefix, text);
    } else {   // a text longer than the buffer (a long command, say) goes out in pieces
        flockfile(stderr);
        std::fputs(prefix, stderr);
        std::vfprintf(stderr, format, again);
        std::fputc('\n', stderr);
        funlockfile(stderr);
    }
    va_end(again);
}
}  // namespace

void ErrLine(const MsgSource& source, int nLine, const char* format, ...) {
    char prefix[96];
    std::snprintf(prefix, sizeof prefix, "Err (%-*s/%s:%d) ", kTagWidth, source.sModule, source.sFile, nLine);
    va_list args;
    va_start(args, format);
    Emit(prefix, format, args);
    va_end(args);
}

void InfoLine(const MsgSource& source, const char* format, ...) {
    char prefix[32];
    std::snprintf(prefix, sizeof prefix, "Info(%-*s) ", kTagWidth, source.sModule);
    va_list args;
    va_start(args, format);
    Emit(prefix, format, args);
    va_end(args);
}
