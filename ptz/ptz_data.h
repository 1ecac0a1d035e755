// The PTZ serial line: port, command dispatch to the drivers, per-channel queues and pacing.
#pragma once
#include <termios.h>
#include <cstdint>

#include "ptz/drivers/pm_common.h"

constexpr int kPTZQueueSlots = 32;

// Frames waiting for one channel. Packet k lives in slot k % 32; empty when nWritten <= nRead.
struct PTZSendQueue {
    int32_t nWritten;
    int32_t nRead;
    uint32_t tLastSend;      // jiffies of the last frame sent from this queue
    PTZPacket atSlot[kPTZQueueSlots];
};

extern int fdPTZUart;

struct PTZModel;
// The entry of a channel's model number when commands may be sent to it: not 0 ("NONE"), and
// below both the table's size and the model count published in the shared block; else null.
const PTZModel* PTZUsableModel(uint32_t nModel);

uint32_t PTZUartDeviceOpen();
uint32_t PTZUartDeviceClose();
int32_t PTZUartRawDataSend(const uint8_t* buf, uint32_t len);
void PTZUartSetAttr(const struct termios* settings);
uint32_t PTZControl(uint32_t source, uint32_t channel, uint32_t cmd, uint32_t p1, uint32_t p2,
                    uint32_t p3, uint32_t p4);
uint32_t CheckPTZStatus();
uint32_t CheckPTZQueue();

// Start-up state of all channels and queues, and the model table published to the shared block.
void PTZInitChannels();
void PTZPublishModels();
