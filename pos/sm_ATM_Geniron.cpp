// ATM Geniron: fixed-column ATM lines on the serial port (ended by "$" or a newline), recorded and
// reported to a monitoring receiver by UDP datagrams, with alarm lines for the ATM's serial and
// telephone links.
//
//   input                  record                                  datagram
//   alert_serial...        ATMGEN|sec.hh|NONE|NONE|0|1|#           last line, communication alarm
//   alert_phone...         ATMGEN|sec.hh|NONE|NONE|1|0|#           last line, telephone alarm
//   repeated line          -                                       -
//   new line               ATMGEN|sec.hh|card|0|0|0|#              the new line
//   (card = the text after the fourth ":"; a repeated line has the same characters 13-32 and 42-)
//
//   Status datagram, 63 ASCII bytes to UDP port 51234; in[k] = byte k of the reported line:
//   offset  len  content                 offset  len  content
//   0       4    "1234"                  29      1    "1" telephone alarm, else "0"
//   4       1    ":"                     30      1    ";"
//   5       12   in[0..11]               31      3    in[26] three times
//   17      1    "#"                     34      8    in[33..40]
//   18      3    in[23], in[24], in[25]  42      1    ";"
//   21      1    "0" comm. alarm, else 1 43      8    in[42..49]
//   22      4    in[21, 20, 22, 26]      51      1    ";"
//   26      1    ";"                     52      8    in[50..57]
//   27      1    "0" (reserved)          60      3    "#5$"
//   28      1    ";"
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

#include "core/ptz_cntl.h"
#include "core/share_block.h"
#include "lib/ipc/MessageQueue.h"
#include "pos/pos_model.h"
#include "pos/sm_common.h"

constexpr struct termios TermSet_ATM_Geniron = PosTermSet(IGNCR | IXON | IXOFF, ICANON, '$');
constexpr char POSName_ATM_Geniron[] = "ATM, Geniron";
constexpr DPRCSet DPRCSet_ATM_Geniron = {5, {
    {"TIME", 128, 3, 2, 0, 85, 1},
    {"CARD NO.", 267, 4, 1, 87, 200, 4},
    {"AMOUNT", 160, 5, 3, 289, 95, 16},
    {"TEL.", 32, 1, 2, 386, 65, 8},
    {"COMM.", 32, 1, 2, 453, 71, 32},
}};

