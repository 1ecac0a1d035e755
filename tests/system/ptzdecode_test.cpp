// The wire decoder as installers run it: a pasted capture, a raw one, a live line (a pseudo-
// terminal here), and what it says to a wrong command line.
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "lib/proc/processpipe.h"
#include "tests/support/pty_pair.h"
#include "tests/system/harness.h"

namespace {

// ptzdecode started, through the process library, with arguments and standard input; its
// standard output collected as it comes, its standard error at the end.
class Tool {
public:
    Tool(const std::vector<std::string>& args, const std::string& sInput) {
        std::string sCmd = PTZDECODE_BINARY;
        for (const std::string& a : args) sCmd += " \"" + a + "\"";
        int fdIn = -1;
        m_pid = ProcessPipe3(&m_fdOut, &fdIn, &m_fdErr, sCmd.c_str());
        if (m_pid < 0) return;
        if (write(fdIn, sInput.data(), sInput.size()) < 0) ADD_FAILURE() << "stdin";
        close(fdIn);
    }

    ~Tool() {
        if (m_pid > 0) kill(m_pid, SIGKILL);
        for (int fd : {m_fdOut, m_fdErr})
            if (fd >= 0) close(fd);
        if (m_pid > 0) waitpid(m_pid, nullptr, 0);
    }

    // Collects output until `text` has appeared or ms have passed.
    bool WaitForOutput(const std::string& text, int ms) {
        const double tEnd = MonotonicSeconds() + ms / 1000.0;
        while (sOut.find(text) == std::string::npos && MonotonicSeconds() < tEnd) Pump(10);
        return sOut.find(text) != std::string::npos;
    }

    // Waits for the end (interrupting it first if asked): the exit status, -1 if it did not end.
    int Finish(bool bInterrupt = false) {
        if (bInterrupt) kill(m_pid, SIGINT);
        const double tEnd = MonotonicSeconds() + 5;
        while (MonotonicSeconds() < tEnd && m_fdOut >= 0) Pump(10);
        char buf[512];
        for (ssize_t n; m_fdErr >= 0 && (n = read(m_fdErr, buf, sizeof buf)) > 0;)
            sErr.append(buf, static_cast<size_t>(n));
        int st = 0;
        const bool bEnded = m_fdOut < 0 && waitpid(m_pid, &st, 0) == m_pid;
        if (bEnded) m_pid = -1;
        return bEnded && WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    }

    // Whether standard output has this line, each run of blanks read as one blank.
    bool Printed(const std::string& s) const {
        std::istringstream in(sOut);
        for (std::string sLine; std::getline(in, sLine);) {
            std::istringstream words(sLine);
            std::string sSqueezed;
            for (std::string w; words >> w;) sSqueezed += (sSqueezed.empty() ? "" : " ") + w;
            if (sSqueezed == s) return true;
        }
        return false;
    }

    std::string sOut, sErr;

private:
    void Pump(int ms) {
        struct pollfd p = {m_fdOut, POLLIN, 0};
        if (poll(&p, 1, ms) <= 0) return;
        char buf[4096];
        const ssize_t n = read(m_fdOut, buf, sizeof buf);
        if (n > 0) sOut.append(buf, static_cast<size_t>(n));
        if (n <= 0) {
            close(m_fdOut);
            m_fdOut = -1;
        }
    }

