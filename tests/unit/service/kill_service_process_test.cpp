#include "service/kill_service_process.h"

#include "service_room_test.h"

using DistributedFs::KillServiceProcess;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::string kKill = "KillServiceProcess";

class KillServiceProcessTest : public ServiceRoomTest {
protected:
    FakeProcesses& processes = platform.Processes();
};

TEST_F(KillServiceProcessTest, Id0_OnlyLogs) {
    KillServiceProcess(0);
    EXPECT_THAT(Lines(), ElementsAre(Error("kill service process 0", kKill)));
    EXPECT_THAT(platform.Calls(), IsEmpty());
}

TEST_F(KillServiceProcessTest, RunningProcess_IsTerminatedWithExitCode0) {
    processes.Start(42);
    KillServiceProcess(42);
    EXPECT_FALSE(processes.IsRunning(42));
    EXPECT_THAT(Lines(), ElementsAre(Error("kill service process 42", kKill)));
    EXPECT_THAT(platform.Calls(),
                ElementsAre("OpenProcess(0x1FFFFF, 0, 42)", "TerminateProcess(42, 0)",
                            "CloseHandle(process 42)"));
}

TEST_F(KillServiceProcessTest, LargestId_IsLoggedUnsigned) {
    KillServiceProcess(0xFFFFFFFF);
    EXPECT_THAT(Lines(), ElementsAre(Error("kill service process 4294967295", kKill),
                                     Error("open service process 4294967295 error 87", kKill)));
}

TEST_F(KillServiceProcessTest, ProcessThatIsGone_LogsWhyItCouldNotBeOpened) {
    KillServiceProcess(42);
    EXPECT_THAT(Lines(), ElementsAre(Error("kill service process 42", kKill),
                                     Error("open service process 42 error 87", kKill)));
    EXPECT_THAT(platform.Calls(), ElementsAre("OpenProcess(0x1FFFFF, 0, 42)"));
}

TEST_F(KillServiceProcessTest, ProtectedProcess_LogsWhyItCouldNotBeOpened) {
    processes.Start(42);
    processes.RefuseOpen(42, ERROR_ACCESS_DENIED);
    KillServiceProcess(42);
    EXPECT_THAT(Lines(), ElementsAre(Error("kill service process 42", kKill),
                                     Error("open service process 42 error 5", kKill)));
    EXPECT_TRUE(processes.IsRunning(42));
}

TEST_F(KillServiceProcessTest, RefusedTermination_IsLoggedAndTheHandleClosed) {
    processes.Start(42);
    platform.Faults().FailCall("TerminateProcess", 1, ERROR_ACCESS_DENIED);
    KillServiceProcess(42);
    EXPECT_THAT(Lines(), ElementsAre(Error("kill service process 42", kKill),
                                     Error("kill service process 42 error 5", kKill)));
    EXPECT_EQ(platform.Calls().back(), "CloseHandle(process 42)");
}

TEST_F(KillServiceProcessTest, WithAnyCallFailing_ClosesItsHandle) {
    const unsigned calls = WithEveryCallFailing([this] { return processes.Start(); },
                                                [](std::uint32_t id) { KillServiceProcess(id); });
    EXPECT_EQ(calls, 2U);
}

}  // namespace
