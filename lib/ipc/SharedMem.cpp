// Shared memory segments named by the recorder's IPC key rule.
#include "lib/ipc/SharedMem.h"

#include <sys/ipc.h>
#include <sys/shm.h>

#include <cstring>

#include "lib/ipc/CleanUp.h"
#include "lib/ipc/IpcKey.h"
#include "lib/ipc/MsgLine.h"

namespace {
constexpr MsgSource kSource{kTagShmem, "SharedMem"};
void* const kShmFailed = reinterpret_cast<void*>(-1);
}  // namespace

void* SharedMem(size_t size, int n) {
    int segment = shmget(IpcKey(n), size, IPC_CREAT | 0777);
    if (segment < 0) {
        ErrLine(kSource, 58, "SharedMem: Unable to get memory segment id. (shmget)");
        CleanUp();
        return nullptr;
    }
    void* address = shmat(segment, nullptr, 0);
    if (address == kShmFailed) {
        ErrLine(kSource, 65, "SharedMem: Unable to attach memory segment. (shmat)");
        CleanUp();
        return nullptr;
    }
    // The creator starts from a clean block, also when the segment outlived a previous run.
    std::memset(address, 0, size);
    return address;
}

void* _CrShMem(size_t size, int n) { return SharedMem(size, n); }

void* AttachMem(int n) {
    int segment = shmget(IpcKey(n), 0, 0);
    if (segment < 0) {
        ErrLine(kSource, 107, "AttachMem: Unable to get memory segment id. (shmget)");
        CleanUp();
        return nullptr;
    }
    void* address = shmat(segment, nullptr, 0);
    if (address == kShmFailed) {
        ErrLine(kSource, 114, "AttachMem: Unable to attach memory segment. (shmat)");
        CleanUp();
        return nullptr;
    }
    return address;
}

void* _AtShMem(int n) { return AttachMem(n); }

// Like the other removals, a failed removal does not run the failure hook.
int RemoveMem(int n) {
    int segment = shmget(IpcKey(n), 0, 0);
    if (segment < 0) return segment;
    int result = shmctl(segment, IPC_RMID, nullptr);
    if (result != 0)
        ErrLine(kSource, 150, "RemoveMem: Unable to remove memory segment. (shmctl)");
    return result;
}

int _RmShMem(int n) { return RemoveMem(n); }

int DetachMem(const void* address) {
    if (shmdt(address) != 0) {
        ErrLine(kSource, 167, "DetachMem: Unable to detach memory segment. (shmdt)");
        return -1;
    }
    return 0;
}
