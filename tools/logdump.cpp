// logdump: prints recorder event-log files as a table, times in local time.
//
//   logdump FILE...            the records of each file
//   logdump -s BASE            a rotating series, oldest first: BASE.9 .. BASE.1, BASE
//   logdump -d DIR             every daily log file of DIR, oldest first
//   logdump --recorder         the recorder's own logs: -d /mnt/pos -s /mnt/doc/mdvr.log
//                              -s /mnt/doc/key.log
//
// Options and files may be mixed and repeated; sources are printed in the order given. Offline
// copies are read as they are. The recorder's live directories (/mnt/pos, /mnt/doc) are read only
// inside the test sandbox, and then under the log semaphore, as the recorder's writers use it.
// Exit status: 0 all sources read, 1 a source could not be read, 2 usage or refusal.
#include <limits.h>
#include <stdlib.h>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include "lib/log/log.h"
#include "lib/log/log_reader.h"
#include "tools/sim/log_view.h"
#include "tools/sim/sandbox_guard.h"

namespace {

enum class Kind { File, Series, Daily };

struct Source {
    Kind kind;
    std::string path;
};

void Usage() {
    std::fprintf(stderr,
                 "usage: logdump [FILE | -s BASE | -d DIR | --recorder]...\n"
                 "  FILE        print one log file\n"
                 "  -s BASE     print a rotating series: BASE.9 .. BASE.1, BASE\n"
                 "  -d DIR      print every daily log file of DIR by date\n"
                 "  --recorder  the recorder's own logs (inside the test sandbox only)\n");
}

bool UnderDir(const std::string& path, const char* dir) {
    size_t n = std::strlen(dir);
    return path.compare(0, n, dir) == 0 && (path.size() == n || path[n] == '/');
}

// The directory a source reads from, resolved as far as it exists.
std::string ResolvedDir(const Source& source) {
    std::string dir = source.path;
    if (source.kind != Kind::Daily) {
        size_t slash = dir.rfind('/');
        dir = slash == std::string::npos ? "." : (slash == 0 ? "/" : dir.substr(0, slash));
    }
    char resolved[PATH_MAX];
    return realpath(dir.c_str(), resolved) ? std::string(resolved) : dir;
}

bool IsRecorderSource(const Source& source) {
    std::string dir = ResolvedDir(source);
    return UnderDir(dir, kLogDiskDir) || UnderDir(dir, kLogDocDir);
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<Source> sources;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if ((arg == "-s" || arg == "-d") && i + 1 < argc) {
            sources.push_back({arg == "-s" ? Kind::Series : Kind::Daily, argv[++i]});
        } else if (arg == "--recorder") {
            sources.push_back({Kind::Daily, kLogDiskDir});
            sources.push_back({Kind::Series, kLogDocFile});
            sources.push_back({Kind::Series, kLogKeyFile});
        } else if (!arg.empty() && arg[0] != '-') {
            sources.push_back({Kind::File, arg});
        } else {
            Usage();
            return 2;
        }
    }
    if (sources.empty()) {
        Usage();
        return 2;
    }

    std::vector<bool> live;
    for (const Source& source : sources) {
        live.push_back(IsRecorderSource(source));
        if (live.back()) RequireSandbox(argv[0]);
    }

    int status = 0;
    PrintLogHeader();
    for (size_t i = 0; i < sources.size(); ++i) {
        LogSearchList list{};
        const char* path = sources[i].path.c_str();
        uint32_t rc = sources[i].kind == Kind::File     ? LogReadFile(path, live[i], &list)
                      : sources[i].kind == Kind::Series ? LogReadSeries(path, live[i], &list)
                                                        : LogReadDaily(path, live[i], &list);
        if (rc != 0) {
            std::fprintf(stderr, "logdump: cannot read %s\n", path);
            status = 1;
        }
        for (uint32_t k = 0; k < list.nCount; ++k) PrintLogItem(list.ptItem[k]);
        LogReadAck(&list);
    }
    return status;
}
