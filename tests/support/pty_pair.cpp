#include "tests/support/pty_pair.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

PtyPair::PtyPair() {
    master = posix_openpt(O_RDWR | O_NOCTTY);
    if (master < 0) return;
    grantpt(master);
    unlockpt(master);
    slave = open(ptsname(master), O_RDWR | O_NOCTTY);
    struct termios t;
    if (slave >= 0 && tcgetattr(slave, &t) == 0) {
        cfmakeraw(&t);
        tcsetattr(slave, TCSANOW, &t);
    }
}

PtyPair::~PtyPair() {
    if (slave >= 0) close(slave);
    if (master >= 0) close(master);
}

std::vector<uint8_t> PtyPair::Drain(int timeout_ms) const {
    std::vector<uint8_t> out;
    struct pollfd p = {master, POLLIN, 0};
    while (poll(&p, 1, timeout_ms) > 0 && (p.revents & POLLIN)) {
        uint8_t buf[256];
        ssize_t n = read(master, buf, sizeof buf);
        if (n <= 0) break;
        out.insert(out.end(), buf, buf + n);
    }
    return out;
}
