#include "tools/sim/recorder.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/sem.h>
#include <sys/shm.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "lib/ipc/IpcKey.h"
#include "lib/ipc/MessageQueue.h"
#include "tools/sim/sandbox_guard.h"
#include "tools/sim/serial_line.h"

#ifndef PTZ_CNTL_BINARY
#define PTZ_CNTL_BINARY "ptz_cntl"
#endif

std::string DefaultPtzCntlBinary() { return PTZ_CNTL_BINARY; }

Recorder::Recorder() {
    RequireSandbox("recorder simulator");
    const key_t key = IpcKey(kRecorderIpcId);
    m_nQueue = msgget(key, IPC_CREAT | 0777);
    m_nShm = shmget(key, kShareSize, IPC_CREAT | 0777);
    if (m_nShm >= 0) {
        void* p = shmat(m_nShm, nullptr, 0);
        if (p != reinterpret_cast<void*>(-1)) {
            std::memset(p, 0, kShareSize);
            m_ptShare = static_cast<ShareBlock*>(p);
        }
    }
    m_nSem = semget(key, 2, IPC_CREAT | 0777);
    if (m_nSem >= 0) {
        unsigned short values[2] = {1, 1};
        semctl(m_nSem, 0, SETALL, values);
    }
    if (m_ptShare) DefaultConfig();
}

Recorder::~Recorder() {
    Kill();
    if (m_fdErr >= 0) close(m_fdErr);
    if (m_fdOut >= 0) close(m_fdOut);
    if (m_ptShare) shmdt(m_ptShare);
    if (m_nShm >= 0) shmctl(m_nShm, IPC_RMID, nullptr);
    if (m_nQueue >= 0) msgctl(m_nQueue, IPC_RMID, nullptr);
    if (m_nSem >= 0) semctl(m_nSem, 0, IPC_RMID);
}

void Recorder::DefaultConfig() {
    ShareBlock& s = *m_ptShare;
    s.nChannels = 16;
    s.nSwitchOutputs = 4;
    s.dwKeyFlags = kKeyFlagToRecorder | kKeyFlagMailbox4;
    s.nPortAssign = 0;   // PTZ line and keypad on /dev/ttyS1
    s.nVariant = 0;
    s.dwFeatures = kFeatureTextInsertion;
    s.bPosStore = 1;
    for (auto& ch : s.atPtz) {
        ch.nPtzModel = 0;
        ch.nPtzAddress = 1;
    }
}

bool Recorder::Start(const std::string& binary, const std::vector<std::string>& args) {
    int pe[2], po[2];
    if (pipe2(pe, O_CLOEXEC) != 0 || pipe2(po, O_CLOEXEC) != 0) return false;
    m_nPid = fork();
    if (m_nPid < 0) return false;
    if (m_nPid == 0) {
        dup2(pe[1], 2);
        dup2(po[1], 1);
        std::vector<char*> argv;
        std::string sName = binary.substr(binary.rfind('/') + 1);
        argv.push_back(sName.data());
        std::vector<std::string> copy(args);
        for (auto& a : copy) argv.push_back(a.data());
        argv.push_back(nullptr);
        execv(binary.c_str(), argv.data());
        std::perror(binary.c_str());
        _exit(127);
    }
    close(pe[1]);
    close(po[1]);
    m_fdErr = pe[0];
    m_fdOut = po[0];
    fcntl(m_fdErr, F_SETFL, O_NONBLOCK);
    fcntl(m_fdOut, F_SETFL, O_NONBLOCK);
    m_nStatus = -1;
    return true;
}

bool Recorder::Running() {
    if (m_nPid <= 0) return false;
    int st;
    const pid_t r = waitpid(m_nPid, &st, WNOHANG);
    if (r == m_nPid) {
        m_nStatus = WIFEXITED(st) ? WEXITSTATUS(st) : 128 + WTERMSIG(st);
        m_nPid = -1;
        return false;
    }
    return true;
}

int Recorder::WaitExit(int timeout_ms) {
    const double tEnd = MonotonicSeconds() + timeout_ms / 1000.0;
    while (Running()) {
        if (MonotonicSeconds() > tEnd) return -1;
        PumpOutput(5);
    }
    PumpOutput(0);
    return m_nStatus;
}

