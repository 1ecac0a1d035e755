// Text-insertion input: model selection, the polling read, and the daily record file.
#include "pos/pos_data.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <ctime>

#include "core/share_block.h"
#include "lib/ipc/MsgLine.h"
#include "pos/pos_model.h"
#include "pos/sm_common.h"

namespace {
constexpr const char* kSerialDevice = "/dev/ttyS0";
constexpr const char* kFifo = "/tmp/pos_fifo";
constexpr MsgSource kSource{kTagPos, "pos_data"};
constexpr int kTextMax = 128;   // longer reads are cut to 127 characters and a newline

static_assert(sizeof(DPRCSet) == kSharePosLayoutSize);
static_assert(kPosModelCount <= sizeof(ShareBlock::asPosModelName) / kShareModelNameLen);

int fdPosFIFO = -1;
int nCurrPosModel = 0;

// Serial inputs are opened without becoming the controlling terminal of this process.
int OpenInput(const PosModel& tModel) {
    if (tModel.TermSet != nullptr) {
        const int fd = open(kSerialDevice, O_RDONLY | O_NONBLOCK | O_NOCTTY);
        if (fd < 0) ErrLine(kSource, 78, "Can't open POS DEVICE");
        return fd;
    }
    const int fd = open(kFifo, O_RDONLY | O_NONBLOCK);
    if (fd < 0) ErrLine(kSource, 86, "Can't open POS FIFO");
    return fd;
}

// Appends a record to the day's file, named by the local date of its time.
void StoreRecord(const char* psRecord, uint32_t dwTime) {
    const time_t tTime = static_cast<time_t>(dwTime);
    struct tm tLocal{};
    if (localtime_r(&tTime, &tLocal) == nullptr) return;
    char sPath[64];
    std::snprintf(sPath, sizeof sPath, "/mnt/pos/%04d%02d%02d.pos", tLocal.tm_year + 1900,
                  tLocal.tm_mon + 1, tLocal.tm_mday);
    FILE* fp = std::fopen(sPath, "a+");
    if (fp == nullptr) return;
    // The stream appends wherever it stands; the step back to the record boundary is kept anyway.
    const long nPos = std::ftell(fp);
    if (nPos > 0 && nPos % kPosRecordSize != 0) std::fseek(fp, nPos - nPos % kPosRecordSize, SEEK_SET);
    std::fwrite(psRecord, kPosRecordSize, 1, fp);
    std::fclose(fp);
}
}  // namespace

uint32_t GetNumberOfPosModel() { return kPosModelCount; }

void PosPublishModels() {
    ptShare->nPosModelCount = GetNumberOfPosModel();
    for (uint32_t i = 0; i < kPosModelCount; ++i) {
        const char* psName = ptPosModelDatabase[i].POSName;
        std::snprintf(ptShare->asPosModelName[i], kShareModelNameLen, "%s", psName != nullptr ? psName : "NONE");
    }
    if (ptShare->nPosModel >= GetNumberOfPosModel()) ptShare->nPosModel = 0;
}

uint32_t PosModelInit(uint32_t nModel) {
    // The table's own size bounds the index too, whatever the shared count says.
    if (nModel >= ptShare->nPosModelCount || nModel >= kPosModelCount) return 1;
    const PosModel& tModel = ptPosModelDatabase[nModel];
    if (ptShare->nPortAssign == kPortAssignPosOnS0 && tModel.TermSet != nullptr) {
        const int fd = open(kSerialDevice, O_RDONLY | O_NONBLOCK | O_NOCTTY);
        if (fd < 0) {
            ErrLine(kSource, 108, "Can't open pos port");
            return 1;
        }
        tcsetattr(fd, TCSADRAIN, tModel.TermSet);
        close(fd);
    }
    if (tModel.ptDPRCSet != nullptr) std::memcpy(ptShare->abPosLayout, tModel.ptDPRCSet, sizeof(DPRCSet));
    if (tModel.POSInit != nullptr) tModel.POSInit();
    nCurrPosModel = static_cast<int>(nModel);
    PosFifoOpen(nModel);   // closes the old input first
    return 0;
}

uint32_t PosFifoOpen(uint32_t nModel) {
    if (nModel >= kPosModelCount) return 1;
    // An input left open is closed first, so that reopening never leaks a descriptor.
    PosFifoClose();
    fdPosFIFO = OpenInput(ptPosModelDatabase[nModel]);
    return fdPosFIFO < 0 ? 1 : 0;
}

uint32_t PosFifoClose() {
    if (fdPosFIFO == -1) return 1;
    close(fdPosFIFO);
    fdPosFIFO = -1;
    return 0;
}

uint32_t ReceivePosData() {
    if (fdPosFIFO == -1) return 1;
    char sText[kPosReadMax + 1];
    const ssize_t nRead = read(fdPosFIFO, sText, kPosReadMax);
    if (ptShare->nVariant != kVariantKtt && (ptShare->dwFeatures & kFeatureTextInsertion) == 0) return 1;
    if (nRead < 1) return 1;
    const PosProcCmdFn ProcCmd = ptPosModelDatabase[nCurrPosModel].ProcCmd;
    if (ProcCmd == nullptr) return 0;
    char sRecord[kPosRecordSize];
    const uint32_t dwTime = PosBuildRecord(ProcCmd, sText, static_cast<int>(nRead), sRecord);
    if (dwTime == 0 || ptShare->bPosStore == 0) return 0;
    StoreRecord(sRecord, dwTime);
    return 0;
}

uint32_t PosBuildRecord(PosProcCmdFn ProcCmd, char* sText, int nRead, char* sRecord) {
    sText[nRead] = '\0';
    if (nRead > kTextMax) {
        sText[kTextMax - 1] = '\n';
        sText[kTextMax] = '\0';
    }
    return ProcCmd(sRecord, sText, nRead);
}