    pid_t m_pid = -1;
    int m_fdOut = -1;
    int m_fdErr = -1;
};

std::string WriteFile(const std::string& sName, const std::string& sContent) {
    const std::string sPath = "/tmp/" + sName;
    FILE* f = std::fopen(sPath.c_str(), "wb");
    if (f == nullptr) return sPath;
    std::fwrite(sContent.data(), 1, sContent.size(), f);
    std::fclose(f);
    return sPath;
}

// Frames of camera 1 on a controller link (Toshiba SC1000), pasted with noise and a damaged
// frame between them, one Pelco-D frame among them; guessing must name the link.
TEST(PtzDecode, GuessesTheProtocolOfAPastedCapture) {
    const std::string sPath = WriteFile("capture.txt",
                                        "# channel 3, SC1000\n"
                                        "02 01 04 00 04 3F 00 03 3D 55 AA\n"
                                        "0x02,0x01,0x04,0x00,0x07,0x00,0x05,0x03,0x05\n"
                                        "FF01000700050D\n"
                                        "02 01 04 00 00 00 00 03 06 02 01 04\n");
    Tool t({sPath}, "");
    EXPECT_EQ(t.Finish(), 0) << t.sErr;
    for (const char* s : {"1 Controller link 46.2 % 3 frames, 1 with a bad check models 37-41",
                          "2 Pelco-D 17.9 % 1 frame, 0 with a bad check models 7, 12-14, 25, 28, 31",
                          "Decoding as Controller link.",
                          "0 1 pan left 63 good 02 01 04 00 04 3F 00 03 3D",
                          "9 - (noise) - 55 AA",
                          "11 1 go to preset 5 BAD 02 01 04 00 07 00 05 03 05",
                          "20 - (noise) - FF 01 00 07 00 05 0D",
                          "27 1 stop good 02 01 04 00 00 00 00 03 06",
                          "36 - (cut frame) - 02 01 04"})
        EXPECT_TRUE(t.Printed(s)) << s << "\n" << t.sOut;
}

// A raw capture decoded as a model speaks; with nothing in it that reads as a frame, status 1.
// The help gives each model its protocol and line setting.
TEST(PtzDecode, RawCaptureAsAModelSpeaks) {
    const std::string sRaw("\x02\x01\x04\x00\x10\x00\x20\x03\x36\xFF", 10);
    Tool t({"--model", "40", "--raw", WriteFile("capture.raw", sRaw)}, "");
    EXPECT_EQ(t.Finish(), 0) << t.sErr;
    EXPECT_TRUE(t.Printed("0 1 tilt down 32 good 02 01 04 00 10 00 20 03 36")) << t.sOut;
    EXPECT_TRUE(t.Printed("9 - (noise) - FF")) << t.sOut;

    Tool none({"--protocol", "controller link", "-"}, "55 AA 55");
    EXPECT_EQ(none.Finish(), 1);
    EXPECT_TRUE(none.Printed("0 - (noise) - 55 AA 55")) << none.sOut;

    Tool help({"--help"}, "");
    EXPECT_EQ(help.Finish(), 0);
    EXPECT_TRUE(help.Printed("39 RESERVED Controller link 9600 8E1")) << help.sOut;
}

// A live line: the port is set as the model needs (Toa, 9600 with even parity; the UART shim keeps
// the parity a pseudo-terminal forgets), a frame cut over two reads is decoded whole, and an
// interrupt ends the reading. Without a model every protocol reads along and the ranking comes at
// the end.
TEST(PtzDecode, LiveLineOnAPseudoTerminal) {
    const struct {
        std::vector<std::string> args;
        const char* sSetting;
        std::vector<std::string> want;
    } kCases[] = {
        {{"--model", "39"}, "9600 8E1",
         {"0 1 go to preset 5 good 02 01 04 00 07 00 05 03 04", "9 - (noise) - 55",
          "10 1 stop good 02 01 04 00 00 00 00 03 06"}},
        {{"--baud", "4800", "--stop-bits", "2"}, "4800 8N2",
         {"0 Controller link 1 go to preset 5 good 02 01 04 00 07 00 05 03 04",
          "9 - - (noise) - 55", "10 Controller link 1 stop good 02 01 04 00 00 00 00 03 06",
          "1 Controller link 94.7 % 2 frames, 0 with a bad check models 37-41"}},
    };
    for (const auto& c : kCases) {
        PtyPair pty;
        ASSERT_GE(pty.master, 0);
        PtyForgetSetting(pty.master);
        const UartShim shim;
        std::vector<std::string> args = {"--line", ptsname(pty.master)};
        args.insert(args.end(), c.args.begin(), c.args.end());
        Tool t(args, "");
        ASSERT_TRUE(t.WaitForOutput("offset", 3000)) << t.sErr;
        EXPECT_EQ(DescribeLine(PtyControlFlags(pty.master)), c.sSetting);
        const std::vector<uint8_t> first = Bytes({0x02, 0x01, 0x04, 0x00});
        const std::vector<uint8_t> rest = Bytes({0x07, 0x00, 0x05, 0x03, 0x04, 0x55, 0x02, 0x01,
                                                 0x04, 0x00, 0x00, 0x00, 0x00, 0x03, 0x06});
        ASSERT_EQ(write(pty.master, first.data(), first.size()), 4);
        usleep(100000);
        ASSERT_EQ(write(pty.master, rest.data(), rest.size()), static_cast<ssize_t>(rest.size()));
        EXPECT_TRUE(t.WaitForOutput("00 03 06", 3000)) << t.sOut;
        EXPECT_EQ(t.Finish(true), 0) << t.sErr;
        for (const std::string& s : c.want) EXPECT_TRUE(t.Printed(s)) << s << "\n" << t.sOut;
    }
}

// Each wrong command line: status 2 and one line saying what is wrong.
TEST(PtzDecode, WrongCommandLinesAreRefused) {
    const struct {
        std::vector<std::string> args;
        const char* sInput;
        const char* sMessage;
    } kCases[] = {
        {{"--verbose"}, "", "unknown option \"--verbose\" (see --help)"},
        {{"--model"}, "", "--model needs an argument"},
        {{"--model", "43"}, "", "no model \"43\" (models are 0-42)"},
        {{"--model", "0"}, "", "model 0 (NONE) has no decoder"},
        {{"--protocol", "Pelco-X"}, "", "unknown protocol \"Pelco-X\" (see --help)"},
        {{"/tmp/no-such-capture"}, "",
         "cannot read \"/tmp/no-such-capture\": No such file or directory"},
        {{}, "02 01\n04 0G", "bad hex \"0G\" on line 2 of standard input"},
        {{"--line", "/dev/null"}, "", "--line needs --baud (or --model for its line setting)"},
        {{"--line", "/dev/null", "--baud", "9000"}, "",
         "unsupported baud rate \"9000\" (1200 to 115200)"},
        {{"--line", "/dev/null", "--model", "39"}, "", "\"/dev/null\" is not a serial line"},
    };
    for (const auto& c : kCases) {
        Tool t(c.args, c.sInput);
        EXPECT_EQ(t.Finish(), 2) << c.sMessage;
        EXPECT_EQ(t.sErr, std::string("ptzdecode: ") + c.sMessage + "\n");
        EXPECT_EQ(t.sOut, "");
    }
}

}  // namespace
