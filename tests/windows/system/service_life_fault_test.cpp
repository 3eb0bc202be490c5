// Tests services that do not start or stop as they should. Whatever they do, the host must hear of
// it and the library must go on.

#include "support/handle.h"
#include "support/service_state.h"
#include "support/system_habits.h"
#include "system/host.h"

namespace PlenxTest {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;

constexpr char kRefusedStart[] = "start service error ";

// The service's hint for a start is 3 s.
class ServiceLifeFaults : public Host {
protected:
    /// Starts the service, and checks the lines of a start that fails in the Service Control
    /// Manager.
    void StartFailsWith(const Lines& reasons);
    void FailToStart();
    /// Returns the Service Control Manager's code for the start, or "0" when it has accepted the
    /// start.
    std::string CodeOfTheStart() const;
    void ExpectFailedStart(const Lines& reasons) const;
    /// Shows by further calls that the library goes on.
    void StartsAndStopsThePhone();
};

void ServiceLifeFaults::StartFailsWith(const Lines& reasons) {
    FailToStart();
    ExpectFailedStart(reasons);
}

void ServiceLifeFaults::FailToStart() {
    EXPECT_FALSE(Start(kPcService));
    Settle();
}

std::string ServiceLifeFaults::CodeOfTheStart() const {
    const std::string code = NumberBehind(kRefusedStart, WorkerLines());
    return code.empty() ? "0" : code;
}

void ServiceLifeFaults::ExpectFailedStart(const Lines& reasons) const {
    EXPECT_THAT(
        WorkerLines(),
        ElementsAreArray(
            Lines{StartIsInvoked(kPcService),
                  Info("PLENXManagerInner::Start", "plenx manager start service 1"),
                  Error("KillServiceProcess", "kill service process 0")} +
            reasons +
            Lines{Error("ServiceManager::StartPlenxService",
                        "start plenx service PlenxPcSvc error 5"),
                  Error("PLENXManagerInner::Start", "plenx manager start plenx service error 5")} +
            LinesOfStatus(kPcService, 0, false)));
}

void ServiceLifeFaults::StartsAndStopsThePhone() {
    EXPECT_TRUE(Start(kPhoneService));
    EXPECT_EQ(manager.Stop(kPhoneService, "group"), 0);
    EXPECT_TRUE(observer.WaitFor("NotifyStatus(2, group, 1, 0)"));
    EXPECT_EQ(StateOf(L"PlenxPhoneSvc"), DWORD{SERVICE_STOPPED});
}

Lines NeverRan() {
    return {Error("ServiceManager::StartServiceByIndex", "wait service status error")};
}

Lines RefusedWith(const std::string& code) {
    return {Error("ServiceManager::StartServiceByIndex", kRefusedStart + code)};
}

HOST_TEST(ServiceLifeFaults, ExecutableThatIsMissing_FailsTheStart) {
    Init();
    std::filesystem::rename(folder.InstallPath() / "plenxservice.exe",
                            folder.InstallPath() / "away.exe");
    FailToStart();
    const std::string code = CodeOfTheStart();
    EXPECT_TRUE(Shows(Habits::kStartOfAMissingProgram, code));
    ExpectFailedStart(RefusedWith(code));
    std::filesystem::rename(folder.InstallPath() / "away.exe",
                            folder.InstallPath() / "plenxservice.exe");
    EXPECT_TRUE(Start(kPcService));
}

HOST_TEST(ServiceLifeFaults, SlowStartWithProgress_IsWaitedForBeyondTheHint) {
    Control("[start]\ndelay_ms = 4000\n");
    Init();
    EXPECT_TRUE(Start(kPcService));
    Settle();
    EXPECT_THAT(WorkerLines(), ElementsAreArray(Lines{StartIsInvoked(kPcService)} +
                                                LinesOfStart(kPcService, "PlenxPcSvc")));
}

HOST_TEST(ServiceLifeFaults, StartThatIsSilentBeyondTheHint_Fails) {
    Control("[start]\nservice = 'pc'\nsilent_ms = 10000\n");
    Init();
    StartFailsWith(NeverRan());
    StartsAndStopsThePhone();
}

HOST_TEST(ServiceLifeFaults, StartThatNeverLeavesStartPending_Fails) {
    Control("[start]\nservice = 'pc'\nnever = true\n");
    Init();
    StartFailsWith(NeverRan());
    EXPECT_EQ(manager.GetInt64Config(kPcService, DistributedFs::kServiceNotRunningConfig), 0)
        << "a service that is starting counts as running";
    StartsAndStopsThePhone();
}

HOST_TEST(ServiceLifeFaults, ServiceThatStopsInsteadOfRunning_FailsTheStart) {
    Control("[start]\nservice = 'pc'\nfail = 1234\n");
    Init();
    FailToStart();
    const std::string code = CodeOfTheStart();
    EXPECT_TRUE(Shows(Habits::kStartOfAServiceThatIsGoneAtOnce, code));
    ExpectFailedStart(code == "0" ? NeverRan() : RefusedWith(code));
    Control("");
    EXPECT_TRUE(Start(kPcService));
}

HOST_TEST(ServiceLifeFaults, ServiceThatServesNoEndpoint_IsPinged26TimesAndAskedAllTheSame) {
    Control("[start]\nservice = 'pc'\nserve = false\n");
    Init();
    const ULONGLONG begin = GetTickCount64();
    EXPECT_FALSE(Start(kPcService));
    EXPECT_GE(GetTickCount64() - begin, 5000u);
    Settle();

    const auto failed = [](const std::string& function) {
        return Lines{Error("RpcManager::SendRpcMessage", "send service message exception 1722"),
                     Error("RpcManager::" + function, "send rpc message error ret:1722")};
    };
    Lines lines = {
        StartIsInvoked(kPcService),
        Info("PLENXManagerInner::Start", "plenx manager start service 1"),
        Error("KillServiceProcess", "kill service process 0"),
        Info("ServiceManager::StartServiceByIndex", "start service successful"),
        Info("ServiceManager::StartPlenxService", "start plenx service PlenxPcSvc success")};
    for (int number = 0; number != 26; ++number) {
        lines = lines +
                Lines{Info("RpcManager::PingService",
                           "rpc manager ping service No:" + std::to_string(number))} +
                failed("PingService");
    }
    const std::string setInteger = "rpc manager set int64 config svcType:1 cfgType:";
    lines = lines +
            Lines{Error("PLENXManagerInner::Start",
                        "plenx manager wait plenx service timeout (5000 ms)"),
                  Info("RpcManager::SetStringConfig",
                       "rpc manager set string config svcType:1 cfgType:1 cfgValue:en_US")} +
            failed("SetStringConfig") +
            Lines{Info("RpcManager::SetInt64Config", setInteger + "0 cfgValue:0")} +
            failed("SetInt64Config") +
            Lines{Info("RpcManager::SetInt64Config", setInteger + "2 cfgValue:0")} +
            failed("SetInt64Config") +
            Lines{Info("RpcManager::CreateGroup", "rpc manager create group svcType:1")} +
            failed("CreateGroup") +
            Lines{Error("PLENXManagerInner::Start", "plenx manager create group error 1722")} +
            LinesOfStatus(kPcService, 0, false);
    EXPECT_THAT(WorkerLines(), ElementsAreArray(lines));
    EXPECT_EQ(StateOf(L"PlenxPcSvc"), DWORD{SERVICE_RUNNING}) << "the service must be left running";
}

class ForcedStop : public ServiceLifeFaults {
protected:
    void StopIsForced(const std::string& control);
};

void ForcedStop::StopIsForced(const std::string& control) {
    Init();
    ASSERT_TRUE(Start(kPcService));
    Settle();
    Control(control);
    const DWORD id = ProcessIdOf(L"PlenxPcSvc");
    const PlenxSupport::Handle process(OpenProcess(SYNCHRONIZE, FALSE, id));
    ASSERT_TRUE(process);
    const ULONGLONG begin = GetTickCount64();
    EXPECT_EQ(manager.Stop(kPcService, "group"), 0);
    Settle();
    EXPECT_GE(GetTickCount64() - begin, 2000u);
    EXPECT_THAT(
        WorkerLines(),
        ElementsAreArray(
            Lines{
                StopIsInvoked(kPcService),
                Info("PLENXManagerInner::Stop", "plenx manager stop service 1"),
                Info("RpcManager::DeleteGroup", "delete group svcType:1"),
                Info("ServiceManager::StopServiceByIndex", "force stop service"),
                Error("KillServiceProcess", "kill service process " + std::to_string(id)),
                Info("ServiceManager::StopServiceByIndex", "stop service successful"),
                Info("ServiceManager::StopPlenxService", "stop plenx service PlenxPcSvc success")} +
            LinesOfStatus(kPcService, 1, false) + LinesOfStatus(kCombinedService, 1, true)));
    EXPECT_EQ(WaitForSingleObject(process.Get(), 0), DWORD{WAIT_OBJECT_0})
        << "the service's process is still alive";
    StartsAndStopsThePhone();
}

HOST_TEST(ForcedStop, ServiceThatIgnoresTheStop_IsKilledAfter2000ms) {
    StopIsForced("[stop]\nservice = 'pc'\nhow = 'ignore'\n");
}

HOST_TEST(ForcedStop, ServiceThatNeverLeavesStopPending_IsKilledAfter2000ms) {
    StopIsForced("[stop]\nservice = 'pc'\nhow = 'never'\n");
}

HOST_TEST(ForcedStop, SlowStopWithProgress_IsNotForced) {
    Init();
    ASSERT_TRUE(Start(kPcService));
    Control("[stop]\nservice = 'pc'\ndelay_ms = 3000\n");
    manager.Stop(kPcService, "group");
    Settle();
    EXPECT_THAT(LinesOf("ServiceManager::StopServiceByIndex"),
                Contains(Info("ServiceManager::StopServiceByIndex", "stop service successful")));
    EXPECT_EQ(CountLines(Info("ServiceManager::StopServiceByIndex", "force stop service")), 0);
    EXPECT_EQ(StateOf(L"PlenxPcSvc"), DWORD{SERVICE_STOPPED});
}

HOST_TEST(ServiceLifeFaults, StopThatIsNotAccepted_IsReportedAllTheSame) {
    Control("[stop]\nservice = 'pc'\naccept = false\n");
    Init();
    ASSERT_TRUE(Start(kPcService));
    Settle();
    manager.Stop(kPcService, "group");
    Settle();
    const Lines lines = WorkerLines();
    ASSERT_GT(lines.size(), 5u);
    EXPECT_THAT(lines[3], testing::StartsWith("error [PLENXSDK] stop service error "));
    EXPECT_TRUE(Shows(Habits::kStopThatIsNotAccepted, NumberBehind("stop service error ", lines)));
    EXPECT_EQ(lines[4],
              Error("ServiceManager::StopPlenxService", "stop plenx service PlenxPcSvc error 6"));
    EXPECT_EQ(lines[5],
              Error("PLENXManagerInner::Stop", "plenx manager stop plenx service error 6"));
    EXPECT_THAT(ToldByWorker(),
                ElementsAre("NotifyStatus(1, group, 0, 1)", "NotifyStatus(1, group, 1, 0)",
                            "NotifyStatus(3, group, 1, 1)"));
    EXPECT_EQ(StateOf(L"PlenxPcSvc"), DWORD{SERVICE_RUNNING});
}

}  // namespace
}  // namespace PlenxTest
