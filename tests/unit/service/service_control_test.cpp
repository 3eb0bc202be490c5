#include <atomic>
#include <thread>

#include "service_manager_test.h"

using DistributedFs::ServiceManager;
using testing::AllOf;
using testing::AnyOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const std::wstring kPcName = L"PlenxPcSvc";

const std::string kCreate = "ServiceManager::CreateServiceByIndex";
const std::string kStart = "ServiceManager::StartServiceByIndex";
const std::string kStop = "ServiceManager::StopServiceByIndex";
const std::string kDelete = "ServiceManager::DeleteServiceByIndex";
const std::string kWait = "ServiceManager::WaitServiceStatus";
const std::string kDokan = "ServiceManager::StartDokanService";
const std::string kStartPlenx = "ServiceManager::StartPlenxService";
const std::string kStopPlenx = "ServiceManager::StopPlenxService";
const std::string kAlive = "ServiceManager::isServiceAlive";
const std::string kKill = "KillServiceProcess";

std::string Kill(DWORD processId) {
    return Error("kill service process " + std::to_string(processId), kKill);
}

// The PC service is registered and stopped when a test begins.
class ServiceControlTest : public ServiceManagerTest {
protected:
    ServiceControlTest() : manager(MakeManager()) { LookFromHere(); }

    SERVICE_STATUS_PROCESS PcStatus() { return scm.Find(kPcName)->status; }
    void PcIs(DWORD state, DWORD checkPoint = 0, DWORD waitHint = 0) {
        scm.SetStatus(kPcName, state, checkPoint, waitHint);
    }
    /// Starts the PC service and returns the id that the manager has seen.
    DWORD StartPc() {
        EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
        const DWORD id = PcStatus().dwProcessId;
        LookFromHere();
        return id;
    }
    Texts Sleeps() const { return platform.CallsOf({"Sleep"}); }

    std::unique_ptr<ServiceManager> manager;
};

using CreateServiceTest = ServiceControlTest;
using StartServiceTest = ServiceControlTest;
using LingeringProcessTest = ServiceControlTest;
using StopServiceTest = ServiceControlTest;
using DeleteServiceTest = ServiceControlTest;
using IsServiceAliveTest = ServiceControlTest;
using DokanServiceTest = ServiceControlTest;
using CheckedOperationsTest = ServiceControlTest;

// CreateServiceByIndex

TEST_F(CreateServiceTest, ServiceThatIsRegistered_IsLeftAlone) {
    EXPECT_EQ(manager->CreateServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("sevice has been created", kCreate)));
    EXPECT_THAT(ScmCalls(), ElementsAre("OpenSCManagerW(null, null, 0xF003F)",
                                        "OpenServiceW(\"PlenxPcSvc\", 0xF01FF)",
                                        "CloseServiceHandle(PlenxPcSvc)",
                                        "CloseServiceHandle(manager)"));
}

TEST_F(CreateServiceTest, NewService_IsRegistered) {
    EXPECT_EQ(manager->CreateServiceByIndex(kOffice), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("create service success", kCreate)));
    EXPECT_THAT(
        ScmCalls(),
        ElementsAre("OpenSCManagerW(null, null, 0xF003F)",
                    "OpenServiceW(\"PlenxOfficeSvc\", 0xF01FF)",
                    "CreateServiceW(\"PlenxOfficeSvc\", \"PlenxOfficeSvc\", 0xF01FF, 0x10, 3, 1, "
                    "\"C:\\App\\plenxservice.exe\", null, null, null, null, null)",
                    "CloseServiceHandle(PlenxOfficeSvc)", "CloseServiceHandle(manager)"));
}

