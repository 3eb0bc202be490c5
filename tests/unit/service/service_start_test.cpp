// Tests starting the service of a row, and ending the process of its earlier run.

#include "service_control_test.h"

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const std::string kStart = "ServiceManager::StartServiceByIndex";
const std::string kWait = "ServiceManager::WaitServiceStatus";
const std::string kKill = "KillServiceProcess";

using StartServiceTest = ServiceControlTest;
using LingeringProcessTest = ServiceControlTest;

TEST_F(StartServiceTest, StoppedService_IsStartedAndWaitedFor) {
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Kill(0), Info("start service successful", kStart)));
    EXPECT_EQ(PcStatus().dwCurrentState, DWORD{SERVICE_RUNNING});
    EXPECT_THAT(
        ScmCalls(),
        ElementsAre(
            "OpenSCManagerW(null, null, 0xF003F)", "OpenServiceW(\"PlenxPcSvc\", 0x10034)",
            "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
            "StartServiceW(PlenxPcSvc, 3, \"C:\\App\", \"C:\\Data\\plenx\\pc\", "
            "\"1\")",
            "QueryServiceStatusEx(PlenxPcSvc, 0, 36)", "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
            "QueryServiceStatusEx(PlenxPcSvc, 0, 36)", "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
            "CloseServiceHandle(PlenxPcSvc)", "CloseServiceHandle(manager)"));
    // The service runs after 15 ms. The poll at 20 ms sees this, and a sleep follows each poll.
    EXPECT_THAT(Sleeps(), AllOf(SizeIs(3), Each("Sleep(10)")));
}

TEST_F(StartServiceTest, ServiceInAnyStateButStoppedOrStopping_IsTakenForRunning) {
    for (const DWORD state : {SERVICE_START_PENDING, SERVICE_RUNNING, SERVICE_CONTINUE_PENDING,
                              SERVICE_PAUSE_PENDING, SERVICE_PAUSED}) {
        SCOPED_TRACE(state);
        PcIs(state);
        LookFromHere();
        EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
        EXPECT_THAT(Lines(), ElementsAre(Info("service is running", kStart)));
        EXPECT_THAT(ScmCalls(),
                    ElementsAre("OpenSCManagerW(null, null, 0xF003F)",
                                "OpenServiceW(\"PlenxPcSvc\", 0x10034)",
                                "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
                                "CloseServiceHandle(PlenxPcSvc)", "CloseServiceHandle(manager)"));
    }
}

TEST_F(StartServiceTest, ServiceStillStopping_IsWaitedForAndThenStarted) {
    scm.RunScript(kPcName, {{0, SERVICE_STOP_PENDING, 0, 2000}, {300, SERVICE_STOPPED}});
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Kill(0), Info("start service successful", kStart)));
}

TEST_F(StartServiceTest, ServiceThatNeverStops_IsNotStarted) {
    PcIs(SERVICE_STOP_PENDING, 0, 1000);
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 5);
    EXPECT_THAT(Lines(), ElementsAre(Kill(0), Error("start service error 1056", kStart)));
    // The start waits for as long as the service's own hint says, in steps of 5 ms.
    EXPECT_EQ(platform.Clock().Now(), 1005U);
}

TEST_F(StartServiceTest, RefusedStart_Returns5) {
    scm.RefuseStart(kPcName, ERROR_SERVICE_DISABLED);
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 5);
    EXPECT_THAT(Lines(), ElementsAre(Kill(0), Error("start service error 1058", kStart)));
}

TEST_F(StartServiceTest, ServiceThatStopsInsteadOfRunning_Returns5) {
    scm.ScriptStart(kPcName, {{0, SERVICE_START_PENDING, 0, 2000}, {50, SERVICE_STOPPED}});
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 5);
    EXPECT_THAT(Lines(), ElementsAre(Kill(0), Error("wait service status error", kStart)));
}

