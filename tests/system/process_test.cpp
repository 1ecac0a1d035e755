// The process's life as the monitor and the main application see it.
#include <signal.h>
#include <sys/shm.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <fcntl.h>

#include "lib/ipc/IpcKey.h"
#include "tests/system/harness.h"

namespace {

TEST_F(SystemTest, AnnouncesItselfAnswersLivenessAndEndsOnStop) {
    ASSERT_TRUE(rec->Start(PTZ_CNTL_BINARY, {"42"}));
    auto start = rec->WaitFor(kMsgStarted, 5000);
    ASSERT_TRUE(start.has_value());
    EXPECT_EQ(start->nMailbox, 1);
    EXPECT_EQ(start->nFrom, 128u);
    EXPECT_EQ(start->p[0], 42u);
    EXPECT_EQ(start->p[1], static_cast<uint32_t>(rec->Pid()));
    rec->Send(kMsgAlive);
    auto alive = rec->WaitFor(kMsgAliveAnswer, 2000);
    ASSERT_TRUE(alive.has_value());
    EXPECT_EQ(alive->p[0], 42u);
    EXPECT_EQ(StopAndWait(), 0);
    auto end = rec->WaitFor(kMsgEnded, 1000);
    ASSERT_TRUE(end.has_value());
    EXPECT_EQ(end->p[0], 42u);
    EXPECT_TRUE(rec->OutputContains("Info(ptz_cntl  ) PTZ_CNTL Process Start."));
    EXPECT_TRUE(rec->OutputContains("Info(ptz_cntl  ) PTZ_CNTL Process End."));
}

TEST_F(SystemTest, IgnoresUnknownCodesAndChannelsOutOfRange) {
    Camera(0, 14, 1);
    ASSERT_TRUE(StartAndWait());
    rec->Send(0x12345, 1, 2, 3);
    rec->Send(kMsgPtzCommand, 16, 15, 8);           // channel 16 does not exist
    rec->Send(kMsgPtzCommand, 0xFFFFFFFF, 15, 8);   // nor does channel -1
    rec->Send(kMsgAlive);
    ASSERT_TRUE(rec->WaitFor(kMsgAliveAnswer, 2000).has_value());
    ExpectPtz({}, 300);
    EXPECT_EQ(StopAndWait(), 0);
}

TEST_F(SystemTest, WithoutArgumentRefusesToRun) {
    ASSERT_TRUE(rec->Start(PTZ_CNTL_BINARY, {}));
    EXPECT_EQ(rec->WaitExit(5000), 1);
    EXPECT_TRUE(rec->OutputContains(
        "Err (libproc   /processpipe:1021) \"ptz_cntl\" process must be executed by monitor process."));
    EXPECT_FALSE(rec->OutputContains("PTZ_CNTL Process Start"));
    EXPECT_FALSE(rec->Receive(200).has_value());
    EXPECT_EQ(rec->Share().tUpHistory.nStarts, 0u);   // it never attached
}

TEST_F(SystemTest, SecondInstanceRefusesToRun) {
    ASSERT_TRUE(StartAndWait());
    std::string err;
    EXPECT_EQ(RunPtzCntl({"8"}, &err), 1);
    EXPECT_NE(err.find("Err (libproc   /processpipe:1005) Already Running \"ptz_cntl\" Process. (2)"),
              std::string::npos) << err;
    EXPECT_EQ(err.find("PTZ_CNTL Process Start"), std::string::npos);
    EXPECT_FALSE(rec->WaitFor(kMsgStarted, 200).has_value());   // no start message from the second
}

TEST_F(SystemTest, MissingSharedBlockEndsStartUp) {
    const int id = shmget(IpcKey(47), 0, 0);
    ASSERT_GE(id, 0);
    ASSERT_EQ(shmctl(id, IPC_RMID, nullptr), 0);   // gone for every new attach
    std::string err;
    EXPECT_EQ(RunPtzCntl({"7"}, &err), 1);
    EXPECT_NE(err.find("Err (libshmem  /SharedMem:107) AttachMem: Unable to get memory segment id. (shmget)"),
              std::string::npos) << err;
    EXPECT_FALSE(rec->Receive(200).has_value());
}

TEST_F(SystemTest, EndsWhenItsParentDies) {
    // An intermediate parent starts ptz_cntl and dies; the orphan is adopted by the sandbox's init.
    const pid_t middle = fork();
    if (middle == 0) {
        if (fork() == 0) {
            const int null = open("/dev/null", O_WRONLY);
            dup2(null, 2);
            execl(PTZ_CNTL_BINARY, "ptz_cntl", "5", static_cast<char*>(nullptr));
            _exit(127);
        }
        // Stay until the child has announced itself, so the death happens while it runs.
        usleep(300000);
        _exit(0);
    }
    int st;
    waitpid(middle, &st, 0);
    auto start = rec->WaitFor(kMsgStarted, 5000);
    ASSERT_TRUE(start.has_value());
    auto end = rec->WaitFor(kMsgEnded, 2000);
    ASSERT_TRUE(end.has_value());
    EXPECT_EQ(end->p[0], 5u);
}

TEST_F(SystemTest, StartUpHistoryShiftsOldestOut) {
    LogUpHistory& h = rec->Share().tUpHistory;
    h.nStarts = 30;
    for (int i = 0; i < kUpHistoryDepth; ++i) {
        h.adwUptime[i] = 100 + static_cast<uint32_t>(i);
        h.adwTime[i] = 1000 + static_cast<uint32_t>(i);
    }
    ASSERT_TRUE(StartAndWait());
    EXPECT_EQ(h.nStarts, 31u);
    EXPECT_GT(h.adwTime[0], 1000000000u);
    for (int i = 1; i < kUpHistoryDepth; ++i) {
        EXPECT_EQ(h.adwUptime[i], 100u + static_cast<uint32_t>(i) - 1);
        EXPECT_EQ(h.adwTime[i], 1000u + static_cast<uint32_t>(i) - 1);
    }
    EXPECT_EQ(StopAndWait(), 0);
}

}  // namespace