void Recorder::Kill() {
    if (m_nPid > 0) {
        kill(m_nPid, SIGKILL);
        int st;
        waitpid(m_nPid, &st, 0);
        m_nPid = -1;
    }
}

bool Recorder::Send(uint32_t code, uint32_t p1, uint32_t p2, uint32_t p3, uint32_t p4, uint32_t p5,
                    uint32_t from) {
    MailboxMessage m = {128, from, 0, code, p1, p2, p3, p4, p5};
    return msgsnd(m_nQueue, &m, kMailboxBodySize, IPC_NOWAIT) == 0;
}

std::optional<Mail> Recorder::TakeQueued() {
    MailboxMessage m;
    for (long mb : kWatched) {
        if (msgrcv(m_nQueue, &m, kMailboxBodySize, mb, IPC_NOWAIT | MSG_NOERROR) >= 0)
            return Mail{m.mtype, m.nFrom, m.nStamp, m.nCode,
                        {m.nParam1, m.nParam2, m.nParam3, m.nParam4, m.nParam5}, MonotonicSeconds()};
    }
    return std::nullopt;
}

std::optional<Mail> Recorder::Receive(int timeout_ms, long mailbox) {
    const double tEnd = MonotonicSeconds() + timeout_ms / 1000.0;
    for (;;) {
        while (auto m = TakeQueued()) m_atInbox.push_back(*m);
        for (size_t i = 0; i < m_atInbox.size(); ++i) {
            if (mailbox == 0 || m_atInbox[i].nMailbox == mailbox) {
                Mail m = m_atInbox[i];
                m_atInbox.erase(m_atInbox.begin() + static_cast<long>(i));
                return m;
            }
        }
        if (MonotonicSeconds() >= tEnd) return std::nullopt;
        PumpOutput(1);
    }
}

std::optional<Mail> Recorder::WaitFor(uint32_t code, int timeout_ms) {
    const double tEnd = MonotonicSeconds() + timeout_ms / 1000.0;
    for (;;) {
        while (auto m = TakeQueued()) m_atInbox.push_back(*m);
        for (size_t i = 0; i < m_atInbox.size(); ++i) {
            if (m_atInbox[i].nCode == code) {
                Mail m = m_atInbox[i];
                m_atInbox.erase(m_atInbox.begin() + static_cast<long>(i));
                return m;
            }
        }
        if (MonotonicSeconds() >= tEnd) return std::nullopt;
        PumpOutput(1);
    }
}

void Recorder::PumpOutput(int timeout_ms) {
    struct pollfd p[2] = {{m_fdErr, POLLIN, 0}, {m_fdOut, POLLIN, 0}};
    if (m_fdErr < 0 && m_fdOut < 0) {
        if (timeout_ms > 0) usleep(static_cast<useconds_t>(timeout_ms) * 1000);
        return;
    }
    if (poll(p, 2, timeout_ms) <= 0) return;
    for (int i = 0; i < 2; ++i) {
        const int fd = i == 0 ? m_fdErr : m_fdOut;
        std::string& sPart = i == 0 ? m_sPartErr : m_sPartOut;
        if (fd < 0) continue;
        char buf[4096];
        ssize_t n;
        while ((n = read(fd, buf, sizeof buf)) > 0) {
            sPart.append(buf, static_cast<size_t>(n));
            size_t nl;
            while ((nl = sPart.find('\n')) != std::string::npos) {
                m_atOutput.push_back({MonotonicSeconds(), i == 0, sPart.substr(0, nl)});
                sPart.erase(0, nl + 1);
            }
        }
    }
}

const std::vector<OutputLine>& Recorder::Output(int timeout_ms) {
    PumpOutput(timeout_ms);
    return m_atOutput;
}

bool Recorder::OutputContains(const std::string& text, int timeout_ms) {
    const double tEnd = MonotonicSeconds() + timeout_ms / 1000.0;
    for (;;) {
        for (const auto& l : m_atOutput)
            if (l.sText.find(text) != std::string::npos) return true;
        if (MonotonicSeconds() >= tEnd) return false;
        PumpOutput(5);
    }
}
