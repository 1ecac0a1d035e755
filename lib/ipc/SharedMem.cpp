// Shared memory segments named by the recorder's IPC key rule.
#include "lib/ipc/SharedMem.h"

#include <sys/ipc.h>
#include <sys/shm.h>

#include <cstdio>
#include <cstring>

#include "lib/ipc/CleanUp.h"
#include "lib/ipc/IpcKey.h"

namespace {
constexpr const char* kFile = "SharedMem";
void* const kShmFailed = reinterpret_cast<void*>(-1);
}  // namespace

void* SharedMem(size_t size, int n) {
    int segment = shmget(IpcKey(n), size, IPC_CREAT | 0777);
    if (segment < 0) {
        std::fprintf(stderr, "Err (libshmem  /%s:%d) SharedMem: Unable to get memory segment id. (shmget)\n",
                     kFile, 58);
        CleanUp();
        return nullptr;
    }
    void* address = shmat(segment, nullptr, 0);
    if (address == kShmFailed) {
        std::fprintf(stderr, "Err (libshmem  /%s:%d) SharedMem: Unable to attach memory segment. (shmat)\n",
                     kFile, 65);
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
        std::fprintf(stderr, "Err (libshmem  /%s:%d) AttachMem: Unable to get memory segment id. (shmget)\n",
                     kFile, 107);
        CleanUp();
        return nullptr;
    }
    void* address = shmat(segment, nullptr, 0);
    if (address == kShmFailed) {
        std::fprintf(stderr, "Err (libshmem  /%s:%d) AttachMem: Unable to attach memory segment. (shmat)\n",
                     kFile, 114);
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
        std::fprintf(stderr, "Err (libshmem  /%s:%d) RemoveMem: Unable to remove memory segment. (shmctl)\n",
                     kFile, 150);
    return result;
}

int _RmShMem(int n) { return RemoveMem(n); }

int DetachMem(const void* address) {
    if (shmdt(address) != 0) {
        std::fprintf(stderr, "Err (libshmem  /%s:%d) DetachMem: Unable to detach memory segment. (shmdt)\n",
                     kFile, 167);
        return -1;
    }
    return 0;
}
