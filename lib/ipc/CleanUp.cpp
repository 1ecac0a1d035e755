// The IPC library's failure hook and the removal of the recorder's IPC objects.
#include "lib/ipc/CleanUp.h"

#include "lib/ipc/IpcKey.h"
#include "lib/ipc/MessageQueue.h"
#include "lib/ipc/Semaphore.h"
#include "lib/ipc/SharedMem.h"

// Called by every failing IPC operation that may leave the process in trouble. This process has
// nothing to release there: its objects belong to the main application.
void CleanUp() {}

// For the process that owns the recorder's objects; ptz_cntl itself never removes them.
int RemoveAll() {
    RemoveSems(kRecorderIpcId);
    RemoveMem(kRecorderIpcId);
    return RemoveMsgQ(kRecorderIpcId);
}
