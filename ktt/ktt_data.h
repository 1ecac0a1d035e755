// The KTT monitoring link of the recorder's custom mode 4: the link port (/dev/ttyS4), the
// active link model, and the queue of events waiting to be reported to the monitoring centre.
#pragma once
#include <cstdint>

#include "ktt/ktt_model.h"

// KTT port descriptor, -1 while closed.
extern int fdKttUart;

// Writes the KTT model count and names to the shared block (custom mode 4 only).
void KttPublishModels();
uint32_t KttDeviceOpen();                 // 0 opened, 1 failed
uint32_t KttDeviceInit(uint32_t model);   // 0 model active, 1 refused (range or port closed)
uint32_t KttDeviceClose();                // 0 closed, 1 was not open
uint32_t KttDevicePoll();                 // 0 input ready within 10 ms, 1 otherwise
uint32_t ReceiveKttData();                // 0 bytes were read and handled, 1 nothing read
uint32_t CheckKttStatus();                // 1 no model active, else the model's periodic result
void WriteKttData(const uint8_t* bytes, uint32_t length);

// Event queue (km_KTT). An event code carries its class in bits 16..23 and its sub-code in
// bits 8..15. Targets: 1, 2 through the CDMA module; 3, 4 through the DTMF line; 5 never queued.
constexpr uint32_t kKttQueueSlots = 64;
constexpr int32_t kKttTargetNever = 5;
constexpr uint32_t kKttClassDtmf = 0xD4;     // the only class queued for DTMF reporting
constexpr uint32_t kKttLogType = 100;        // event-log type of a KTT event
constexpr uint32_t kKttMaxFailures = 3;      // an event failed more often is abandoned
constexpr uint32_t kMsgKttDrained = 0x10001; // to mailbox 1: the queue has drained, power off

struct KttEvent {
    uint32_t dwCode;
    uint32_t tTime;      // seconds since the epoch
    int32_t nTarget;
};

// Queues one event (when the link reports events of its class) and logs it (classes 3 and 9
// excepted).
void PutKTTEventMulti(uint32_t code, uint32_t time, int32_t target);
// Chooses the event to report now: the current one again while it has failed at most 3 times,
// else the oldest queued one. 0 with *event filled, or 1 when there is nothing to report (and
// then a waiting power-off is announced to the recorder).
uint32_t KttNextEvent(KttEvent* event);
// Outcome of reporting the current event: delivered ends it, a failure counts against it.
void KttEventResult(bool bDelivered);
// Asks for the power-off announcement once the queue has drained.
void KttWaitPowerOff();

// Message for the link (mailbox code 0x800014): queues the event of class p1 (low byte) and
// sub-code p2 (low byte) for target p3, stamped with the current time.
void KTTMessage(uint32_t p1, uint32_t p2, uint32_t p3);