TEST_F(CreateServiceTest, ManagerRefused_Returns1) {
    platform.Faults().FailCall("OpenSCManagerW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->CreateServiceByIndex(kPc), 1);
    EXPECT_THAT(Lines(), ElementsAre(Error("open sc manager error 5", kCreate)));
}

TEST_F(CreateServiceTest, AnyFailureToOpen_CountsAsNotRegistered) {
    platform.Faults().FailCall("OpenServiceW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->CreateServiceByIndex(kPc), 3);
    EXPECT_THAT(Lines(), ElementsAre(Error("create service error 1073", kCreate)));
    EXPECT_EQ(platform.Calls().back(), "CloseServiceHandle(manager)");
}

TEST_F(CreateServiceTest, ServiceMarkedForDelete_Returns3) {
    const SC_HANDLE opener = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT);
    const SC_HANDLE holder = OpenServiceW(opener, kPcName.c_str(), DELETE);
    DeleteService(holder);
    platform.Faults().FailCall("OpenServiceW", 1, ERROR_SERVICE_DOES_NOT_EXIST);
    LookFromHere();
    EXPECT_EQ(manager->CreateServiceByIndex(kPc), 3);
    EXPECT_THAT(Lines(), ElementsAre(Error("create service error 1072", kCreate)));
    CloseServiceHandle(holder);
    CloseServiceHandle(opener);
}

// StartServiceByIndex

TEST_F(StartServiceTest, StoppedService_IsStartedAndWaitedFor) {
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Kill(0), Info("start service successful", kStart)));
    EXPECT_EQ(PcStatus().dwCurrentState, DWORD{SERVICE_RUNNING});
    EXPECT_THAT(ScmCalls(),
                ElementsAre("OpenSCManagerW(null, null, 0xF003F)",
                            "OpenServiceW(\"PlenxPcSvc\", 0x10034)",
                            "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
                            "StartServiceW(PlenxPcSvc, 3, \"C:\\App\", \"C:\\Data\\plenx\\pc\", "
                            "\"1\")",
                            "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
                            "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
                            "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
                            "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
                            "CloseServiceHandle(PlenxPcSvc)", "CloseServiceHandle(manager)"));
    // It runs after 15 ms; the poll at 20 ms sees it, and a sleep follows each poll.
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
        EXPECT_THAT(ScmCalls(), ElementsAre("OpenSCManagerW(null, null, 0xF003F)",
                                            "OpenServiceW(\"PlenxPcSvc\", 0x10034)",
                                            "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
                                            "CloseServiceHandle(PlenxPcSvc)",
                                            "CloseServiceHandle(manager)"));
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
    EXPECT_EQ(platform.Clock().Now(), 1005U);  // its own hint, in steps of 5 ms
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

// What happens to the process that the manager last saw

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
    EXPECT_THAT(Lines(),
                ElementsAre(Kill(id),
                            Error("open service process " + std::to_string(id) + " error 87",
                                  kKill),
                            Info("start service successful", kStart)));
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

TEST_F(LingeringProcessTest, ProcessThatCouldNotBeIdentifiedWhenSeen_IsEnded) {
    scm.ScriptStart(kPcName, {{0, SERVICE_RUNNING, 0, 0, processes.Start(4242)}});
    platform.Faults().FailCallsFrom("OpenProcess", 1, ERROR_ACCESS_DENIED);
    StartPc();
    platform.Faults().Reset();
    PcIs(SERVICE_STOPPED);
    LookFromHere();
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
    EXPECT_THAT(processes.Terminated(), ElementsAre(4242U));
    EXPECT_EQ(Lines()[0], Kill(4242));
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

TEST_F(LingeringProcessTest, FailedStart_DoesNotChangeWhatIsRemembered) {
    const DWORD id = StartPc();
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    scm.ScriptStart(kPcName, {{0, SERVICE_STOPPED}});
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 5);
    LookFromHere();
    EXPECT_EQ(manager->StartServiceByIndex(kPc), 5);
    EXPECT_EQ(Lines()[0], Kill(id));
}

TEST_F(LingeringProcessTest, EachRow_RemembersItsOwn) {
    StartPc();
    EXPECT_EQ(manager->StartServiceByIndex(kPhone), 0);
    EXPECT_EQ(Lines()[0], Kill(0));
}

// StopServiceByIndex

TEST_F(StopServiceTest, StoppedService_GetsNoControl) {
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("service has stopped", kStop)));
    EXPECT_THAT(ScmCalls(), ElementsAre("OpenSCManagerW(null, null, 0xF003F)",
                                        "OpenServiceW(\"PlenxPcSvc\", 0x2C)",
                                        "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
                                        "CloseServiceHandle(PlenxPcSvc)",
                                        "CloseServiceHandle(manager)"));
}

