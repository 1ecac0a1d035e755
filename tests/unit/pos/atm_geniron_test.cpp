// ATM Geniron: records, status datagrams to UDP port 51234 and the recorder notification.
#include <arpa/inet.h>
#include <linux/if_ether.h>
#include <linux/if_packet.h>
#include <net/if.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "core/ptz_cntl.h"
#include "lib/ipc/MessageQueue.h"
#include "tests/support/fake_clock.h"
#include "tests/support/test_share.h"
#include "tests/unit/pos/pos_test_util.h"

namespace {
using postest::kT0;

// Watches the loopback interface for UDP datagrams to port 51234. The builder binds its socket
// to the receiver's own address and port, so no ordinary socket could listen there beside it.
class AlarmReceiver {
public:
    AlarmReceiver() {
        fd_ = socket(AF_PACKET, SOCK_DGRAM | SOCK_NONBLOCK, htons(ETH_P_IP));
        sockaddr_ll tAddr{};
        tAddr.sll_family = AF_PACKET;
        tAddr.sll_protocol = htons(ETH_P_IP);
        tAddr.sll_ifindex = static_cast<int>(if_nametoindex("lo"));
        EXPECT_EQ(bind(fd_, reinterpret_cast<sockaddr*>(&tAddr), sizeof tAddr), 0);
    }
    ~AlarmReceiver() { close(fd_); }
    // Payloads of the datagrams seen since the last call, in order.
    std::vector<std::string> Take() {
        std::vector<std::string> out;
        pollfd p{fd_, POLLIN, 0};
        while (poll(&p, 1, 50) > 0) {
            uint8_t b[2048];
            sockaddr_ll tFrom{};
            socklen_t nFrom = sizeof tFrom;
            const ssize_t n = recvfrom(fd_, b, sizeof b, 0, reinterpret_cast<sockaddr*>(&tFrom), &nFrom);
            if (n < 28 || tFrom.sll_pkttype == PACKET_OUTGOING) continue;
            const size_t nIhl = (b[0] & 0x0F) * 4u;
            if (b[9] != IPPROTO_UDP || static_cast<size_t>(n) < nIhl + 8) continue;
            if (((b[nIhl + 2] << 8) | b[nIhl + 3]) != 51234) continue;
            const size_t nUdp = (b[nIhl + 4] << 8) | b[nIhl + 5];
            out.emplace_back(reinterpret_cast<char*>(b + nIhl + 8), nUdp - 8);
        }
        return out;
    }

private:
    int fd_ = -1;
};

constexpr uint32_t kUptime = 4321;

// Codes of the messages waiting for mailbox 2 (sender, stamp and parameters are checked).
std::vector<uint32_t> TakeNotifications() {
    std::vector<uint32_t> out;
    uint32_t w[MBW_COUNT];
    while (ReceiveMsgQ(kRecorderIpcId, kKeyMailbox, w) == kMailboxBodySize) {
        EXPECT_EQ(w[MBW_FROM], 32u);
        EXPECT_EQ(w[MBW_STAMP], kUptime);
        EXPECT_EQ(w[MBW_P1] | w[MBW_P2] | w[MBW_P3] | w[MBW_P4] | w[MBW_P5], 0u);
        out.push_back(w[MBW_CODE]);
    }
    return out;
}

// An ATM line whose byte k is distinct for k = 0..57, then the four colons and the card text.
const std::string kLine = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz012345:W:X:Y:CARD42$";
const std::string kLineReport = "1234:ABCDEFGHIJKL#XYZ1VUWa;0;0;aaahijklmno;qrstuvwx;yz012345#5$";

// s with byte nAt replaced.
std::string Patch(std::string s, size_t nAt, char c) {
    s[nAt] = c;
    return s;
}
// The same report with the communication or the telephone alarm set.
const std::string kSerialReport = Patch(kLineReport, 21, '0');
const std::string kPhoneReport = Patch(kLineReport, 29, '1');

class Geniron : public testing::Test {
protected:
    void SetUp() override {
        ptShare_ = ResetTestShare();
        ptShare_->dwAtmAlarmAddr = htonl(INADDR_LOOPBACK);
        ptShare_->dwKeyFlags = kKeyFlagToRecorder;
        ASSERT_EQ(CreateMsgQ(kRecorderIpcId), 0);
        fakeclock::SetUptime(kUptime);
        // The last line and the time of the last datagram live for the whole process: send a
        // line of known state first, then start every test from kLine accepted at kT0.
        postest::SetClock(kT0 - 10000);
        Record("priming line ........................................\n");
        postest::SetClock(kT0);
        EXPECT_EQ(Record(kLine), Fields("CARD42$|0|0|0"));
        rx_.Take();
        TakeNotifications();
    }
    static std::string Record(const std::string& s) { return postest::Record(ProcCmd_ATM_Geniron, s); }
    static std::string Fields(const std::string& s) { return "ATMGEN|" + postest::Stamp() + "|" + s + "|#\n"; }

