#include "tests/system/harness.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

namespace {
constexpr double kQuietSeconds = 0.15;   // after the last byte wanted: room for one too many

std::string Dump(const std::vector<uint8_t>& bytes) {
    return bytes.empty() ? "(nothing)" : HexBytes(bytes.data(), bytes.size());
}
}  // namespace

void SystemTest::SetUp() {
    ttyS0 = std::make_unique<SerialLine>("/dev/ttyS0");
    ttyS1 = std::make_unique<SerialLine>("/dev/ttyS1");
    ttyS4 = std::make_unique<SerialLine>("/dev/ttyS4");
    rec = std::make_unique<Recorder>();
    ASSERT_TRUE(ttyS0->Ok() && ttyS1->Ok() && ttyS4->Ok());
    ASSERT_TRUE(rec->Ok());
}

void SystemTest::TearDown() {
    rec.reset();
    ttyS0.reset();
    ttyS1.reset();
    ttyS4.reset();
}

bool SystemTest::StartAndWait(const std::vector<std::string>& args) {
    if (!rec->Start(PTZ_CNTL_BINARY, args)) return false;
    return rec->WaitFor(kMsgStarted, 5000).has_value();
}

int SystemTest::StopAndWait() {
    rec->Send(kMsgStop);
    return rec->WaitExit(5000);
}

SerialLine& SystemTest::PtzLine() {
    return rec->Share().nPortAssign == kPortAssignPtzOnS0 ? *ttyS0 : *ttyS1;
}

SystemTest::PtzBytes SystemTest::ReadPtz(int ms, const std::function<bool(const PtzBytes&)>& enough) {
    PtzBytes line;
    const double tEnd = MonotonicSeconds() + ms / 1000.0;
    double tQuietEnd = tEnd;
    for (bool bEnough = false; MonotonicSeconds() < tQuietEnd;) {
        for (const SerialChunk& c : PtzLine().Read(5)) {
            line.abData.insert(line.abData.end(), c.abData.begin(), c.abData.end());
            line.atArrival.insert(line.atArrival.end(), c.abData.size(), c.tSeconds);
            line.asSetting.insert(line.asSetting.end(), c.abData.size(), c.sSetting);
        }
        rec->Output(0);
        if (!bEnough && enough(line)) {
            bEnough = true;
            tQuietEnd = std::min(tEnd, MonotonicSeconds() + kQuietSeconds);
        }
    }
    return line;
}

PtzFrame SystemTest::FrameOf(const PtzBytes& line, size_t begin, size_t end) {
    PtzFrame f{line.atArrival[end - 1], std::vector<uint8_t>(line.abData.begin() + begin, line.abData.begin() + end),
               line.asSetting[end - 1], nullptr, {}};
    const std::vector<PtzFrame> decoded = SplitPtzFrames(SerialChunk{0, f.abData, ""}, rec->Share());
    if (decoded.size() == 1) {
        f.ptProtocol = decoded[0].ptProtocol;
        f.tText = decoded[0].tText;
    }
    return f;
}

std::vector<PtzFrame> SystemTest::ExpectPtz(const std::vector<std::vector<uint8_t>>& want, int ms) {
    std::vector<uint8_t> wanted;
    for (const std::vector<uint8_t>& w : want) wanted.insert(wanted.end(), w.begin(), w.end());
    const PtzBytes line = ReadPtz(ms, [&](const PtzBytes& l) { return !want.empty() && l.abData.size() >= wanted.size(); });
    if (line.abData != wanted)
        ADD_FAILURE() << "the PTZ line did not carry the bytes expected\n  expected: " << Dump(wanted)
                      << "\n  received: " << Dump(line.abData);
    std::vector<PtzFrame> frames;
    for (size_t i = 0, end = 0; i < want.size() && end + want[i].size() <= line.abData.size(); ++i) {
        frames.push_back(FrameOf(line, end, end + want[i].size()));
        end += want[i].size();
    }
    return frames;
}

