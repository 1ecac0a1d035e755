// Text insertion: selection of the model, polling of its input (serial line or FIFO), and the
// daily record file.
#pragma once
#include <cstdint>

#include "pos/pos_model.h"

constexpr int kPosReadMax = 256;   // bytes one polling read takes

uint32_t GetNumberOfPosModel();
// Start-up publishing: model count and names into the shared block, and nPosModel reset to 0 when
// it is not below the count.
void PosPublishModels();
// Selects a model: line setting, layout into the shared block, set-up, reopening of the input.
// 0 success (also when the new input cannot be opened), 1 failure with nothing changed.
uint32_t PosModelInit(uint32_t nModel);
// One polling step: 1 when nothing could be read, 0 otherwise.
uint32_t ReceivePosData();
// Hands one read to a record builder as the polling step does: the nRead bytes in sText (which
// has room for one byte more) are terminated, and a read longer than 128 bytes is cut to 127
// characters and a newline; the builder is still told the read's length. Returns what the builder
// returns: the record's time, 0 for no record.
uint32_t PosBuildRecord(PosProcCmdFn ProcCmd, char* sText, int nRead, char* sRecord);
uint32_t PosFifoOpen(uint32_t nModel);
uint32_t PosFifoClose();
