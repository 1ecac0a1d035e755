// An ATM Geniron on the first serial line: a transaction line becomes a record, a status datagram
// to the alarm receiver on UDP port 51234 and a notification to the recorder. The process binds
// its socket to the receiver's own address and port, so the datagram is captured with a packet
// socket on the sandbox's loopback rather than with a listener.
#include <arpa/inet.h>
#include <linux/if_packet.h>
#include <net/ethernet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>

#include "tests/system/harness.h"
#include "tools/sim/pos_sim.h"

namespace {

// UDP payloads to port 51234 seen on loopback within timeout_ms (each packet once: the copy the
// interface receives, not the one it sends).
std::vector<std::string> CaptureAlerts(int fd, int timeout_ms) {
    std::vector<std::string> out;
    uint8_t b[2048];
    for (pollfd p{fd, POLLIN, 0}; poll(&p, 1, timeout_ms) > 0;) {
        sockaddr_ll from{};
        socklen_t len = sizeof from;
        const ssize_t n = recvfrom(fd, b, sizeof b, 0, reinterpret_cast<sockaddr*>(&from), &len);
        if (n < 28 || from.sll_pkttype == PACKET_OUTGOING || b[9] != IPPROTO_UDP) continue;
        const size_t ihl = (b[0] & 0x0F) * 4u;
        if (((b[ihl + 2] << 8) | b[ihl + 3]) != 51234) continue;
        out.emplace_back(reinterpret_cast<char*>(b + ihl + 8), ((b[ihl + 4] << 8) | b[ihl + 5]) - 8u);
    }
    return out;
}

TEST_F(SystemTest, GenironLineBecomesRecordAlertDatagramAndNotification) {
    PosClearRecords();
    rec->Share().nPortAssign = 2;   // the text input owns /dev/ttyS0: its line setting is applied
    rec->Share().nPosModel = 4;
    rec->Share().dwAtmAlarmAddr = htonl(INADDR_LOOPBACK);
    const int fd = socket(AF_PACKET, SOCK_DGRAM, htons(ETH_P_IP));
    ASSERT_GE(fd, 0);
    ASSERT_TRUE(StartAndWait());
    const std::string line = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz012345:W:X:Y:CARD42$";
    ASSERT_TRUE(ttyS0->Write(std::vector<uint8_t>(line.begin(), line.end())));

    const auto records = WaitPosRecords(1, 3000);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].substr(0, 7), "ATMGEN|");
    EXPECT_NE(records[0].find("|CARD42$|0|0|0|#\n"), std::string::npos) << records[0];
    EXPECT_EQ(CaptureAlerts(fd, 500),
              std::vector<std::string>{"1234:ABCDEFGHIJKL#XYZ1VUWa;0;0;aaahijklmno;qrstuvwx;yz012345#5$"});
    auto note = rec->WaitFor(0x2005D, 2000);
    ASSERT_TRUE(note.has_value());
    EXPECT_EQ(note->nMailbox, 2);
    close(fd);
    EXPECT_EQ(StopAndWait(), 0);
}

}  // namespace
