// dvrsim: the recorder simulator. Plays the recorder's main application and monitor for one
// ptz_cntl process inside the test sandbox, and shows readably what crosses the mailboxes and the
// serial lines.
//
//   tools/sandbox.sh build/dvrsim [--script FILE] [--binary PATH]
//
// Commands come from the script or, without one, from standard input; `help` lists them.
#include <poll.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "tools/sim/sandbox_guard.h"
#include "tools/sim/session.h"

namespace {

const SimCommand* const kTables[] = {CoreSimCommands(), KeypadSimCommands(), PosSimCommands()};

void Help() {
    std::puts("commands (one a line; # starts a comment):");
    for (const SimCommand* t : kTables)
        for (; t->sName; ++t) std::printf("  %-6s %s\n", t->sName, t->sUsage);
    std::puts("  help   this list\n  quit   end the session");
}

// Runs one command line; false ends the session.
bool Run(SimSession& sim, const std::string& line) {
    std::istringstream in(line);
    SimArgs a;
    for (std::string w; in >> w;) {
        if (w[0] == '#') break;
        a.push_back(w);
    }
    if (a.empty()) return true;
    if (a[0] == "quit" || a[0] == "exit") return false;
    if (a[0] == "help") {
        Help();
        return true;
    }
    for (const SimCommand* t : kTables)
        for (; t->sName; ++t)
            if (a[0] == t->sName) {
                t->Run(sim, a);
                sim.Pump(0);
                return true;
            }
    std::fprintf(stderr, "unknown command '%s' (try help)\n", a[0].c_str());
    return true;
}
}  // namespace

int main(int argc, char** argv) {
    RequireSandbox(argv[0]);
    std::string script, binary;
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--script") && i + 1 < argc) script = argv[++i];
        else if (!std::strcmp(argv[i], "--binary") && i + 1 < argc) binary = argv[++i];
        else {
            std::fprintf(stderr, "usage: %s [--script FILE] [--binary PATH]\n", argv[0]);
            return 2;
        }
    }
    SimSession sim;
    if (!binary.empty()) sim.binary = binary;
    if (!sim.rec.Ok()) {
        std::fprintf(stderr, "dvrsim: cannot create the recorder's IPC objects\n");
        return 1;
    }
    if (!script.empty()) {
        std::ifstream f(script);
        if (!f) {
            std::fprintf(stderr, "dvrsim: cannot read %s\n", script.c_str());
            return 2;
        }
        for (std::string line; std::getline(f, line);)
            if (!Run(sim, line)) break;
    } else {
        // Interactive: keep showing events while waiting for the next command.
        for (std::string line;;) {
            struct pollfd p = {0, POLLIN, 0};
            if (poll(&p, 1, 20) > 0) {
                if (!std::getline(std::cin, line) || !Run(sim, line)) break;
            } else {
                sim.Pump(0);
            }
        }
    }
    sim.Pump(50);
    return 0;
}