namespace {
constexpr uint16_t kAlarmPort = 51234;
constexpr uint32_t kKeepAliveSeconds = 900;
constexpr uint32_t kNotifyCode = 0x2005D;
constexpr uint32_t kNotifyFrom = 32;
constexpr int kLineSize = 128;
constexpr int kDatagramSize = 63;
constexpr int kRepeatFrom = 13, kRepeatTo = 32, kRepeatTail = 42;   // columns compared for repeats

// The last accepted line, zero-padded. Until the first line is accepted nothing repeats it and
// there is nothing to keep alive.
uint8_t pyBufferOld[kLineSize];
bool bOldValid = false;
uint32_t oldSendTime = 0;   // seconds of the last datagram sent

void BuildDatagram(uint8_t* p, const uint8_t* in, bool bPhone, bool bSerial) {
    std::memcpy(p, "1234:", 5);
    std::memcpy(p + 5, in, 12);
    p[17] = '#';
    p[18] = in[23];
    p[19] = in[24];
    p[20] = in[25];
    p[21] = bSerial ? '0' : '1';
    p[22] = in[21];
    p[23] = in[20];
    p[24] = in[22];
    p[25] = in[26];
    std::memcpy(p + 26, ";0;", 3);
    p[29] = bPhone ? '1' : '0';
    p[30] = ';';
    p[31] = p[32] = p[33] = in[26];
    std::memcpy(p + 34, in + 33, 8);
    p[42] = ';';
    std::memcpy(p + 43, in + 42, 8);
    p[51] = ';';
    std::memcpy(p + 52, in + 50, 8);
    std::memcpy(p + 60, "#5$", 3);
    static_assert(60 + 3 == kDatagramSize);
}

// Reports a line to the receiver. The socket is bound to the receiver's own address and port
// before sending, and closed after use; anything that fails skips the datagram silently.
void SendByUDP(const uint8_t* pyLine, bool bPhone, bool bSerial) {
    const int fd = socket(AF_INET, SOCK_DGRAM, 0);
    if (fd < 0) return;
    const uint32_t dwAddr = ptShare->dwAtmAlarmAddr;
    struct sockaddr_in tAddr{};
    tAddr.sin_family = AF_INET;
    tAddr.sin_port = htons(kAlarmPort);
    tAddr.sin_addr.s_addr = dwAddr;
    const sockaddr* ptAddr = reinterpret_cast<const sockaddr*>(&tAddr);
    if (dwAddr == 0 || bind(fd, ptAddr, sizeof tAddr) != 0) {
        close(fd);
        return;
    }
    uint8_t abDatagram[kDatagramSize];
    BuildDatagram(abDatagram, pyLine, bPhone, bSerial);
    sendto(fd, abDatagram, sizeof abDatagram, 0, ptAddr, sizeof tAddr);
    close(fd);
    oldSendTime = GetWallTime().dwTime;
}

void Notify() {
    if ((ptShare->dwKeyFlags & kKeyFlagToRecorder) != 0) {
        SendMsgQ(kRecorderIpcId, kKeyMailbox, kNotifyFrom, kNotifyCode, 0, 0, 0, 0, 0);
    }
}

// Repeats the last line when nothing was sent for more than 900 s. Before the first line there is
// nothing to repeat, so no keep-alive is sent then.
bool KeepAlive(uint32_t dwNow) {
    if (!bOldValid || dwNow - oldSendTime <= kKeepAliveSeconds) return false;
    SendByUDP(pyBufferOld, false, false);
    return true;
}

void WriteRecord(char* psRecord, const WallTime& t, const char* psCard, const char* psAmount,
                 bool bPhone, bool bSerial) {
    PosRecordPrintf(psRecord, t.dwTime, "ATMGEN|%d.%02d|%s|%s|%d|%d|#\n", PosSeconds(t),
                    PosHundredths(t), psCard, psAmount, bPhone ? 1 : 0, bSerial ? 1 : 0);
}

uint32_t Alarm(char* psRecord, const WallTime& t, bool bPhone) {
    WriteRecord(psRecord, t, "NONE", "NONE", bPhone, !bPhone);
    Notify();
    SendByUDP(pyBufferOld, bPhone, !bPhone);
    return t.dwTime;
}

bool IsRepeat(const uint8_t* pyLine) {
    return bOldValid &&
           std::memcmp(pyLine + kRepeatFrom, pyBufferOld + kRepeatFrom, kRepeatTo - kRepeatFrom + 1) == 0 &&
           std::memcmp(pyLine + kRepeatTail, pyBufferOld + kRepeatTail, kLineSize - kRepeatTail) == 0;
}
}  // namespace

uint32_t ProcCmd_ATM_Geniron(char* psRecord, const char* psText, int nLength) {
    const WallTime t = GetWallTime();
    char sLine[kLineSize + 1] = {};
    PosCopyLine(sLine, psText, nLength, kLineSize);
    if (std::strncmp(sLine, "alert_serial", 12) == 0) return Alarm(psRecord, t, false);
    if (std::strncmp(sLine, "alert_phone", 11) == 0) return Alarm(psRecord, t, true);

    KeepAlive(t.dwTime);
    const uint8_t* pyLine = reinterpret_cast<const uint8_t*>(sLine);
    if (IsRepeat(pyLine)) return 0;
    std::memcpy(pyBufferOld, pyLine, kLineSize);
    bOldValid = true;

    // The card text runs from the fourth ":" to the end of the text; a line end there is left out
    // so that the record stays one line. With fewer than four ":" it is empty.
    char* pCard = sLine;
    for (int i = 0; i < 4 && pCard != nullptr; ++i) {
        pCard = std::strchr(pCard, ':');
        if (pCard != nullptr) ++pCard;
    }
    if (pCard == nullptr) pCard = sLine + std::strlen(sLine);
    pCard[std::strcspn(pCard, "\r\n")] = '\0';
    WriteRecord(psRecord, t, pCard, "0", false, false);
    SendByUDP(pyBufferOld, false, false);
    Notify();
    return t.dwTime;
}

// Status check of the model (not called by this process): the keep-alive on its own, 0 when one
// was sent.
uint32_t CheckCmd_ATM_Geniron() { return KeepAlive(GetWallTime().dwTime) ? 0 : 1; }
