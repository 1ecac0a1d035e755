// Command-line splitting, child processes with pipes, process counting and the line readers.
#include "lib/proc/processpipe.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <string>
#include <vector>

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

namespace {

std::string ReadAll(int fd) {
    std::string text;
    char buf[256];
    for (ssize_t got; (got = read(fd, buf, sizeof buf)) > 0;) text.append(buf, static_cast<size_t>(got));
    close(fd);
    return text;
}

// Quoting, escapes, trimming, dropped empty words, path vs argv[0] base name, the cut path, and
// the stop at 32 words with a null-terminated array.
TEST(Proc, CommandLineSplitting) {
    std::string many;
    std::vector<std::string> first32;
    for (int i = 0; i < 34; ++i) {
        const std::string word = 'w' + std::to_string(i);
        many += ' ' + word;
        if (i < 32) first32.push_back(word);
    }
    const std::string longName(1500, 'p'), longPath = '/' + longName;
    const struct { std::string cmdline, path; std::vector<std::string> words; } cases[] = {
        {"/bin/sh -c \"a b\"", "/bin/sh", {"sh", "-c", "a b"}}, {"  ls   -l  ", "ls", {"ls", "-l"}},
        {"/usr/local/bin/tool x\r\n", "/usr/local/bin/tool", {"tool", "x"}},
        {"echo a\\tb\\nc\\bd\\q", "echo", {"echo", "a\tb\nc\bdq"}},
        {"p \\\"x y\\\" a\\ b", "p", {"p", "\"x", "y\"", "a b"}},
        {"p \"\" \"  in \" \t x\t", "p", {"p", "in", "x"}},
        {"p\\t", "p\t", {"p\t"}}, {"", "", {}},
        {longPath, longPath.substr(0, 1023), {longName}},
        {many, "w0", first32},
    };
    CaptureStderr();
    for (const auto& c : cases) {
        char path[1024];
        char** argv = nullptr;
        int count = rebuild_cmdline(c.cmdline.c_str(), path, sizeof path, &argv);
        EXPECT_EQ(c.path, path) << c.cmdline;
        EXPECT_EQ(c.words, std::vector<std::string>(argv, argv + count)) << c.cmdline;
        EXPECT_EQ(nullptr, argv[count]) << c.cmdline;
        free_cmdline(argv);
    }
    EXPECT_EQ("Err (libproc   /processpipe:1222) Error: More than 32 cmd arguments given\n", GetCapturedStderr());
}

// The formatted command is cut to 127 characters, shown, and run by the shell; its raw status returns.
TEST(Proc, SystemPrintfRunsOnly127Characters) {
    std::string x(200, 'x');
    CaptureStderr();
    EXPECT_EQ(0, system_printf("exec >/tmp/sp.txt; echo %s", x.c_str()));
    EXPECT_EQ("Info(libproc   ) CMD> " + ("exec >/tmp/sp.txt; echo " + x).substr(0, 127) + "\n", GetCapturedStderr());
    EXPECT_EQ(std::string(127 - 24, 'x') + "\n", ReadAll(open("/tmp/sp.txt", O_RDONLY)));
    EXPECT_EQ(3 << 8, system_printf("exit %d", 3));
}

// One running instance is no overlap, two are (the count in the message); killing ends both.
TEST(Proc, RunningCountAndOverlap) {
    ASSERT_GT(ProcessPipe3(nullptr, nullptr, nullptr, "/bin/sleep 30"), 0);
    usleep(100000);
    EXPECT_EQ(1, GetProcessRunningCount("sleep"));
    EXPECT_EQ(0, CheckProcessOverlap("sleep"));
    ASSERT_GT(ProcessPipe3(nullptr, nullptr, nullptr, "/bin/sleep 30"), 0);
    usleep(100000);
    CaptureStderr();
    EXPECT_EQ(1, CheckProcessOverlap("sleep"));
    EXPECT_EQ("Err (libproc   /processpipe:1005) Already Running \"sleep\" Process. (2)\n", GetCapturedStderr());
    EXPECT_EQ(0, ForceKillProcess("sleep"));
    EXPECT_EQ(0, GetProcessRunningCount("sleep"));
}

// The child's three streams are the pipes; command output is collected line by line until the
// buffer size is reached (the last line may pass it), with the exit code when asked.
TEST(Proc, PipesAndOutput) {
    int out = -1, in = -1, err = -1;
    pid_t pid = ProcessPipe3(&out, &in, &err, "/bin/sh -c \"cat; echo oops >&2; exit 4\"");
    ASSERT_GT(pid, 0);
    ASSERT_EQ(6, writen(in, "hello", 5, 1));
    close(in);
    EXPECT_EQ("hello\n", ReadAll(out));
    EXPECT_EQ("oops\n", ReadAll(err));
    EXPECT_EQ(4, WaitProcess(pid, 0));
    char buffer[64];
    EXPECT_EQ(0, ProcessOutput("printf 'line1\\nline2\\nline3\\n'", buffer, 8));
    EXPECT_STREQ("line1\nline2\n", buffer);
    EXPECT_EQ(7, ProcessOutputWithExitCode("echo hi; exit 7", buffer, sizeof buffer));
}

int ReadLine2Wait(int fd, char* buffer, int size) { return read_line2(fd, buffer, size, 1); }

// One non-blocking read from a pipe holding input; its writer is closed (end of file) unless bOpen.
TEST(Proc, LineReaders) {
    const struct {
        int (*reader)(int, char*, int);
        const char *input, *text;   // text: the expected buffer, when checked
        bool bOpen;
        int size, result;
    } cases[] = {
        {read_line, "abc\r\nnext", "abc", false, 64, 3},  {read_line, "\n", "", false, 64, 1},
        {read_line, "x\r\r\n", "x\r", false, 64, 2},       {read_line, "ab", "ab", false, 64, 2},
        {read_line, "", "", false, 64, 0},                {read_line, "abcdef\n", "abc", false, 4, 3},
        {read_line, "ab", "ab", true, 64, 2},             {read_line, "", nullptr, true, 64, -1},
        {read_line, "a\bb\n", "a\bb", false, 64, 3},      {read_line_bs, "ab\bcd\n", "ab", false, 64, 2},
        {read_line_bs, "\b", "", false, 64, 1},           {ReadLine2Wait, "abc\r\nnext", "abc", false, 64, 5},
        {ReadLine2Wait, "", "", false, 64, 0},
    };
    for (const auto& c : cases) {
        int fds[2];
        ASSERT_EQ(0, pipe(fds));
        ASSERT_EQ(static_cast<int>(strlen(c.input)), writen(fds[1], c.input, strlen(c.input), 0));
        fcntl(fds[0], F_SETFL, O_NONBLOCK);
        if (!c.bOpen) close(fds[1]);
        char buffer[64] = "junk";
        EXPECT_EQ(c.result, c.reader(fds[0], buffer, c.size)) << c.input;
        if (c.text != nullptr) { EXPECT_STREQ(c.text, buffer) << c.input; }
        close(fds[0]);
        if (c.bOpen) close(fds[1]);
    }
}

}  // namespace
