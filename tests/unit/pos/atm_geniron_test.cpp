// ATM Geniron: records, status datagrams to UDP port 51234 and the recorder notification.
#include <arpa/inet.h>
#include <poll.h>
#include <unistd.h>

#include <vector>

#include "core/ptz_cntl.h"
#include "lib/ipc/MessageQueue.h"
#include "tests/support/fake_clock.h"
#include "tests/support/test_share.h"
#include "tests/unit/pos/pos_test_util.h"

namespace {
using Texts = std::vector<std::string>;
std::string Record(const std::string& s) { return postest::Record(ProcCmd_ATM_Geniron, s); }
std::string Fields(const std::string& s) { return "ATMGEN|" + postest::Stamp() + "|" + s + "|#\n"; }
std::string Patch(std::string s, size_t nAt, char c) { return s.replace(nAt, 1, 1, c); }

// Payloads of the datagrams to port 51234 since the last call, in order, then one "mail" per
// notification. A raw socket sees the datagrams: the builder binds the receiver's own address and
// port, so no ordinary socket could listen there.
Texts Sent(int fdRaw) {
    Texts out;
    uint8_t b[2048];
    for (pollfd p{fdRaw, POLLIN, 0}; poll(&p, 1, 50) > 0;) {
        const ssize_t n = recv(fdRaw, b, sizeof b, 0);
        const size_t nIhl = (b[0] & 0x0F) * 4u;
        if (n >= 28 && ((b[nIhl + 2] << 8) | b[nIhl + 3]) == 51234)
            out.emplace_back(reinterpret_cast<char*>(b + nIhl + 8), ((b[nIhl + 4] << 8) | b[nIhl + 5]) - 8u);
    }
    for (uint32_t w[MBW_COUNT]; ReceiveMsgQ(kRecorderIpcId, kKeyMailbox, w) == kMailboxBodySize; out.push_back("mail"))
        EXPECT_EQ(std::vector<uint32_t>(w, w + MBW_COUNT), (std::vector<uint32_t>{32, 4321, 0x2005D, 0, 0, 0, 0, 0}));
    return out;
}

// An alarm reports the last line and is no line itself; characters 13 to 32 and 42 on decide
// whether a line repeats the last one; the card is everything after the fourth colon. More than
// 900 s after the last datagram the last line is sent again first. Without a receiver the datagram
// is skipped, without the key flag the notification; the record is made anyway.
TEST(Geniron, LinesAlarmsAndDatagrams) {
    ShareBlock* ptShare = ResetTestShare();
    ptShare->dwAtmAlarmAddr = htonl(INADDR_LOOPBACK);
    ptShare->dwKeyFlags = kKeyFlagToRecorder;
    ASSERT_EQ(CreateMsgQ(kRecorderIpcId), 0);
    fakeclock::SetUptime(4321);
    postest::SetClock(postest::kT0);
    const int fd = socket(AF_INET, SOCK_RAW | SOCK_NONBLOCK, IPPROTO_UDP);
    // A line whose byte k is distinct for k = 0..57, then four colons and the card text.
    const std::string kLine = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz012345:W:X:Y:CARD42$";
    const std::string sReport = "1234:ABCDEFGHIJKL#XYZ1VUWa;0;0;aaahijklmno;qrstuvwx;yz012345#5$";
    EXPECT_EQ(Record(kLine), Fields("CARD42$|0|0|0"));
    EXPECT_EQ(Record("alert_serial$"), Fields("NONE|NONE|0|1"));
    EXPECT_EQ(Record("alert_phone"), Fields("NONE|NONE|1|0"));
    EXPECT_EQ(Record(kLine), "");
    EXPECT_EQ(Sent(fd), (Texts{sReport, Patch(sReport, 21, '0'), Patch(sReport, 29, '1'), "mail", "mail", "mail"}));
    for (const auto& [nAt, bNew] : {std::pair{12, false}, {13, true}, {32, true}, {33, false}, {41, false}, {42, true}}) {
        Record(kLine);
        Sent(fd);
        EXPECT_EQ(Record(Patch(kLine, nAt, '*')) != "", bNew) << nAt;
        EXPECT_EQ(Sent(fd).size(), bNew ? 2u : 0u) << nAt;
    }
    EXPECT_EQ(Record("-------------:B:C:D:E:F$"), Fields("E:F$|0|0|0"));
    Sent(fd);
    ptShare->dwKeyFlags = ~kKeyFlagToRecorder;
    for (const auto& [nAt, c] : {std::pair{900u, '1'}, {1801u, '2'}, {2702u, '2'}}) {
        postest::SetClock(postest::kT0 + nAt);
        Record(Patch(kLine, 20, c));
    }
    const std::string s1 = Patch(sReport, 23, '1'), s2 = Patch(sReport, 23, '2');
    EXPECT_EQ(Sent(fd), (Texts{s1, s1, s2, s2}));
    ptShare->dwAtmAlarmAddr = 0;
    ptShare->dwKeyFlags = kKeyFlagToRecorder;
    EXPECT_EQ(Record(Patch(kLine, 20, '3')), Fields("CARD42$|0|0|0"));
    EXPECT_EQ(Record("alert_phone"), Fields("NONE|NONE|1|0"));
    EXPECT_EQ(Sent(fd), (Texts{"mail", "mail"}));
    close(fd);
}
}  // namespace