std::vector<PtzFrame> SystemTest::CollectPtz(int ms, size_t count) {
    auto split = [&](const PtzBytes& l) {
        std::vector<PtzFrame> frames;
        size_t end = 0;
        for (const PtzFrame& f : SplitPtzFrames(SerialChunk{0, l.abData, ""}, rec->Share())) {
            frames.push_back(FrameOf(l, end, end + f.abData.size()));
            end += f.abData.size();
        }
        return frames;
    };
    auto whole = [](const PtzFrame& f) { return f.ptProtocol != nullptr && !f.tText.bBadCheck; };
    const PtzBytes line = ReadPtz(ms, [&](const PtzBytes& l) {
        const std::vector<PtzFrame> frames = split(l);
        return count != SIZE_MAX && static_cast<size_t>(std::count_if(frames.begin(), frames.end(), whole)) >= count;
    });
    const std::vector<PtzFrame> frames = split(line);
    const bool bStray = !std::all_of(frames.begin(), frames.end(), whole);
    if (bStray || (count != SIZE_MAX && frames.size() != count)) {
        std::string dump;
        for (const PtzFrame& f : frames) dump += "\n  " + Dump(f.abData) + "   " + f.Describe();
        ADD_FAILURE() << "the PTZ line carried " << frames.size() << " frames"
                      << (count != SIZE_MAX ? " where " + std::to_string(count) + " were expected" : "")
                      << (bStray ? ", not all of them whole frames of a configured camera" : "") << ":" << dump;
    }
    return frames;
}

void SystemTest::Camera(uint32_t ch, uint32_t model, uint32_t address) {
    rec->Share().atPtz[ch].nPtzModel = model;
    rec->Share().atPtz[ch].nPtzAddress = address;
}

void SystemTest::Ptz(uint32_t ch, uint32_t cmd, uint32_t p1, uint32_t p2, uint32_t p3) {
    rec->Send(kMsgPtzCommand, ch, cmd, p1, p2, p3);
}

std::vector<uint8_t> Bytes(std::initializer_list<int> list) {
    std::vector<uint8_t> v;
    for (int b : list) v.push_back(static_cast<uint8_t>(b));
    return v;
}

int RunPtzCntl(const std::vector<std::string>& args, std::string* err, int timeout_ms) {
    int pe[2];
    if (pipe2(pe, O_CLOEXEC) != 0) return -1;
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(pe[1], 2);
        std::vector<std::string> copy(args);
        std::vector<char*> argv = {const_cast<char*>("ptz_cntl")};
        for (auto& a : copy) argv.push_back(a.data());
        argv.push_back(nullptr);
        execv(PTZ_CNTL_BINARY, argv.data());
        _exit(127);
    }
    close(pe[1]);
    const double tEnd = MonotonicSeconds() + timeout_ms / 1000.0;
    for (;;) {
        struct pollfd p = {pe[0], POLLIN, 0};
        if (poll(&p, 1, 10) > 0) {
            char buf[1024];
            const ssize_t n = read(pe[0], buf, sizeof buf);
            if (n > 0) err->append(buf, static_cast<size_t>(n));
            if (n == 0) break;   // the process closed its end: it has ended
        }
        if (MonotonicSeconds() > tEnd) {
            kill(pid, SIGKILL);
            break;
        }
    }
    close(pe[0]);
    int st = 0;
    waitpid(pid, &st, 0);
    return WIFEXITED(st) ? WEXITSTATUS(st) : -1;
}

UartShim::UartShim() {
    const char* s = getenv("LD_PRELOAD");
    m_bHadPreload = s != nullptr;
    m_sPreload = s ? s : "";
    s = getenv("ASAN_OPTIONS");
    m_bHadAsan = s != nullptr;
    m_sAsan = s ? s : "";
    setenv("LD_PRELOAD", PTZ_UART_SHIM, 1);
    // Under AddressSanitizer the shim comes before its runtime in the library list, which is fine:
    // the shim is not instrumented.
    const std::string sAsan = m_sAsan + (m_sAsan.empty() ? "" : ":") + "verify_asan_link_order=0";
    setenv("ASAN_OPTIONS", sAsan.c_str(), 1);
}

UartShim::~UartShim() {
    if (m_bHadPreload) setenv("LD_PRELOAD", m_sPreload.c_str(), 1);
    else unsetenv("LD_PRELOAD");
    if (m_bHadAsan) setenv("ASAN_OPTIONS", m_sAsan.c_str(), 1);
    else unsetenv("ASAN_OPTIONS");
}
