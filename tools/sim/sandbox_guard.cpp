#include "tools/sim/sandbox_guard.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cstdio>
#include <cstdlib>
#include <initializer_list>

namespace {
// The sandbox's devpts instance numbers its terminals under major 136..143; a real serial port
// (major 4) must never be seen at the fixed paths.
bool IsRealSerial(const char* path) {
    struct stat st;
    if (stat(path, &st) != 0) return false;
    if (!S_ISCHR(st.st_mode)) return false;
    unsigned m = major(st.st_rdev);
    return !(m >= 136 && m <= 143);
}
}  // namespace

bool InSandbox() {
    struct stat st;
    if (stat("/dev/.ptz-sandbox", &st) != 0) return false;
    for (const char* p : {"/dev/ttyS0", "/dev/ttyS1", "/dev/ttyS4"})
        if (IsRealSerial(p)) return false;
    return true;
}

void RequireSandbox(const char* program) {
    if (InSandbox()) return;
    std::fprintf(stderr,
                 "%s: refusing to run outside the test sandbox (the serial device paths of this "
                 "machine are real). Run it as: tools/sandbox.sh %s ...\n",
                 program, program);
    std::exit(2);
}