TEST_F(StartServiceTest, ServiceThatStopsAtOnce_Returns5) {
    scm.ScriptStart(kPcName, {{0, SERVICE_STOPPED}});
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 5);
    EXPECT_THAT(Lines(), ElementsAre(Kill(0), Error("wait service status error", kStart)));
}

TEST_F(StartServiceTest, ServiceThatCrashesWhileStarting_Returns5) {
    scm.ScriptStart(kPcName, {});
    platform.Faults().Before("QueryServiceStatusEx", 4,
                             [this] { processes.End(PcStatus().dwProcessId); });
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 5);
    EXPECT_THAT(Lines(), ElementsAre(Kill(0), Error("wait service status error", kStart)));
}

TEST_F(StartServiceTest, ServiceThatNeverLeavesStartPending_Returns5AfterItsHint) {
    scm.ScriptStart(kPcName, {{0, SERVICE_START_PENDING, 0, 3000}});
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 5);
    EXPECT_THAT(Lines(), ElementsAre(Kill(0), Error("wait service status error", kStart)));
    EXPECT_EQ(platform.Clock().Now(), 3015U);
    EXPECT_EQ(PcStatus().dwCurrentState, DWORD{SERVICE_START_PENDING});  // it is left alone
}

TEST_F(StartServiceTest, ServiceWithAHintOf0_IsGivenUpAtOnce) {
    scm.ScriptStart(kPcName, {{0, SERVICE_START_PENDING, 0, 0}, {10, SERVICE_RUNNING}});
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 5);
}

TEST_F(StartServiceTest, SlowServiceThatReportsProgress_IsWaitedFor) {
    StatusScript script;
    for (DWORD step = 0; step != 20; ++step) {
        script.push_back({step * 900, SERVICE_START_PENDING, step, 1000});
    }
    script.push_back({18000, SERVICE_RUNNING});
    scm.ScriptStart(kPcName, script);
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Kill(0), Info("start service successful", kStart)));
}

TEST_F(StartServiceTest, ManagerRefused_Returns1) {
    platform.Faults().FailCall("OpenSCManagerW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 1);
    EXPECT_THAT(Lines(), ElementsAre(Error("open sc manager error 5", kStart)));
}

TEST_F(StartServiceTest, ServiceThatIsNotRegistered_Returns2) {
    EXPECT_EQ(manager->StartServiceByIndex(kOffice), 2);
    EXPECT_THAT(Lines(), ElementsAre(Error("open service error 1060", kStart)));
    EXPECT_EQ(platform.Calls().back(), "CloseServiceHandle(manager)");
}

TEST_F(StartServiceTest, FirstQueryFailing_Returns4) {
    platform.Faults().FailCall("QueryServiceStatusEx", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 4);
    EXPECT_THAT(Lines(), ElementsAre(Error("query service status error 5", kStart)));
}

TEST_F(StartServiceTest, QueryAfterStartFailing_Returns4) {
    platform.Faults().FailCall("QueryServiceStatusEx", 2, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 4);
    EXPECT_THAT(Lines(), ElementsAre(Kill(0), Error("query service status error 5", kStart)));
}

TEST_F(StartServiceTest, QueryInTheWaitFailing_LogsBothLinesAndReturns5) {
    platform.Faults().FailCall("QueryServiceStatusEx", 3, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 5);
    EXPECT_THAT(Lines(), ElementsAre(Kill(0), Error("query service status error 5", kWait),
                                     Error("wait service status error", kStart)));
}

// The process that the manager last saw

TEST_F(LingeringProcessTest, ProcessOfAStoppedService_IsEndedBeforeTheNextStart) {
    scm.ScriptStart(kPcName, {{0, SERVICE_RUNNING, 0, 0, processes.Start(4242)}});
    StartPc();
    PcIs(SERVICE_STOPPED);
    LookFromHere();
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Kill(4242), Info("start service successful", kStart)));
    EXPECT_THAT(processes.Terminated(), ElementsAre(4242U));
    EXPECT_THAT(platform.CallsOf({"TerminateProcess", "StartServiceW"}),
                ElementsAre("TerminateProcess(4242, 0)",
                            "StartServiceW(PlenxPcSvc, 3, \"C:\\App\", "
                            "\"C:\\Data\\plenx\\pc\", \"1\")"));
}