    ShareBlock* ptShare_ = nullptr;
    AlarmReceiver rx_;
};

using Reports = std::vector<std::string>;
using Codes = std::vector<uint32_t>;

// Characters 13 to 32 and 42 on decide whether a line repeats the last one; an alarm is no line.
TEST_F(Geniron, NewAndRepeatedLines) {
    postest::SetClock(kT0 + 5);
    EXPECT_EQ(Record(Patch(kLine, 20, '*')), Fields("CARD42$|0|0|0"));
    EXPECT_EQ(rx_.Take(), Reports{Patch(kLineReport, 23, '*')});
    EXPECT_EQ(TakeNotifications(), Codes{0x2005D});
    EXPECT_EQ(Record(Patch(kLine, 20, '*')), "");
    struct Case { size_t nAt; bool bNew; };
    for (const Case& c : {Case{12, false}, Case{13, true}, Case{32, true}, Case{33, false}, Case{41, false},
                          Case{42, true}, Case{70, true}}) {
        Record(kLine);
        rx_.Take();
        TakeNotifications();
        EXPECT_EQ(Record(Patch(kLine, c.nAt, '*')) != "", c.bNew) << c.nAt;
        EXPECT_EQ(rx_.Take().size(), c.bNew ? 1u : 0u) << c.nAt;
        EXPECT_EQ(TakeNotifications().size(), c.bNew ? 1u : 0u) << c.nAt;
    }
    EXPECT_EQ(Record("alert_serial$"), Fields("NONE|NONE|0|1"));
    EXPECT_EQ(Record("alert_phone"), Fields("NONE|NONE|1|0"));
    EXPECT_EQ(rx_.Take(), (Reports{kSerialReport, kPhoneReport}));
    EXPECT_EQ(TakeNotifications(), (Codes{0x2005D, 0x2005D}));
    EXPECT_EQ(Record(Patch(kLine, 70, '*')), "");
}

TEST_F(Geniron, SilenceOfMoreThan900SecondsRepeatsTheLastLine) {
    postest::SetClock(kT0 + 900);
    EXPECT_NE(Record(Patch(kLine, 20, '1')), "");
    postest::SetClock(kT0 + 1801);
    EXPECT_NE(Record(Patch(kLine, 20, '2')), "");
    postest::SetClock(kT0 + 2702);
    EXPECT_EQ(Record(Patch(kLine, 20, '2')), "");   // repeated, but still the keep-alive
    EXPECT_EQ(rx_.Take(), (Reports{Patch(kLineReport, 23, '1'), Patch(kLineReport, 23, '1'),
                                   Patch(kLineReport, 23, '2'), Patch(kLineReport, 23, '2')}));
}

// Without a receiver, or when its address cannot be bound, the datagram is skipped; without the
// key flag the notification is. The record is made in every case.
TEST_F(Geniron, DatagramAndNotificationAreEachOptional) {
    struct Case { uint32_t dwAddr, dwFlags; size_t nReports, nCodes; };
    char c = 'a';
    for (const Case& k : {Case{0, kKeyFlagToRecorder, 0, 2}, Case{htonl(0xC0000201), kKeyFlagToRecorder, 0, 2},
                          Case{htonl(INADDR_LOOPBACK), ~kKeyFlagToRecorder, 2, 0}}) {
        ptShare_->dwAtmAlarmAddr = k.dwAddr;
        ptShare_->dwKeyFlags = k.dwFlags;
        EXPECT_EQ(Record(Patch(kLine, 20, c++)), Fields("CARD42$|0|0|0"));
        EXPECT_EQ(Record("alert_phone"), Fields("NONE|NONE|1|0"));
        EXPECT_EQ(rx_.Take().size(), k.nReports) << c;
        EXPECT_EQ(TakeNotifications().size(), k.nCodes) << c;
    }
}

TEST_F(Geniron, CardIsTheTextAfterTheFourthColon) {
    struct Case { const char* sLine; const char* sCard; };
    for (const Case& c : {Case{"-------------case1 no colons\n", ""}, Case{"-------------case2:B:C:\n", ""},
                          Case{"-------------case3:B:C:D:CARD 9999\r\n", "CARD 9999"},
                          Case{"-------------case4:B:C:D:E:F$", "E:F$"}}) {
        EXPECT_EQ(Record(c.sLine), Fields(std::string(c.sCard) + "|0|0|0")) << c.sLine;
    }
}
}  // namespace
