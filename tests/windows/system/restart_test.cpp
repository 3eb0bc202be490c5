// Tests services that come and go without the library: they crash, or somebody else restarts them.

#include "support/handle.h"
#include "support/service_state.h"
#include "system/host.h"
#include "system/process_id.h"

namespace PlenxTest {
namespace {

class Restarts : public Host {
protected:
    /// Stops the PC service and starts it again, as an administrator might.
    void RestartByHand();
    void CrashThePcService();
};

void Restarts::RestartByHand() {
    const std::wstring data = (folder.WorkingFolder() / "pc").wstring();
    const wchar_t* arguments[] = {folder.InstallPath().c_str(), data.c_str(), L"1"};
    const PlenxSupport::ServiceHandle service =
        OpenedService(L"PlenxPcSvc", SERVICE_STOP | SERVICE_START | SERVICE_QUERY_STATUS);
    SERVICE_STATUS status{};
    EXPECT_TRUE(ControlService(service.Get(), SERVICE_CONTROL_STOP, &status));
    EXPECT_TRUE(WaitFor([] { return StateOf(L"PlenxPcSvc") == SERVICE_STOPPED; }));
    EXPECT_TRUE(StartServiceW(service.Get(), 3, arguments)) << GetLastError();
    EXPECT_TRUE(WaitFor([] { return StateOf(L"PlenxPcSvc") == SERVICE_RUNNING; }));
}

void Restarts::CrashThePcService() {
    Control("[[on]]\nrequest = 'DeviceOnline'\ncrash = true\n");
    manager.RemoteDeviceOnline(kPcService, "group", "there");
    Settle();
    Control("");
    EXPECT_EQ(StateOf(L"PlenxPcSvc"), DWORD{SERVICE_STOPPED});
}

HOST_TEST(Restarts, ServiceThatIsRestartedBetweenCalls_IsReachedAgain) {
    Init();
    ASSERT_TRUE(Start(kPcService));
    for (int i = 0; i != 5; ++i) {
        RestartByHand();
        const std::string text = "round" + std::to_string(i);
        manager.RecvRemoteMessage(DistributedFs::PLENXMessageType{1}, 1, text);
        EXPECT_TRUE(observer.WaitFor("SendLocalMessage(1, 1, " + text + ")"));
    }
    EXPECT_TRUE(Start(kPcService)) << "the service runs already, and has forgotten its group";
    EXPECT_EQ(CountLines(Info("ServiceManager::StartServiceByIndex", "service is running")), 1);
    manager.Stop(kPcService, "group");
    EXPECT_TRUE(observer.WaitFor("NotifyStatus(1, group, 1, 0)"));
    EXPECT_EQ(StateOf(L"PlenxPcSvc"), DWORD{SERVICE_STOPPED});
    EXPECT_EQ(CountLines(Info("ServiceManager::StopServiceByIndex", "force stop service")), 0);
}

// Before a start, the library ends the process that it last saw, if that still exists. Its id may
// belong to an unrelated process by now.
HOST_TEST(Restarts, ProcessThatHasGotTheIdOfACrashedService_IsSpared) {
    Init();
    ASSERT_TRUE(Start(kPcService));
    const DWORD former = ProcessIdOf(L"PlenxPcSvc");
    CrashThePcService();
    const ProcessOfId innocent(former);
    if (!innocent.HasTheId()) {
        GTEST_SKIP() << "the system does not hand out the id again";
    }
    EXPECT_TRUE(Start(kPcService));
    EXPECT_EQ(
        CountLines(Error("KillServiceProcess", "kill service process " + std::to_string(former))),
        1);
    EXPECT_TRUE(innocent.IsAlive());
}

// In the opposite case the process is the one that the library last saw, and the library ends it.
HOST_TEST(Restarts, ServiceProcessThatLingersAfterItsStop_IsEnded) {
    Init();
    ASSERT_TRUE(Start(kPcService));
    const DWORD former = ProcessIdOf(L"PlenxPcSvc");
    const PlenxSupport::Handle process(OpenProcess(SYNCHRONIZE, FALSE, former));
    Control("[stop]\nlinger_ms = 30000\n");
    manager.Stop(kPcService, "group");
    ASSERT_TRUE(observer.WaitFor("NotifyStatus(1, group, 1, 0)"));
    ASSERT_EQ(StateOf(L"PlenxPcSvc"), DWORD{SERVICE_STOPPED});
    ASSERT_EQ(WaitForSingleObject(process.Get(), 0), DWORD{WAIT_TIMEOUT});
    Control("");
    EXPECT_TRUE(Start(kPcService));
    EXPECT_EQ(WaitForSingleObject(process.Get(), 0), DWORD{WAIT_OBJECT_0});
    EXPECT_NE(ProcessIdOf(L"PlenxPcSvc"), former);
}

}  // namespace
}  // namespace PlenxTest