TEST_F(StopServiceTest, RunningService_IsStoppedAndWaitedFor) {
    StartPc();
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("stop service successful", kStop)));
    EXPECT_THAT(ScmCalls(), ElementsAre("OpenSCManagerW(null, null, 0xF003F)",
                                        "OpenServiceW(\"PlenxPcSvc\", 0x2C)",
                                        "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
                                        "ControlService(PlenxPcSvc, 1)",
                                        "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
                                        "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
                                        "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
                                        "CloseServiceHandle(PlenxPcSvc)",
                                        "CloseServiceHandle(manager)"));
    EXPECT_THAT(Sleeps(), AllOf(SizeIs(3), Each("Sleep(10)")));
}

TEST_F(StopServiceTest, ServiceThatStopsWithinTheControl_NeedsNoWait) {
    StartPc();
    scm.ScriptStop(kPcName, {{0, SERVICE_STOPPED}});
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("stop service successful", kStop)));
    EXPECT_THAT(Sleeps(), IsEmpty());
}

TEST_F(StopServiceTest, StopIgnoredFor2000ms_KillsProcessAndReturns0) {
    const DWORD id = StartPc();
    scm.ScriptStop(kPcName, {});
    const auto start = platform.Clock().Now();
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("force stop service", kStop), Kill(id),
                                     Info("stop service successful", kStop)));
    EXPECT_THAT(processes.Terminated(), ElementsAre(id));
    EXPECT_EQ(platform.Clock().Now() - start, 2010U);
    EXPECT_THAT(Sleeps(), Each("Sleep(10)"));
}

TEST_F(StopServiceTest, HintOfTheServiceItself_DoesNotProlongTheWait) {
    StartPc();
    scm.ScriptStop(kPcName, {{0, SERVICE_STOP_PENDING, 0, 30000}});
    const auto start = platform.Clock().Now();
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    EXPECT_EQ(platform.Clock().Now() - start, 2010U);
}

TEST_F(StopServiceTest, CheckPointInTheReply_IsNoProgressLater) {
    StartPc();
    scm.ScriptStop(kPcName, {{0, SERVICE_STOP_PENDING, 9, 1000}});
    const auto start = platform.Clock().Now();
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    EXPECT_EQ(platform.Clock().Now() - start, 2010U);
}

TEST_F(StopServiceTest, SlowServiceThatReportsProgress_IsNotForced) {
    StartPc();
    scm.ScriptStop(kPcName, {{0, SERVICE_STOP_PENDING, 1, 2000},
                             {1900, SERVICE_STOP_PENDING, 2, 2000},
                             {3800, SERVICE_STOP_PENDING, 3, 2000},
                             {5700, SERVICE_STOPPED}});
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("stop service successful", kStop)));
    EXPECT_THAT(processes.Terminated(), IsEmpty());
}

TEST_F(StopServiceTest, ServiceThatStopsJustInTime_IsNotForced) {
    StartPc();
    scm.ScriptStop(kPcName, {{2005, SERVICE_STOPPED}});  // seen by the poll at 2010 ms
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("stop service successful", kStop)));
}

TEST_F(StopServiceTest, ForcedStopThatFails_StillReturns0) {
    const DWORD id = StartPc();
    scm.ScriptStop(kPcName, {});
    processes.RefuseOpen(id, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("force stop service", kStop), Kill(id),
                                     Error("open service process " + std::to_string(id) +
                                               " error 5", kKill),
                                     Info("stop service successful", kStop)));
}

TEST_F(StopServiceTest, ForcedStopWithoutAKnownProcess_OnlyLogs) {
    scm.RunScript(kPcName, {{0, SERVICE_RUNNING, 0, 0, 0}});
    scm.ScriptStop(kPcName, {});
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("force stop service", kStop), Kill(0),
                                     Info("stop service successful", kStop)));
    EXPECT_THAT(platform.CallsOf({"OpenProcess"}), IsEmpty());
}

TEST_F(StopServiceTest, ForcedStop_TakesTheProcessOfTheLastGoodQuery) {
    scm.RunScript(kPcName, {{0, SERVICE_RUNNING, 0, 0, processes.Start(501)}});
    processes.Start(502);
    scm.ScriptStop(kPcName, {{0, SERVICE_STOP_PENDING, 0, 0, 501},
                             {100, SERVICE_STOP_PENDING, 0, 0, 502}});
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    EXPECT_THAT(processes.Terminated(), ElementsAre(502U));
}