TEST_F(LingeringProcessTest, ProcessSeenByARunningService_IsRememberedToo) {
    PcIs(SERVICE_RUNNING);
    const DWORD id = StartPc();  // finds it running
    scm.NoticeDeadProcesses(false);
    PcIs(SERVICE_STOPPED);  // which ends the process as well
    LookFromHere();
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
    EXPECT_THAT(
        Lines(),
        ElementsAre(Kill(id),
                    Error("open service process " + std::to_string(id) + " error 87", kKill),
                    Info("start service successful", kStart)));
}

class SeenInStateTest : public LingeringProcessTest, public testing::WithParamInterface<DWORD> {};

TEST_P(SeenInStateTest, ProcessIsRemembered) {
    scm.RunScript(kPcName, {{0, GetParam(), 0, 0, processes.Start(4242)}});
    StartPc();  // finds it running
    PcIs(SERVICE_STOPPED);
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
    EXPECT_THAT(processes.Terminated(), ElementsAre(4242U));
}

INSTANTIATE_TEST_SUITE_P(, SeenInStateTest,
                         testing::Values(SERVICE_START_PENDING, SERVICE_CONTINUE_PENDING,
                                         SERVICE_PAUSE_PENDING, SERVICE_PAUSED));

TEST_F(LingeringProcessTest, StopOfAServiceNeverSeenAtAStart_RemembersNoProcess) {
    PcIs(SERVICE_RUNNING);
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    LookFromHere();
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
    EXPECT_EQ(Lines()[0], Kill(0));
}

// Windows grants the right to more than this only to few for a process of the system.
TEST_F(LingeringProcessTest, IdentifyingAProcess_AsksForNoOtherRight) {
    scm.ScriptStart(kPcName, {{0, SERVICE_RUNNING, 0, 0, processes.Start(4242)}});
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
    EXPECT_THAT(platform.CallsOf({"OpenProcess"}), ElementsAre("OpenProcess(0x1000, 0, 4242)"));
}

// Windows gives nobody the id of a process that is still open.
TEST_F(LingeringProcessTest, IdentifiedProcess_StaysOpenUntilItIsEnded) {
    scm.ScriptStart(kPcName, {{0, SERVICE_RUNNING, 0, 0, processes.Start(4242)}});
    StartPc();
    PcIs(SERVICE_STOPPED);
    LookFromHere();
    platform.Faults().FailCall("StartServiceW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 5);
    EXPECT_THAT(
        platform.CallsOf({"OpenProcess", "GetProcessTimes", "TerminateProcess", "CloseHandle"}),
        ElementsAre("OpenProcess(0x1000, 0, 4242)", "GetProcessTimes(4242)",
                    "OpenProcess(0x1FFFFF, 0, 4242)", "TerminateProcess(4242, 0)",
                    "CloseHandle(process 4242)", "CloseHandle(process 4242)"));
}

TEST_F(LingeringProcessTest, StoppingAService_DoesNotForgetItsProcess) {
    const DWORD id = StartPc();
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    LookFromHere();
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
    EXPECT_EQ(Lines()[0], Kill(id));
    EXPECT_THAT(processes.Terminated(), IsEmpty());
}

TEST_F(LingeringProcessTest, ProcessThatLingersWhileTheServiceIsStopping_IsEnded) {
    scm.ScriptStart(kPcName, {{0, SERVICE_RUNNING, 0, 0, processes.Start(4242)}});
    StartPc();
    scm.RunScript(kPcName, {{0, SERVICE_STOP_PENDING, 0, 2000}, {100, SERVICE_STOPPED}});
    LookFromHere();
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
    EXPECT_THAT(processes.Terminated(), ElementsAre(4242U));
    const Texts order = platform.CallsOf({"TerminateProcess", "Sleep"});
    EXPECT_EQ(order[0], "TerminateProcess(4242, 0)");  // before the wait
}

TEST_F(LingeringProcessTest, IdThatAnotherProcessOwnsByNow_IsSpared) {
    scm.ScriptStart(kPcName, {{0, SERVICE_RUNNING, 0, 0, processes.Start(4242)}});
    StartPc();
    PcIs(SERVICE_STOPPED);
    processes.End(4242);
    processes.Start(4242);
    LookFromHere();
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Kill(4242), Info("start service successful", kStart)));
    EXPECT_TRUE(processes.IsRunning(4242));
    EXPECT_THAT(platform.CallsOf({"TerminateProcess"}), IsEmpty());
}

