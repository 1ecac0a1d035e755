// Command-line splitting, child processes with pipes, process counting and the line readers.
#include "lib/proc/processpipe.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <string>
#include <vector>

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

namespace {

std::string ReadAll(int fd) {
    std::string text;
    char buf[256];
    ssize_t got;
    while ((got = read(fd, buf, sizeof buf)) > 0) text.append(buf, static_cast<size_t>(got));
    close(fd);
    return text;
}

struct Split {
    std::string path;
    std::vector<std::string> words;
};

Split SplitLine(const std::string& cmdline) {
    char path[1024];
    char** argv = nullptr;
    int count = rebuild_cmdline(cmdline.c_str(), path, sizeof path, &argv);
    Split result{path, {}};
    for (int i = 0; i < count; ++i) result.words.emplace_back(argv[i]);
    EXPECT_EQ(nullptr, argv[count]);
    free_cmdline(argv);
    return result;
}

TEST(Proc, CommandLineSplitting) {
    const struct {
        const char* cmdline;
        const char* path;
        std::vector<std::string> words;
    } cases[] = {
        {"/bin/sh -c \"a b\"", "/bin/sh", {"sh", "-c", "a b"}},
        {"  ls   -l  ", "ls", {"ls", "-l"}},
        {"/usr/local/bin/tool x\r\n", "/usr/local/bin/tool", {"tool", "x"}},
        {"echo a\\tb\\nc\\bd\\q", "echo", {"echo", "a\tb\nc\bdq"}},
        {"p \\\"x y\\\" a\\ b", "p", {"p", "\"x", "y\"", "a b"}},
        {"p \"\" \"  in \" \t x\t", "p", {"p", "in", "x"}},
        {"p\\t", "p\t", {"p\t"}},
        {"", "", {}},
    };
    for (const auto& c : cases) {
        Split s = SplitLine(c.cmdline);
        EXPECT_EQ(c.path, s.path) << c.cmdline;
        EXPECT_EQ(c.words, s.words) << c.cmdline;
    }
}

TEST(Proc, CommandLineLimits) {
    std::string line = "w0";
    for (int i = 1; i < 32; ++i) line += " w" + std::to_string(i);
    CaptureStderr();
    EXPECT_EQ(32u, SplitLine(line).words.size());
    EXPECT_EQ("", GetCapturedStderr());
    CaptureStderr();
    Split s = SplitLine(line + " w32 w33");
    EXPECT_EQ("Err (libproc   /processpipe:1222) Error: More than 32 cmd arguments given\n", GetCapturedStderr());
    ASSERT_EQ(32u, s.words.size());
    EXPECT_EQ("w31", s.words.back());

    Split longPath = SplitLine("/" + std::string(1500, 'p'));
    EXPECT_EQ(1023u, longPath.path.size());
    EXPECT_EQ(1500u, longPath.words[0].size());
}

TEST(Proc, SystemPrintfCutsAt127Characters) {
    std::string x(200, 'x');
    CaptureStderr();
    int status = system_printf("exec >/tmp/sp.txt; echo %s", x.c_str());
    std::string command = "exec >/tmp/sp.txt; echo " + x;
    command.resize(127);
    EXPECT_EQ("Info(libproc   ) CMD> " + command + "\n", GetCapturedStderr());
    EXPECT_EQ(0, status);
    EXPECT_EQ(std::string(127 - 24, 'x') + "\n", ReadAll(open("/tmp/sp.txt", O_RDONLY)));
    CaptureStderr();
    EXPECT_EQ(3 << 8, system_printf("exit %d", 3));
    GetCapturedStderr();
}

TEST(Proc, ProcessRunWaitsWithoutShell) {
    CaptureStderr();
    int status = ProcessRunFmt("/bin/sh -c \"exit %d\"", 5);
    EXPECT_EQ("Info(libproc   ) RUN> /bin/sh -c \"exit 5\"\n", GetCapturedStderr());
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(5, WEXITSTATUS(status));
    CaptureStderr();
    EXPECT_EQ(0, ProcessRun("/nonexistent/prog arg"));
    EXPECT_EQ("Err (libproc   /processpipe:288) execv error\n", GetCapturedStderr());
}

TEST(Proc, PipesConnectTheChildStreams) {
    int out = -1, in = -1, err = -1;
    pid_t pid = ProcessPipe3(&out, &in, &err, "/bin/sh -c \"cat; echo oops >&2; exit 4\"");
    ASSERT_GT(pid, 0);
    ASSERT_EQ(6, writen(in, "hello", 5, 1));
    close(in);
    EXPECT_EQ("hello\n", ReadAll(out));
    EXPECT_EQ("oops\n", ReadAll(err));
    EXPECT_EQ(4, WaitProcess(pid, 0));

    pid = ProcessPipe3(nullptr, nullptr, &err, "/nonexistent/prog");
    ASSERT_GT(pid, 0);
    EXPECT_EQ("Err (libproc   /processpipe:568) execv error\n", ReadAll(err));
    EXPECT_EQ(0, WaitProcess(pid, 0));

    pid = ProcessPipeShell(&out, &in, "read x; echo \"got $x\"");
    ASSERT_GT(pid, 0);
    writen(in, "it", 2, 1);
    close(in);
    EXPECT_EQ("got it\n", ReadAll(out));
    EXPECT_EQ(0, WaitProcess(pid, 0));
    EXPECT_EQ(-1, writen(in, "abc", 3, 1));
}

TEST(Proc, ProcessPipe4StartsTwoCommands) {
    int out1 = -1, in1 = -1, out2 = -1, err2 = -1;
    pid_t second = -1;
    pid_t first = ProcessPipe4(&out1, &in1, nullptr, "/bin/cat", &out2, &err2, "/nonexistent/prog", &second);
    ASSERT_GT(first, 0);
    ASSERT_GT(second, 0);
    ASSERT_EQ(3, writen(in1, "abc", 3, 0));
    close(in1);
    EXPECT_EQ("abc", ReadAll(out1));
    EXPECT_EQ("", ReadAll(out2));
    EXPECT_EQ("Err (libproc   /processpipe:783) execv error\n", ReadAll(err2));
    EXPECT_EQ(0, WaitProcess(first, 0));
    EXPECT_EQ(0, WaitProcess(second, 0));
}

TEST(Proc, ProcessOutputStopsAtTheBufferSize) {
    char buffer[2048];
    EXPECT_EQ(0, ProcessOutput("printf 'line1\\nline2\\nline3\\n'", buffer, 8));
    EXPECT_STREQ("line1\nline2\n", buffer);
    EXPECT_EQ(7, ProcessOutputWithExitCode("echo hi; exit 7", buffer, 1024));
    EXPECT_STREQ("hi\n", buffer);
    EXPECT_EQ(-1, ProcessOutputWithExitCode("kill -9 $$", buffer, 1024));
    EXPECT_STREQ("", buffer);
}

TEST(Proc, ProcessArgumentAndOverlapChecks) {
    char name[] = "ptz_cntl";
    char* argv[] = {name, nullptr};
    CaptureStderr();
    EXPECT_EQ(1, CheckProcessArgument(1, argv));
    EXPECT_EQ("Err (libproc   /processpipe:1021) \"ptz_cntl\" process must be executed by monitor process.\n",
              GetCapturedStderr());
    EXPECT_EQ(0, CheckProcessArgument(2, argv));

    EXPECT_EQ(0, GetProcessRunningCount("sleep"));
    pid_t one = ProcessPipe3(nullptr, nullptr, nullptr, "/bin/sleep 30");
    ASSERT_GT(one, 0);
    usleep(100000);
    EXPECT_EQ(1, GetProcessRunningCount("sleep"));
    EXPECT_EQ(0, CheckProcessOverlap("sleep"));
    pid_t two = ProcessPipe3(nullptr, nullptr, nullptr, "/bin/sleep 30");
    ASSERT_GT(two, 0);
    usleep(100000);
    CaptureStderr();
    EXPECT_EQ(1, CheckProcessOverlap("sleep"));
    EXPECT_EQ("Err (libproc   /processpipe:1005) Already Running \"sleep\" Process. (2)\n", GetCapturedStderr());
    EXPECT_NE(0, IsProcessRunning("sleep"));

    CaptureStderr();
    EXPECT_EQ(0, ForceKillProcess("sleep"));
    std::string killed = GetCapturedStderr();
    EXPECT_NE(std::string::npos, killed.find("pid = " + std::to_string(one) + ", status = -1(00000009)"));
    EXPECT_NE(std::string::npos, killed.find("pid = " + std::to_string(two) + ", status = -1(00000009)"));
    EXPECT_EQ(0, IsProcessRunning("sleep"));
}

// One read from a fresh pipe holding input; the writer is closed (end of file) unless bOpen.
struct ReadCase {
    const char* input;
    bool bOpen;   // writer stays open, reader non-blocking
    int size;
    int result;
    const char* text;
};

void RunReadCases(int (*reader)(int, char*, int), const std::vector<ReadCase>& cases) {
    for (const auto& c : cases) {
        int fds[2];
        ASSERT_EQ(0, pipe(fds));
        ASSERT_EQ(static_cast<int>(strlen(c.input)), writen(fds[1], c.input, strlen(c.input), 0));
        if (c.bOpen)
            fcntl(fds[0], F_SETFL, O_NONBLOCK);
        else
            close(fds[1]);
        char buffer[64] = "junk";
        EXPECT_EQ(c.result, reader(fds[0], buffer, c.size)) << c.input;
        if (c.result >= 0) {
            EXPECT_STREQ(c.text, buffer) << c.input;
        }
        close(fds[0]);
        if (c.bOpen) close(fds[1]);
    }
}

TEST(Proc, LineReaders) {
    RunReadCases(read_line, {{"abc\r\nnext", false, 64, 3, "abc"}, {"\n", false, 64, 1, ""},
                             {"\r\n", false, 64, 1, ""},           {"x\r\r\n", false, 64, 2, "x\r"},
                             {"ab", false, 64, 2, "ab"},             {"", false, 64, 0, ""},
                             {"abcdef\n", false, 4, 3, "abc"},      {"ab", true, 64, 2, "ab"},
                             {"", true, 64, -1, ""},                 {"a\bb\n", false, 64, 3, "a\bb"}});
    RunReadCases(read_line_bs, {{"ab\bcd\n", false, 64, 2, "ab"}, {"\b", false, 64, 1, ""}});
    RunReadCases([](int fd, char* buffer, int size) { return read_line2(fd, buffer, size, 1); },
                 {{"abc\r\nnext", false, 64, 5, "abc"}, {"ab", false, 64, 2, "ab"}, {"", false, 64, 0, ""}});
    RunReadCases([](int fd, char* buffer, int size) { return read_line2(fd, buffer, size, 0); },
                 {{"", true, 64, -1, ""}, {"ab", true, 64, 2, "ab"}});
}

}  // namespace
