// The recorder's System V semaphore sets, named by the IPC key rule.
#include "lib/ipc/Semaphore.h"

#include <sys/ipc.h>
#include <sys/sem.h>

#include <cstdlib>

#include "lib/ipc/CleanUp.h"
#include "lib/ipc/IpcKey.h"
#include "lib/ipc/MsgLine.h"

namespace {

constexpr MsgSource kSource{kTagSem, "Semaphore"};

// The caller of semctl declares this union (the system headers do not).
union SemArg {
    int val;
    struct semid_ds* buf;
    unsigned short* array;
};

// One semop of +1 or -1 on semaphore sem of set n; the error texts name the operation.
int Step(int sem, int n, int flags, bool down) {
    int set = semget(IpcKey(n), 0, 0);
    if (set < 0) {
        if (down)
            ErrLine(kSource, 117, "Down: Unable to get semaphore id. (semget)");
        else
            ErrLine(kSource, 165, "Up: Unable to get semaphore id. (semget)");
        CleanUp();
        return -1;
    }
    struct sembuf op;
    op.sem_num = static_cast<unsigned short>(sem);
    op.sem_op = static_cast<short>(down ? -1 : 1);
    op.sem_flg = static_cast<short>(flags & 0xFFFF);
    if (semop(set, &op, 1) != 0) {
        if (down)
            ErrLine(kSource, 130, "Down: Can't perform down on semaphore %d", sem);
        else
            ErrLine(kSource, 178, "Up: Can't perform up on semaphore %d", sem);
        CleanUp();
        return -1;
    }
    return 0;
}

}  // namespace

// Exclusive creation: a set that already exists is an error, never silently reused.
// A failed allocation of the value array is reported as a failed initialisation.
int Semaphores(const int32_t* values, int count, int n) {
    int set = semget(IpcKey(n), count, IPC_CREAT | IPC_EXCL | 0777);
    if (set < 0) {
        ErrLine(kSource, 49, "Semaphores: Unable to get semaphore id. (semget)");
        CleanUp();
        return -1;
    }
    auto* initial = static_cast<unsigned short*>(std::calloc(static_cast<size_t>(count), sizeof(unsigned short)));
    int result = -1;
    if (initial != nullptr) {
        for (int i = 0; i < count; ++i) initial[i] = static_cast<unsigned short>(values[i]);
        SemArg arg;
        arg.array = initial;
        result = semctl(set, 0, SETALL, arg);
        std::free(initial);
    }
    if (result != 0) {
        ErrLine(kSource, 59, "Semaphores: Unable to initialize semaphores. (semctl)");
        CleanUp();
        return -1;
    }
    return 0;
}

int RemoveSems(int n) {
    int set = semget(IpcKey(n), 0, 0);
    if (set < 0) return set;
    int result = semctl(set, 0, IPC_RMID);
    if (result != 0)
        ErrLine(kSource, 84, "RemoveSems: Unable to remove semaphores. (semctl)");
    return result;
}

int Down(int sem, int n) { return Step(sem, n, 0, true); }
int _Down(int sem, int n, int flags) { return Step(sem, n, flags, true); }
int DownWithFlag(int sem, int flags, int n) { return Step(sem, n, flags, true); }
int Up(int sem, int n) { return Step(sem, n, 0, false); }
int _Up(int sem, int n, int flags) { return Step(sem, n, flags, false); }
int UpWithFlag(int sem, int flags, int n) { return Step(sem, n, flags, false); }