TEST_F(StopServiceTest, QueryInTheWaitFailing_ForcesTheProcessKnownBefore) {
    const DWORD id = StartPc();
    platform.Faults().FailCall("QueryServiceStatusEx", 2, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Error("query service status error 5", kWait),
                                     Info("force stop service", kStop), Kill(id),
                                     Info("stop service successful", kStop)));
    EXPECT_THAT(processes.Terminated(), ElementsAre(id));
}

TEST_F(StopServiceTest, StopUnderWayThatCompletes_MakesTheRequestFailWith6) {
    scm.RunScript(kPcName, {{0, SERVICE_STOP_PENDING, 0, 2000}, {100, SERVICE_STOPPED}});
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 6);
    EXPECT_THAT(Lines(), ElementsAre(Error("stop service error 1062", kStop)));
}

TEST_F(StopServiceTest, StopUnderWayThatHangs_Returns6AfterItsHint) {
    PcIs(SERVICE_STOP_PENDING, 0, 1000);
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 6);
    EXPECT_THAT(Lines(), ElementsAre(Error("stop service error 1061", kStop)));
    EXPECT_EQ(platform.Clock().Now(), 1005U);
    EXPECT_THAT(processes.Terminated(), IsEmpty());
}

TEST_F(StopServiceTest, RefusedStop_Returns6) {
    StartPc();
    scm.RefuseStop(kPcName, ERROR_DEPENDENT_SERVICES_RUNNING);
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 6);
    EXPECT_THAT(Lines(), ElementsAre(Error("stop service error 1051", kStop)));
    EXPECT_THAT(processes.Terminated(), IsEmpty());
}

TEST_F(StopServiceTest, ServiceStillStarting_IsAskedToStopAtOnce) {
    PcIs(SERVICE_START_PENDING, 0, 2000);
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 6);
    EXPECT_THAT(Lines(), ElementsAre(Error("stop service error 1061", kStop)));
    EXPECT_THAT(Sleeps(), IsEmpty());
}

TEST_F(StopServiceTest, ManagerRefused_Returns1) {
    platform.Faults().FailCall("OpenSCManagerW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 1);
    EXPECT_THAT(Lines(), ElementsAre(Error("open sc manager error 5", kStop)));
}

TEST_F(StopServiceTest, ServiceThatIsNotRegistered_Returns2) {
    EXPECT_EQ(manager->StopServiceByIndex(kOffice), 2);
    EXPECT_THAT(Lines(), ElementsAre(Error("open service error 1060", kStop)));
}

TEST_F(StopServiceTest, QueryFailing_Returns4) {
    platform.Faults().FailCall("QueryServiceStatusEx", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 4);
    EXPECT_THAT(Lines(), ElementsAre(Error("query service status error 5", kStop)));
}

// DeleteServiceByIndex

TEST_F(DeleteServiceTest, StoppedService_IsDeleted) {
    EXPECT_EQ(manager->DeleteServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("delete service successful", kDelete)));
    EXPECT_FALSE(scm.Find(kPcName));
    EXPECT_THAT(ScmCalls(), ElementsAre("OpenSCManagerW(null, null, 0xF003F)",
                                        "OpenServiceW(\"PlenxPcSvc\", 0x10004)",
                                        "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
                                        "DeleteService(PlenxPcSvc)",
                                        "CloseServiceHandle(PlenxPcSvc)",
                                        "CloseServiceHandle(manager)"));
}

TEST_F(DeleteServiceTest, ServiceThatIsNotRegistered_CountsAsDeleted) {
    EXPECT_EQ(manager->DeleteServiceByIndex(kOffice), 0);
    EXPECT_THAT(Lines(), ElementsAre(Error("service PlenxOfficeSvc has been deleted", kDelete)));
    EXPECT_EQ(platform.Calls().back(), "CloseServiceHandle(manager)");
}