// The process had ended by then, or it is not ours to end.
class UnidentifiedProcessTest : public LingeringProcessTest,
                                public testing::WithParamInterface<const char*> {};

TEST_P(UnidentifiedProcessTest, IsSpared) {
    scm.ScriptStart(kPcName, {{0, SERVICE_RUNNING, 0, 0, processes.Start(4242)}});
    platform.Faults().FailCall(GetParam(), 1, ERROR_ACCESS_DENIED);
    StartPc();
    PcIs(SERVICE_STOPPED);
    LookFromHere();
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
    EXPECT_THAT(processes.Terminated(), IsEmpty());
    EXPECT_THAT(Lines(), ElementsAre(Kill(4242), Info("start service successful", kStart)));
}

INSTANTIATE_TEST_SUITE_P(Calls, UnidentifiedProcessTest,
                         testing::Values("OpenProcess", "GetProcessTimes"),
                         [](const auto& call) { return call.param; });

TEST_F(LingeringProcessTest, ProcessThatWasIdentifiedAndCannotBeOpenedNow_IsLogged) {
    scm.ScriptStart(kPcName, {{0, SERVICE_RUNNING, 0, 0, processes.Start(4242)}});
    StartPc();
    PcIs(SERVICE_STOPPED);
    LookFromHere();
    platform.Faults().FailCallsFrom("OpenProcess", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
    EXPECT_THAT(processes.Terminated(), IsEmpty());
    EXPECT_EQ(Lines()[0], Kill(4242));
    EXPECT_EQ(Lines()[1],
              "L4 [PLENXSDK] open service process 4242 error 5(DistributedFs::KillServiceProcess)");
}

TEST_F(LingeringProcessTest, ProcessWhoseTimesCannotBeReadAgain_IsEnded) {
    scm.ScriptStart(kPcName, {{0, SERVICE_RUNNING, 0, 0, processes.Start(4242)}});
    StartPc();
    PcIs(SERVICE_STOPPED);
    platform.Faults().FailCall("GetProcessTimes", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
    EXPECT_THAT(processes.Terminated(), ElementsAre(4242U));
}

TEST_F(LingeringProcessTest, IdSeenLater_ReplacesTheEarlierOne) {
    StartPc();
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    const DWORD second = StartPc();
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    LookFromHere();
    manager->StartServiceByIndex(kPc);
    EXPECT_EQ(Lines()[0], Kill(second));
}

TEST_F(LingeringProcessTest, FailedStart_DoesNotChangeTheRememberedProcess) {
    const DWORD id = StartPc();
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    scm.ScriptStart(kPcName, {{0, SERVICE_STOPPED}});
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 5);
    LookFromHere();
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 5);
    EXPECT_EQ(Lines()[0], Kill(id));
}

TEST_F(LingeringProcessTest, EachRow_RemembersItsOwnProcess) {
    StartPc();
    EXPECT_EQ(manager->StartServiceByIndex(kPhone), 0);
    EXPECT_EQ(Lines()[0], Kill(0));
}

}  // namespace
