// The simulated recorder: plays the main application and the monitor for one ptz_cntl process.
// It creates the message queue, the shared block and the semaphore set under identifier 47, fills
// the configuration, starts ptz_cntl as its child with a process number, exchanges mailbox
// messages with it and collects what it writes on standard error and standard output.
// Sandbox only (the objects and paths are the real recorder's).
#pragma once
#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/share_block.h"

struct Mail {
    long nMailbox;         // destination mailbox
    uint32_t nFrom;
    uint32_t nStamp;
    uint32_t nCode;
    uint32_t p[5];
    double tSeconds;       // monotonic time it was taken off the queue
};

struct OutputLine {
    double tSeconds;
    bool bStderr;
    std::string sText;
};

class Recorder {
public:
    static constexpr size_t kShareSize = 160 * 1024;   // the block as the main application sizes it

    // Creates queue, block and semaphores (semaphore 1, the log lock, starts at 1); the block is
    // filled with a sensible default configuration (see DefaultConfig).
    Recorder();
    ~Recorder();   // kills a still running process and removes the IPC objects
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    bool Ok() const { return m_ptShare != nullptr && m_nQueue >= 0; }
    ShareBlock& Share() { return *m_ptShare; }
    void DefaultConfig();   // 16 channels, no cameras, no keypad, no text input, keys enabled

    // Starts the process (the binary given, or ptz_cntl next to the simulator); args beyond the
    // program name as given (default: the process number 7).
    bool Start(const std::string& binary, const std::vector<std::string>& args = {"7"});
    bool Running();
    pid_t Pid() const { return m_nPid; }
    // Waits for the process to end; its exit status, or -1 on time-out.
    int WaitExit(int timeout_ms);
    void Kill();

    // Sends a message to mailbox 128 (from the main application unless said otherwise).
    bool Send(uint32_t code, uint32_t p1 = 0, uint32_t p2 = 0, uint32_t p3 = 0, uint32_t p4 = 0,
              uint32_t p5 = 0, uint32_t from = 1);
    // Takes the next message for one of the watched mailboxes (1, 2, 4), waiting at most timeout_ms.
    std::optional<Mail> Receive(int timeout_ms, long mailbox = 0);
    // Waits for a message with the given code on a watched mailbox; other messages are kept.
    std::optional<Mail> WaitFor(uint32_t code, int timeout_ms);
    std::vector<Mail>& Inbox() { return m_atInbox; }

    // Collects the process's output lines so far (waiting up to timeout_ms for more).
    const std::vector<OutputLine>& Output(int timeout_ms = 0);
    bool OutputContains(const std::string& text, int timeout_ms = 0);

    // Mailboxes the simulator reads as the recorder's processes.
    static constexpr long kWatched[] = {1, 2, 4};

private:
    void PumpOutput(int timeout_ms);
    std::optional<Mail> TakeQueued();

    int m_nQueue = -1;
    int m_nShm = -1;
    int m_nSem = -1;
    ShareBlock* m_ptShare = nullptr;
    pid_t m_nPid = -1;
    int m_nStatus = -1;
    int m_fdErr = -1;
    int m_fdOut = -1;
    std::string m_sPartErr, m_sPartOut;
    std::vector<OutputLine> m_atOutput;
    std::vector<Mail> m_atInbox;   // taken off the queue but not yet asked for
};

// Path of the ptz_cntl binary built beside the tools.
std::string DefaultPtzCntlBinary();