TEST_F(DeleteServiceTest, AnyFailureToOpen_CountsAsDeleted) {
    platform.Faults().FailCall("OpenServiceW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->DeleteServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Error("service PlenxPcSvc has been deleted", kDelete)));
    EXPECT_TRUE(scm.Find(kPcName));
}

TEST_F(DeleteServiceTest, ServiceInAnyStateButStopped_Returns7) {
    for (const DWORD state : {SERVICE_START_PENDING, SERVICE_STOP_PENDING, SERVICE_RUNNING,
                              SERVICE_CONTINUE_PENDING, SERVICE_PAUSE_PENDING, SERVICE_PAUSED}) {
        SCOPED_TRACE(state);
        PcIs(state);
        LookFromHere();
        EXPECT_EQ(manager->DeleteServiceByIndex(kPc), 7);
        EXPECT_THAT(Lines(), ElementsAre(Error("service PlenxPcSvc is not stopped", kDelete)));
        EXPECT_THAT(platform.CallsOf({"DeleteService"}), IsEmpty());
    }
}

TEST_F(DeleteServiceTest, ServiceAlreadyMarkedForDelete_Returns7) {
    const SC_HANDLE opener = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT);
    const SC_HANDLE holder = OpenServiceW(opener, kPcName.c_str(), DELETE);
    DeleteService(holder);
    LookFromHere();
    EXPECT_EQ(manager->DeleteServiceByIndex(kPc), 7);
    EXPECT_THAT(Lines(), ElementsAre(Error("service PlenxPcSvc delete error 1072", kDelete)));
    CloseServiceHandle(holder);
    CloseServiceHandle(opener);
}

