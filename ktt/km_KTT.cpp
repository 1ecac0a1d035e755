// KTT event queue: the alarm events waiting to be reported to the monitoring centre, the rule
// that picks the next one, and the link's message entry.
//
// Event code (u32):
//   bits 24..31  not used
//   bits 16..23  class
//   bits  8..15  sub-code
//   bits  0..7   detail
// A report carries the low 24 bits. Event n lives in slot n & 63; the queue is empty while
// nEventRead >= nEventWrite.
#include "core/ptz_cntl.h"
#include "core/share_block.h"
#include "ktt/ktt_data.h"
#include "lib/ipc/Clock.h"
#include "lib/ipc/MessageQueue.h"
#include "lib/log/log.h"

namespace {
// Reporting paths (nKttEventEnable): 0 off, 4 DTMF (its class only); any other value, FSK (2)
// among them, queues every event.
constexpr uint32_t kReportOff = 0;
constexpr uint32_t kReportDtmf = 4;
constexpr uint32_t kClassNotLogged1 = 3;
constexpr uint32_t kClassNotLogged2 = 9;

uint32_t pdwEventCode[kKttQueueSlots];
uint32_t ptEventTime[kKttQueueSlots];
int32_t pnEventTarget[kKttQueueSlots];
uint32_t nEventWrite = 0;
uint32_t nEventRead = 0;

// The event being reported.
uint32_t dwLastEventCode_LOCAL = 0;
uint32_t tLastEventTime_LOCAL = 0;
int32_t nLastEventTarget_LOCAL = 0;   // 0 = none
uint32_t dwLastEventFailCount = 0;
uint8_t bWaitPowerOff_LOCAL = 0;

uint32_t ClassOf(uint32_t code) { return (code >> 16) & 0xFFu; }

// Stores the event; on a full queue the oldest are dropped so that 63 remain. Both counters are
// pulled back by 64 once the read counter passes 64, so they stay small and never wrap.
void Insert(uint32_t code, uint32_t time, int32_t target) {
    uint32_t w = nEventWrite;
    uint32_t r = nEventRead;
    pdwEventCode[w & (kKttQueueSlots - 1)] = code;
    ptEventTime[w & (kKttQueueSlots - 1)] = time;
    pnEventTarget[w & (kKttQueueSlots - 1)] = target;
    if (r + kKttQueueSlots <= w + 1) r = w - (kKttQueueSlots - 2);
    if (r > kKttQueueSlots) {
        nEventRead = r - kKttQueueSlots;
        nEventWrite = w - (kKttQueueSlots - 1);
    } else {
        nEventRead = r;
        nEventWrite = w + 1;
    }
}
}  // namespace

// The reporting paths (DTMF, FSK) are not part of this program: on those settings the event is
// queued and left for them, without starting a transmission.
void PutKTTEventMulti(uint32_t code, uint32_t time, int32_t target) {
    uint32_t path = ptShare->nKttEventEnable;
    bool bQueue = ptShare->nVariant == kVariantKtt && path != kReportOff && target != kKttTargetNever;
    if (bQueue && path == kReportDtmf && ClassOf(code) != kKttClassDtmf) bQueue = false;
    if (bQueue) Insert(code, time, target);

    uint32_t eventClass = ClassOf(code);
    if (eventClass != kClassNotLogged1 && eventClass != kClassNotLogged2)
        LogWrite(kKttLogType, eventClass, (code >> 8) & 0xFFu);
}

uint32_t KttNextEvent(KttEvent* event) {
    bool bCurrent = nLastEventTarget_LOCAL != 0 && dwLastEventFailCount <= kKttMaxFailures;
    if (!bCurrent && nEventRead < nEventWrite) {
        uint32_t slot = nEventRead & (kKttQueueSlots - 1);
        ++nEventRead;
        dwLastEventCode_LOCAL = pdwEventCode[slot];
        tLastEventTime_LOCAL = ptEventTime[slot];
        nLastEventTarget_LOCAL = pnEventTarget[slot];
        dwLastEventFailCount = 0;
        bCurrent = true;
    }
    if (!bCurrent) {
        if (bWaitPowerOff_LOCAL) {
            SendMsgQ(kRecorderIpcId, kMainAppMailbox, kOwnMailbox, kMsgKttDrained, 0, 0, 0, 0, 0);
            bWaitPowerOff_LOCAL = 0;
        }
        return 1;
    }
    if (event != nullptr) *event = {dwLastEventCode_LOCAL, tLastEventTime_LOCAL, nLastEventTarget_LOCAL};
    return 0;
}

void KttEventResult(bool bDelivered) {
    if (nLastEventTarget_LOCAL == 0) return;
    if (bDelivered)
        nLastEventTarget_LOCAL = 0;
    else
        ++dwLastEventFailCount;
}

void KttWaitPowerOff() { bWaitPowerOff_LOCAL = 1; }

void KTTMessage(uint32_t p1, uint32_t p2, uint32_t p3) {
    uint32_t code = (p1 & 0xFFu) << 16 | (p2 & 0xFFu) << 8;
    PutKTTEventMulti(code, GetWallTime().dwTime, static_cast<int32_t>(p3));
}
