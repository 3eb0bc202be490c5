// Tests stopping the service of a row, by force if necessary.

#include "service_control_test.h"

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const std::string kStop = "ServiceManager::StopServiceByIndex";
const std::string kWait = "ServiceManager::WaitServiceStatus";
const std::string kKill = "KillServiceProcess";

using StopServiceTest = ServiceControlTest;

TEST_F(StopServiceTest, StoppedService_GetsNoControl) {
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("service has stopped", kStop)));
    EXPECT_THAT(
        ScmCalls(),
        ElementsAre("OpenSCManagerW(null, null, 0xF003F)", "OpenServiceW(\"PlenxPcSvc\", 0x2C)",
                    "QueryServiceStatusEx(PlenxPcSvc, 0, 36)", "CloseServiceHandle(PlenxPcSvc)",
                    "CloseServiceHandle(manager)"));
}

TEST_F(StopServiceTest, RunningService_IsStoppedAndWaitedFor) {
    StartPc();
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("stop service successful", kStop)));
    EXPECT_THAT(
        ScmCalls(),
        ElementsAre("OpenSCManagerW(null, null, 0xF003F)", "OpenServiceW(\"PlenxPcSvc\", 0x2C)",
                    "QueryServiceStatusEx(PlenxPcSvc, 0, 36)", "ControlService(PlenxPcSvc, 1)",
                    "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
                    "QueryServiceStatusEx(PlenxPcSvc, 0, 36)",
                    "QueryServiceStatusEx(PlenxPcSvc, 0, 36)", "CloseServiceHandle(PlenxPcSvc)",
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

// A query that takes one millisecond shifts the clock between the steps of ten.
TEST_F(StopServiceTest, StopIgnoredFor2001ms_IsLongEnough) {
    StartPc();
    scm.ScriptStop(kPcName, {});
    platform.Faults().Before("QueryServiceStatusEx", 3, [this] { platform.Clock().Advance(1); });
    const auto start = platform.Clock().Now();
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    EXPECT_EQ(platform.Clock().Now() - start, 2001U);
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
    EXPECT_THAT(Lines(),
                ElementsAre(Info("force stop service", kStop), Kill(id),
                            Error("open service process " + std::to_string(id) + " error 5", kKill),
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
    scm.ScriptStop(kPcName,
                   {{0, SERVICE_STOP_PENDING, 0, 0, 501}, {100, SERVICE_STOP_PENDING, 0, 0, 502}});
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

TEST_F(StopServiceTest, StopUnderWayThatIsGivenUp_IsAskedForAgain) {
    scm.RunScript(kPcName, {{0, SERVICE_STOP_PENDING, 0, 2000}, {100, SERVICE_RUNNING}});
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("stop service successful", kStop)));
    EXPECT_THAT(platform.CallsOf({"ControlService"}), ElementsAre("ControlService(PlenxPcSvc, 1)"));
    EXPECT_THAT(processes.Terminated(), IsEmpty());
}

class StopFromOtherStateTest : public StopServiceTest, public testing::WithParamInterface<DWORD> {};

TEST_P(StopFromOtherStateTest, GetsTheControlWithoutAWaitBeforeIt) {
    PcIs(GetParam());
    LookFromHere();
    EXPECT_EQ(manager->StopServiceByIndex(kPc), 0);
    EXPECT_THAT(Lines(), ElementsAre(Info("stop service successful", kStop)));
    EXPECT_THAT(platform.CallsOf({"ControlService", "Sleep"})[0], "ControlService(PlenxPcSvc, 1)");
}

INSTANTIATE_TEST_SUITE_P(, StopFromOtherStateTest,
                         testing::Values(SERVICE_PAUSED, SERVICE_PAUSE_PENDING,
                                         SERVICE_CONTINUE_PENDING));

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

}  // namespace
