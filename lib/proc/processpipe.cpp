// Process and pipe utilities: starting commands, reading their output and lines from descriptors,
// finding and stopping running processes.
#include "lib/proc/processpipe.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include "lib/ipc/MsgLine.h"

namespace {

constexpr MsgSource kSource{kTagProc, "processpipe"};
constexpr int kMaxWords = 32;            // word slots of a split command line
constexpr size_t kPathSize = 1024;       // program path taken from the first word
constexpr size_t kCommandSize = 128;     // formatted commands: 127 characters and the NUL
constexpr size_t kChunk = 1024;          // read size for command output
constexpr int kByteTimeoutMs = 10000;    // read_line2: longest wait for one byte

// Source lines reported by the child side of a start (0 = no such step).
struct ChildLines {
    int nStdin;
    int nStdout;
    int nStderr;
    int nExec;
};

// Pipes for the child's stdin, stdout and stderr: [0] read end, [1] write end, -1 when not open.
struct Pipes {
    int in[2] = {-1, -1};
    int out[2] = {-1, -1};
    int err[2] = {-1, -1};
};

void CloseFd(int& fd) {
    if (fd >= 0) close(fd);
    fd = -1;
}

void ClosePipes(Pipes& p) {
    for (int* ends : {p.in, p.out, p.err}) {
        CloseFd(ends[0]);
        CloseFd(ends[1]);
    }
}

// Opens the child's stdin and stdout pipes, and its stderr pipe when asked. All ends are
// close-on-exec: the child's dup2 copies on 0, 1 and 2 survive its exec, nothing else leaks into
// it (a child holding the write end of another child's stdin would keep it from ever seeing end
// of file).
int OpenPipes(Pipes& p, bool bStderr) {
    for (int* ends : {p.in, p.out, bStderr ? p.err : nullptr}) {
        if (ends == nullptr) continue;
        if (pipe(ends) != 0) {
            ErrLine(kSource, 1276, "pipe error");
            ClosePipes(p);
            return -1;
        }
        fcntl(ends[0], F_SETFD, FD_CLOEXEC);
        fcntl(ends[1], F_SETFD, FD_CLOEXEC);
    }
    return 0;
}

// Child side: connects the open pipes to 0, 1 and 2 and executes the program. A failed exec ends
// the child with status 0.
[[noreturn]] void RunChild(const Pipes& p, const char* path, char* const argv[], const ChildLines& lines) {
    if (p.in[0] >= 0 && dup2(p.in[0], STDIN_FILENO) < 0)
        ErrLine(kSource, lines.nStdin, "dup2 error on stdin");
    if (p.out[1] >= 0 && dup2(p.out[1], STDOUT_FILENO) < 0)
        ErrLine(kSource, lines.nStdout, "dup2 error on stdout");
    if (p.err[1] >= 0 && dup2(p.err[1], STDERR_FILENO) < 0)
        ErrLine(kSource, lines.nStderr, "dup2 error on stderr");
    execv(path, argv);
    ErrLine(kSource, lines.nExec, "execv error");
    _exit(0);
}

pid_t Start(const char* path, char* const argv[], const Pipes& p, const ChildLines& lines) {
    pid_t pid = fork();
    if (pid < 0) {
        ErrLine(kSource, 1278, "fork error");
        return -1;
    }
    if (pid == 0) RunChild(p, path, argv, lines);
    return pid;
}

// Splits cmdline and starts it without a shell; the word array lives only until the fork.
pid_t StartCommand(const char* cmdline, const Pipes& p, const ChildLines& lines) {
    char path[kPathSize];
    char** argv = nullptr;
    if (rebuild_cmdline(cmdline, path, sizeof path, &argv) < 0) return -1;
    pid_t pid = Start(path, argv, p, lines);
    free_cmdline(argv);
    return pid;
}

// Parent side after the fork: closes the child's ends and hands each parent end to its pointer,
// or closes it when the pointer is null.
void Give(int& fd, int* dest) {
    if (dest == nullptr) {
        CloseFd(fd);
        return;
    }
    *dest = fd;
    fd = -1;
}

void HandBack(Pipes& p, int* out_fd, int* in_fd, int* err_fd) {
    CloseFd(p.in[0]);
    CloseFd(p.out[1]);
    CloseFd(p.err[1]);
    Give(p.out[0], out_fd);
    Give(p.in[1], in_fd);
    Give(p.err[0], err_fd);
}

void KillAndReap(pid_t pid) {
    kill(pid, SIGKILL);
    WaitProcess(pid, 0);
}

// Runs pidof for name and calls each (when not null) for every process id it reports. Returns their
// count, or -1 when pidof cannot be started. pidof prints only positive ids; any other word is not a
// process id (and is never handed to kill, where it would name a process group).
int ForEachPid(const char* name, void (*each)(pid_t)) {
    char command[kPathSize];
    std::snprintf(command, sizeof command, "/bin/pidof %s", name);
    int out = -1;
    pid_t pidof = ProcessPipe3(&out, nullptr, nullptr, command);
    if (pidof < 0) return -1;
    int count = 0;
    char chunk[kChunk + 1];
    for (;;) {
        ssize_t got = read(out, chunk, kChunk);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        chunk[got] = '\0';
        char* rest = nullptr;
        for (char* word = strtok_r(chunk, " \t\n", &rest); word; word = strtok_r(nullptr, " \t\n", &rest)) {
            long pid = std::strtol(word, nullptr, 10);
            if (pid <= 0) continue;
            ++count;
            if (each != nullptr) each(static_cast<pid_t>(pid));
        }
    }
    close(out);
    WaitProcess(pidof, 0);
    return count;
}

// Formats a command into a kCommandSize buffer, cutting longer text.
void FormatCommand(char* command, const char* format, va_list args) {
    std::vsnprintf(command, kCommandSize, format, args);
}

// Appends the command's output from buffer on, line by line, until it ends or the write position
// reaches buffer + size (the last line may pass it).
void CollectOutput(FILE* pipe, char* buffer, size_t size) {
    char* const end = buffer + size;
    char* pos = buffer;
    if (size > 0) *pos = '\0';
    char line[kChunk];
    while (pos < end && std::fgets(line, sizeof line, pipe) != nullptr) {
        size_t length = std::strlen(line);
        std::memcpy(pos, line, length + 1);
        pos += length;
    }
}

char Unescape(char c) {
    switch (c) {
        case 't': return '\t';
        case 'n': return '\n';
        case 'b': return '\b';
        default: return c;
    }
}

bool IsTrimmed(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// Reads one line a byte at a time into buffer (NUL-terminated) until a line feed, size - 1 bytes,
// or (when bBackspace) a backspace; the ending byte is kept. Returns the bytes taken; 0 at end of
// file before any byte; -1 on a read error, or on EAGAIN before any byte; -ENOENT when a wait of
// timeout_ms (when positive) for a byte passes without one.
int ReadRaw(int fd, char* buffer, int size, bool bBackspace, int timeout_ms) {
    if (size < 1) return -1;
    int n = 0;
    int result = 0;
    while (n < size - 1) {
        if (timeout_ms > 0) {
            struct pollfd wait = {fd, POLLIN, 0};
            int ready = poll(&wait, 1, timeout_ms);
            if (ready <= 0) {
                result = ready == 0 ? -ENOENT : -1;
                break;
            }
        }
        char c;
        ssize_t got = read(fd, &c, 1);
        if (got == 0) break;
        if (got < 0) {
            if ((errno != EAGAIN && errno != EWOULDBLOCK) || n == 0) result = -1;
            break;
        }
        buffer[n++] = c;
        if (c == '\n' || (bBackspace && c == '\b')) break;
    }
    buffer[n] = '\0';
    return result != 0 ? result : n;
}

// Removes one trailing CR or LF, then one more; returns the new length.
int StripLineEnd(char* buffer, int length) {
    for (int i = 0; i < 2 && length > 0 && (buffer[length - 1] == '\r' || buffer[length - 1] == '\n'); ++i)
        buffer[--length] = '\0';
    return length;
}

}  // namespace

int CheckProcessArgument(int argc, char** argv) {
    if (argc > 1) return 0;
    ErrLine(kSource, 1021, "\"%s\" process must be executed by monitor process.",
            argc > 0 && argv != nullptr && argv[0] != nullptr ? argv[0] : "");
    return 1;
}

int GetProcessRunningCount(const char* name) { return ForEachPid(name, nullptr); }

int CheckProcessOverlap(const char* name) {
    int count = GetProcessRunningCount(name);
    if (count < 2) return 0;
    ErrLine(kSource, 1005, "Already Running \"%s\" Process. (%d)", name, count);
    return 1;
}

// A pidof that cannot be started counts as nothing running.
int IsProcessRunning(const char* name) { return ForEachPid(name, nullptr) > 0 ? 1 : 0; }

int ForceKillProcess(const char* name) { return ForEachPid(name, KillAndReap) < 0 ? 1 : 0; }

int system_printf(const char* format, ...) {
    char command[kCommandSize];
    va_list args;
    va_start(args, format);
    FormatCommand(command, format, args);
    va_end(args);
    InfoLine(kSource, "CMD> %s", command);
    return std::system(command);
}

int ProcessRunFmt(const char* format, ...) {
    char command[kCommandSize];
    va_list args;
    va_start(args, format);
    FormatCommand(command, format, args);
    va_end(args);
    InfoLine(kSource, "RUN> %s", command);
    return ProcessRun(command);
}

int ProcessRun(const char* cmdline) {
    pid_t pid = StartCommand(cmdline, Pipes{}, ChildLines{0, 0, 0, 288});
    if (pid < 0) return -1;
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

pid_t ProcessPipe3(int* out_fd, int* in_fd, int* err_fd, const char* cmdline) {
    Pipes p;
    if (OpenPipes(p, true) != 0) return -1;
    pid_t pid = StartCommand(cmdline, p, ChildLines{549, 555, 561, 568});
    if (pid < 0) {
        ClosePipes(p);
        return -1;
    }
    HandBack(p, out_fd, in_fd, err_fd);
    return pid;
}

// The two children report their dup2 and exec failures on lines 701-720 and 764-783.
pid_t ProcessPipe4(int* out_fd1, int* in_fd1, int* err_fd1, const char* cmdline1,
                   int* out_fd2, int* err_fd2, const char* cmdline2, pid_t* pid2) {
    Pipes first;
    Pipes second;
    if (OpenPipes(first, true) != 0) return -1;
    if (OpenPipes(second, true) != 0) {
        ClosePipes(first);
        return -1;
    }
    pid_t pidFirst = StartCommand(cmdline1, first, ChildLines{701, 707, 713, 720});
    pid_t pidSecond = pidFirst < 0 ? -1 : StartCommand(cmdline2, second, ChildLines{764, 770, 776, 783});
    if (pidSecond < 0) {
        if (pidFirst > 0) {
            kill(pidFirst, SIGKILL);
            waitpid(pidFirst, nullptr, 0);
        }
        ClosePipes(first);
        ClosePipes(second);
        return -1;
    }
    HandBack(first, out_fd1, in_fd1, err_fd1);
    HandBack(second, out_fd2, nullptr, err_fd2);
    if (pid2 != nullptr) *pid2 = pidSecond;
    return pidFirst;
}

// The shell's stderr stays the caller's.
pid_t ProcessPipeShell(int* out_fd, int* in_fd, const char* command) {
    Pipes p;
    if (OpenPipes(p, false) != 0) return -1;
    char* const argv[] = {const_cast<char*>("sh"), const_cast<char*>("-c"), const_cast<char*>(command), nullptr};
    pid_t pid = Start("/bin/sh", argv, p, ChildLines{447, 453, 0, 458});
    if (pid < 0) {
        ClosePipes(p);
        return -1;
    }
    HandBack(p, out_fd, in_fd, nullptr);
    return pid;
}

int ProcessOutput(const char* command, char* buffer, size_t size) {
    FILE* pipe = popen(command, "r");
    if (pipe == nullptr) {
        ErrLine(kSource, 327, "Can't run command \"%s\"", command);
        return 1;
    }
    CollectOutput(pipe, buffer, size);
    pclose(pipe);
    return 0;
}

int ProcessOutputWithExitCode(const char* command, char* buffer, size_t size) {
    FILE* pipe = popen(command, "r");
    if (pipe == nullptr) {
        ErrLine(kSource, 372, "Can't run command \"%s\"", command);
        return 1;
    }
    CollectOutput(pipe, buffer, size);
    int status = pclose(pipe);
    if (status != -1 && WIFEXITED(status)) return WEXITSTATUS(status);
    return -1;
}

// A child that cannot be waited for, or has not ended under WNOHANG, counts as an abnormal end
// (its status is then shown as ffffffff).
int WaitProcess(pid_t pid, int options) {
    int status = -1;
    pid_t reaped;
    do {
        reaped = waitpid(pid, &status, options);
    } while (reaped < 0 && errno == EINTR);
    if (reaped > 0 && WIFEXITED(status)) return WEXITSTATUS(status);
    InfoLine(kSource, "Process Terminated Abnormally : pid = %d, status = -1(%08x)", static_cast<int>(pid),
             static_cast<unsigned>(status));
    return -1;
}

void ShowProcessFD(const char* label) {
    int self = static_cast<int>(getpid());
    InfoLine(kSource, "%d ) %s", self, label != nullptr ? label : "");
    char command[64];
    std::snprintf(command, sizeof command, "ls -xl /proc/%d/fd", self);
    int status = std::system(command);
    (void)status;
}

// Word rules: blanks outside double quotes separate words; an unescaped double quote toggles
// quoting and is removed; a backslash makes the next character part of the word (\t, \n and \b
// stand for tab, line feed and backspace). Each word loses the unescaped blanks, tabs, CR and LF at
// both of its ends; a word left empty (such as "") is not kept. A trailing lone backslash is kept
// as it is. On the 33rd word the splitting stops with a message.
//
// The words live in the same allocation as the pointer array, which has one spare slot after the
// 32 that always stays null, so that even a full array ends in the null pointer execv needs.
int rebuild_cmdline(const char* cmdline, char* path, size_t path_size, char*** argv) {
    const size_t table = (kMaxWords + 1) * sizeof(char*);
    const size_t length = std::strlen(cmdline);
    auto** words = static_cast<char**>(std::calloc(1, table + length + 1));
    if (words == nullptr) {
        ErrLine(kSource, 1277, "calloc error");
        return -1;
    }
    char* text = reinterpret_cast<char*>(words) + table;
    int count = 0;
    const char* s = cmdline;
    while (*s != '\0') {
        char* word = text;
        size_t used = 0;   // characters stored
        size_t kept = 0;   // stored characters up to the last one that trimming keeps
        bool bQuoted = false;
        for (; *s != '\0' && (bQuoted || *s != ' '); ++s) {
            char c = *s;
            bool bLiteral = false;
            if (c == '\\' && s[1] != '\0') {
                c = Unescape(*++s);
                bLiteral = true;
            } else if (c == '"') {
                bQuoted = !bQuoted;
                continue;
            }
            if (!bLiteral && IsTrimmed(c)) {
                if (used > 0) word[used++] = c;
                continue;
            }
            word[used++] = c;
            kept = used;
        }
        if (*s != '\0') ++s;   // the separating blank
        if (kept == 0) continue;
        word[kept] = '\0';
        text += kept + 1;
        if (count == kMaxWords) {
            ErrLine(kSource, 1222, "Error: More than %d cmd arguments given", kMaxWords);
            break;
        }
        words[count++] = word;
    }
    if (path_size > 0) {
        path[0] = '\0';
        if (count > 0) std::snprintf(path, path_size, "%s", words[0]);
    }
    if (count > 0) {
        const char* slash = std::strrchr(words[0], '/');
        if (slash != nullptr) words[0] = const_cast<char*>(slash + 1);
    }
    *argv = words;
    return count;
}

void free_cmdline(char** argv) { std::free(argv); }

int read_line(int fd, char* buffer, int size) {
    int taken = ReadRaw(fd, buffer, size, false, 0);
    if (taken <= 0) return taken;
    int length = StripLineEnd(buffer, taken);
    return length > 0 ? length : 1;
}

// The ending backspace is removed like a line end.
int read_line_bs(int fd, char* buffer, int size) {
    int taken = ReadRaw(fd, buffer, size, true, 0);
    if (taken <= 0) return taken;
    if (buffer[taken - 1] == '\b') buffer[--taken] = '\0';
    int length = StripLineEnd(buffer, taken);
    return length > 0 ? length : 1;
}

// A wait that times out returns -ENOENT also after some bytes of the line (they stay in buffer).
int read_line2(int fd, char* buffer, int size, int timeout_flag) {
    int taken = ReadRaw(fd, buffer, size, false, timeout_flag != 0 ? kByteTimeoutMs : 0);
    if (taken > 0) StripLineEnd(buffer, taken);
    return taken;
}

// Returns the bytes written, the line feed included.
int writen(int fd, const void* buffer, size_t count, int add_newline) {
    const auto* bytes = static_cast<const char*>(buffer);
    size_t done = 0;
    while (done < count) {
        ssize_t got = write(fd, bytes + done, count - done);
        if (got <= 0) return static_cast<int>(got);
        done += static_cast<size_t>(got);
    }
    if (add_newline != 0) {
        ssize_t got = write(fd, "\n", 1);
        if (got != 1) return static_cast<int>(got);
        ++done;
    }
    return static_cast<int>(done);
}