TEST_F(DeleteServiceTest, ManagerRefused_Returns1) {
    platform.Faults().FailCall("OpenSCManagerW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->DeleteServiceByIndex(kPc), 1);
    EXPECT_THAT(Lines(), ElementsAre(Error("open sc manager error 5", kDelete)));
}

TEST_F(DeleteServiceTest, QueryFailing_Returns4) {
    platform.Faults().FailCall("QueryServiceStatusEx", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->DeleteServiceByIndex(kPc), 4);
    EXPECT_THAT(Lines(), ElementsAre(Error("query service status error 5", kDelete)));
}

// isServiceAlive

TEST_F(IsServiceAliveTest, StoppedService_IsNotAlive) {
    EXPECT_FALSE(manager->isServiceAlive(kPc));
    EXPECT_THAT(Lines(), ElementsAre(Info("service has stopped", kAlive)));
    EXPECT_THAT(platform.Calls(), ElementsAre("OpenSCManagerW(null, null, 0xF003F)",
                                              "OpenServiceW(\"PlenxPcSvc\", 0x4)",
                                              "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
                                              "CloseServiceHandle(PlenxPcSvc)",
                                              "CloseServiceHandle(manager)"));
}

TEST_F(IsServiceAliveTest, ServiceInAnyOtherState_IsAliveSilently) {
    for (const DWORD state : {SERVICE_START_PENDING, SERVICE_STOP_PENDING, SERVICE_RUNNING,
                              SERVICE_CONTINUE_PENDING, SERVICE_PAUSE_PENDING, SERVICE_PAUSED}) {
        SCOPED_TRACE(state);
        PcIs(state);
        EXPECT_TRUE(manager->isServiceAlive(kPc));
        EXPECT_THAT(Lines(), IsEmpty());
    }
}

TEST_F(IsServiceAliveTest, EachFailure_IsLoggedAndMeansNotAlive) {
    PcIs(SERVICE_RUNNING);
    platform.Faults().FailCall("OpenSCManagerW", 1, ERROR_ACCESS_DENIED);
    EXPECT_FALSE(manager->isServiceAlive(kPc));
    platform.Faults().FailCall("OpenServiceW", 1, ERROR_ACCESS_DENIED);
    EXPECT_FALSE(manager->isServiceAlive(kPc));
    platform.Faults().FailCall("QueryServiceStatusEx", 1, ERROR_ACCESS_DENIED);
    EXPECT_FALSE(manager->isServiceAlive(kPc));
    EXPECT_THAT(Lines(), ElementsAre(Error("open sc manager error 5", kAlive),
                                     Error("open service error 5", kAlive),
                                     Error("query service status error 5", kAlive)));
    EXPECT_TRUE(manager->isServiceAlive(kPc));
}

TEST_F(IsServiceAliveTest, RowOutsideTheTable_IsNotAliveAndCallsNothing) {
    for (const std::int32_t row : {-1, 4, INT32_MIN, INT32_MAX}) {
        EXPECT_FALSE(manager->isServiceAlive(row));
    }
    EXPECT_THAT(platform.Calls(), IsEmpty());
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(IsServiceAliveTest, EmptyTable_HasNothingAlive) {
    const auto empty = MakeEmptyManager();
    LookFromHere();
    EXPECT_FALSE(empty->isServiceAlive(kOffice));
    EXPECT_FALSE(empty->isServiceAlive(kDriver));
    EXPECT_THAT(platform.Calls(), IsEmpty());
}

TEST_F(IsServiceAliveTest, AskedFromOtherThreadsWhileTheWorkerWorks_IsSafe) {
    std::atomic<bool> stop{false};
    const auto ask = [&] {
        while (!stop) {
            manager->isServiceAlive(kPc);
        }
    };
    std::thread first(ask);
    std::thread second(ask);
    for (int round = 0; round != 30; ++round) {
        EXPECT_EQ(manager->StartServiceByIndex(kPc), 0);
        EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    }
    stop = true;
    first.join();
    second.join();
}

// StartDokanService

TEST_F(DokanServiceTest, DriverThatRuns_IsASuccess) {
    EXPECT_EQ(manager->StartDokanService(), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("sevice has been created", kCreate),
                                     Info("service is running", kStart),
                                     Info("start dokan service success", kDokan)));
}

TEST_F(DokanServiceTest, DriverThatCannotBeCreated_IsStartedAllTheSame) {
    platform.Faults().FailCall("OpenServiceW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->StartDokanService(), 0);
    EXPECT_THAT(Lines(), ElementsAre(Error("create service error 1073", kCreate),
                                     Error("create dokan service error 3", kDokan),
                                     Info("service is running", kStart),
                                     Info("start dokan service success", kDokan)));
}

TEST_F(DokanServiceTest, DriverThatCannotBeStarted_ReturnsTheCodeOfTheStart) {
    scm.SetStatus(L"Dokan1", SERVICE_STOPPED);
    scm.RefuseStart(L"Dokan1", ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(manager->StartDokanService(), 5);
    EXPECT_THAT(Lines(), ElementsAre(Info("sevice has been created", kCreate), Kill(0),
                                     Error("start service error 2", kStart),
                                     Error("start dokan service error 5", kDokan)));
}

TEST_F(DokanServiceTest, DriverThatCanNeitherBeCreatedNorOpened_Returns2) {
    platform.Faults().FailCallsFrom("OpenServiceW", 1, ERROR_SERVICE_DOES_NOT_EXIST);
    platform.Faults().FailCallsFrom("CreateServiceW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(manager->StartDokanService(), 2);
    EXPECT_THAT(Lines(), ElementsAre(Error("create service error 5", kCreate),
                                     Error("create dokan service error 3", kDokan),
                                     Error("open service error 1060", kStart),
                                     Error("start dokan service error 2", kDokan)));
    platform.Faults().Reset();
}

// StartPlenxService and StopPlenxService

TEST_F(CheckedOperationsTest, Success_IsLoggedWithTheName) {
    EXPECT_EQ(manager->StartPlenxService(kPhone), 0);
    EXPECT_EQ(manager->StopPlenxService(kPhone), 0);
    EXPECT_THAT(Lines(), ElementsAre(Kill(0), Info("start service successful", kStart),
                                     Info("start plenx service PlenxPhoneSvc success",
                                          kStartPlenx),
                                     Info("stop service successful", kStop),
                                     Info("stop plenx service PlenxPhoneSvc success",
                                          kStopPlenx)));
}

TEST_F(CheckedOperationsTest, Failure_IsLoggedWithNameAndCodeAndReturned) {
    EXPECT_EQ(manager->StartPlenxService(kOffice), 2);
    EXPECT_EQ(manager->StopPlenxService(kOffice), 2);
    EXPECT_THAT(Lines(), ElementsAre(Error("open service error 1060", kStart),
                                     Error("start plenx service PlenxOfficeSvc error 2",
                                           kStartPlenx),
                                     Error("open service error 1060", kStop),
                                     Error("stop plenx service PlenxOfficeSvc error 2",
                                           kStopPlenx)));
}

TEST_F(CheckedOperationsTest, RowOutsideTheTable_Returns16WithoutALineOrACall) {
    for (const std::int32_t row : {-1, 4, INT32_MIN, INT32_MAX}) {
        SCOPED_TRACE(row);
        EXPECT_EQ(manager->StartPlenxService(row), 16);
        EXPECT_EQ(manager->StopPlenxService(row), 16);
        EXPECT_EQ(manager->CreateServiceByIndex(row), 16);
        EXPECT_EQ(manager->StartServiceByIndex(row), 16);
        EXPECT_EQ(manager->StopServiceByIndex(row), 16);
        EXPECT_EQ(manager->DeleteServiceByIndex(row), 16);
    }
    EXPECT_THAT(platform.Calls(), IsEmpty());
    EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(CheckedOperationsTest, EmptyTable_HasNoRows) {
    const auto empty = MakeEmptyManager();
    LookFromHere();
    EXPECT_EQ(empty->StartPlenxService(kOffice), 16);
    EXPECT_EQ(empty->StopPlenxService(kPc), 16);
    EXPECT_EQ(empty->CreateServiceByIndex(kPc), 16);
    EXPECT_THAT(platform.Calls(), IsEmpty());
    EXPECT_THAT(Lines(), IsEmpty());
}

// Every failure: of each operation, from each state that takes another way through it

class EveryFailureTest : public ServiceManagerTest {
protected:
    using Operation = std::int32_t (ServiceManager::*)(std::int32_t);

    /// With the PC service in the state; 0: not registered.
    void Try(Operation operation, DWORD state, const std::vector<std::int32_t>& codes) {
        SCOPED_TRACE(testing::Message() << "in state " << state);
        const unsigned calls = WithEveryCallFailing(
            [&] {
                PrepareMachine();
                auto manager = MakeManager();
                if (state == 0) {
                    manager->DeleteServiceByIndex(kPc);
                } else {
                    // Once through, so that there is a process to end before a start.
                    manager->StartServiceByIndex(kPc);
                    scm.SetStatus(kPcName, state, 0, 100);
                }
                return manager;
            },
            [&](const auto& manager) {
                EXPECT_THAT(codes, testing::Contains((manager.get()->*operation)(kPc)));
            });
        EXPECT_GE(calls, 2U);
    }
};

TEST_F(EveryFailureTest, Create) {
    Try(&ServiceManager::CreateServiceByIndex, SERVICE_STOPPED, {0, 1, 3});
    Try(&ServiceManager::CreateServiceByIndex, 0, {0, 1, 3});
}

TEST_F(EveryFailureTest, Start) {
    for (const DWORD state : {SERVICE_STOPPED, SERVICE_STOP_PENDING, SERVICE_RUNNING}) {
        Try(&ServiceManager::StartServiceByIndex, state, {0, 1, 2, 4, 5});
    }
}

TEST_F(EveryFailureTest, Stop) {
    for (const DWORD state : {SERVICE_STOPPED, SERVICE_STOP_PENDING, SERVICE_RUNNING}) {
        Try(&ServiceManager::StopServiceByIndex, state, {0, 1, 2, 4, 6});
    }
}

TEST_F(EveryFailureTest, Delete) {
    for (const DWORD state : {SERVICE_STOPPED, SERVICE_RUNNING}) {
        Try(&ServiceManager::DeleteServiceByIndex, state, {0, 1, 4, 7});
    }
}

TEST_F(EveryFailureTest, CheckedStartAndStop) {
    Try(&ServiceManager::StartPlenxService, SERVICE_STOPPED, {0, 1, 2, 4, 5});
    Try(&ServiceManager::StopPlenxService, SERVICE_RUNNING, {0, 1, 2, 4, 6});
}

TEST_F(EveryFailureTest, IsServiceAlive) {
    WithEveryCallFailing(
        [&] {
            PrepareMachine();
            auto manager = MakeManager();
            scm.SetStatus(kPcName, SERVICE_RUNNING);
            return manager;
        },
        [this](const auto& manager) {
            const bool alive = manager->isServiceAlive(kPc);
            EXPECT_EQ(alive, platform.Faults().Hits() == 0);
        });
}

TEST_F(EveryFailureTest, StartDokan) {
    WithEveryCallFailing(
        [&] {
            PrepareMachine();
            auto manager = MakeManager();
            scm.SetStatus(L"Dokan1", SERVICE_STOPPED);
            return manager;
        },
        [](const auto& manager) {
            EXPECT_THAT(manager->StartDokanService(), AnyOf(0, 1, 2, 4, 5));
        });
}

}  // namespace
