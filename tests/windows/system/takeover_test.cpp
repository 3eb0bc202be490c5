// A host that was killed leaves its services and its working folder unchanged. The next host must
// take them over, or work without them.

#include "support/handle.h"
#include "support/service_state.h"
#include "support/system_habits.h"
#include "system/held_file.h"
#include "system/host.h"
#include "system/other_host.h"

namespace PlenxTest {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAreArray;
using Does = OtherHost::Does;

class Takeover : public Host {
protected:
    /// Another host does this, and the test kills it once the service's log says so.
    void KillHost(Does what, const std::string& when);
    /// Waits until the service writes no more, because it would write its remaining lines into the
    /// folder that the next host is removing.
    bool ServiceFallsSilent() const;
    /// Returns the worker's lines of Init, with the lines of the PC service's stop.
    static Lines LinesOfInit(const Lines& stop);
};

void Takeover::KillHost(Does what, const std::string& when) {
    OtherHost former(folder, what);
    ASSERT_TRUE(ServiceComesToSay(when, 30000));
    former.Kill();
    ASSERT_TRUE(ServiceFallsSilent());
}

bool Takeover::ServiceFallsSilent() const {
    for (int seconds = 0; seconds != 60; ++seconds) {
        const std::string before = ReadFile(ServiceLogFile());
        Sleep(1000);
        if (ReadFile(ServiceLogFile()) == before) {
            return true;
        }
    }
    return false;
}

Lines Takeover::LinesOfInit(const Lines& stop) {
    const std::string create = "ServiceManager::CreateServiceByIndex";
    const std::string install = "ServiceManager::InstallService";
    return Lines{Info("PLENXManagerInner::Init", "service manager initialization")} + stop +
           Lines{Info(create, "sevice has been created"),
                 Info(install, "install service PlenxPcSvc success"),
                 Info("ServiceManager::StopServiceByIndex", "service has stopped"),
                 Info(create, "sevice has been created"),
                 Info(install, "install service PlenxPhoneSvc success"),
                 Info(create, "sevice has been created")} +
           (DriverStarts()
                ? Lines{Info("ServiceManager::StartServiceByIndex", "service is running"),
                        Info("ServiceManager::StartDokanService", "start dokan service success")}
                : LinesOfDriverStart()) +
           Lines{Info("PLENXManagerInner::Init", "rpc listen thread initialization")};
}

Lines StopWasRefusedWith(const std::string& error) {
    return {Error("ServiceManager::StopServiceByIndex", "stop service error " + error),
            Error("ServiceManager::InstallService", "stop service PlenxPcSvc error 6")};
}

HOST_TEST(Takeover, ServiceThatRuns_IsStoppedAndStartedAnew) {
    KillHost(Does::kStart, "pc answered CreateGroup(0) result:0");
    const DWORD former = ProcessIdOf(L"PlenxPcSvc");
    const PlenxSupport::Handle process(OpenProcess(SYNCHRONIZE, FALSE, former));
    ASSERT_TRUE(process);
    ASSERT_EQ(StateOf(L"PlenxPcSvc"), DWORD{SERVICE_RUNNING});
    WriteFile(folder.WorkingFolder() / "pc" / "file", "old");
    Init();
    EXPECT_THAT(WorkerLines(),
                ElementsAreArray(LinesOfInit(
                    {Info("ServiceManager::StopServiceByIndex", "stop service successful")})));
    EXPECT_EQ(WaitForSingleObject(process.Get(), 15000), DWORD{WAIT_OBJECT_0});
    EXPECT_FALSE(fs::exists(folder.WorkingFolder() / "pc" / "file"));
    EXPECT_FALSE(fs::exists(folder.DataPath() / "plenx0"));
    EXPECT_TRUE(Start(kPcService));
    EXPECT_NE(ProcessIdOf(L"PlenxPcSvc"), former);
    EXPECT_TRUE(observer.WaitFor("NotifyConnect(1, group)")) << "the endpoint is ours now";
}

HOST_TEST(Takeover, FolderThatIsHeld_IsLeftAndTheNextOneTaken) {
    KillHost(Does::kStart, "pc answered CreateGroup(0) result:0");
    const HeldFile held(folder.WorkingFolder() / "pc" / "held");
    Init();
    EXPECT_TRUE(Start(kPcService));
    EXPECT_TRUE(fs::exists(folder.WorkingFolder() / "pc" / "held"));
    EXPECT_TRUE(fs::exists(folder.DataPath() / "plenx0" / "pc" / "service.log"));
    EXPECT_FALSE(fs::exists(folder.DataPath() / "plenx1"));
}

// The start takes longer than the next host's Init, and less than its pings.
HOST_TEST(Takeover, ServiceThatIsStarting_IsWaitedFor) {
    Control("[start]\nservice = 'pc'\ndelay_ms = 3000\n");
    KillHost(Does::kStart, "pc starts, process");
    ASSERT_EQ(StateOf(L"PlenxPcSvc"), DWORD{SERVICE_START_PENDING});
    const DWORD former = ProcessIdOf(L"PlenxPcSvc");
    Init();
    const std::string code = NumberBehind("stop service error ", WorkerLines());
    EXPECT_TRUE(Shows(Habits::kStopOfAServiceThatStarts, code));
    EXPECT_THAT(WorkerLines(), ElementsAreArray(LinesOfInit(StopWasRefusedWith(code))));
    EXPECT_TRUE(Start(kPcService));
    EXPECT_EQ(ProcessIdOf(L"PlenxPcSvc"), former);
}

// The test kills the host in the middle of Init, of a service's start, of a call and of a stop.
HOST_TEST(Takeover, HostsThatAreKilledAtAnyMoment_LeaveNothingThatIsInTheWay) {
    constexpr const char* kMoments[] = {
        "plenx manager Init",
        "service manager initialization",
        "install service PlenxPcSvc success",
        "start dokan service ",
        "rpc listen thread initialization",
        "plenx manager start service 1",
        "rpc manager ping service No:0",
        "rpc manager create group svcType:1",
        "delete group svcType:1",
        "stop service successful",
    };
    for (const char* const moment : kMoments) {
        OtherHost former(folder, Does::kStartAndStop);
        const fs::path log = LibraryLogFile().string() + ".other";
        ASSERT_TRUE(WaitFor([&] { return ReadFile(log).find(moment) != std::string::npos; }, 30000))
            << moment;
        former.Kill();
        fs::remove(log);
    }
    Init();
    EXPECT_TRUE(Start(kPcService));
    EXPECT_TRUE(observer.WaitFor("NotifyConnect(1, group)"));
    EXPECT_TRUE(Start(kPhoneService));
    manager.Stop(kPcService, "group");
    EXPECT_TRUE(observer.WaitFor("NotifyStatus(1, group, 1, 0)"));
    EXPECT_EQ(StateOf(L"PlenxPcSvc"), DWORD{SERVICE_STOPPED});
}

HOST_TEST(Takeover, ServiceThatHangsInItsStop_FailsItsStartAndNothingElse) {
    Control("[stop]\nservice = 'pc'\nhow = 'never'\n");
    KillHost(Does::kStartAndStop, "pc never leaves stop pending");
    Init();
    EXPECT_THAT(WorkerLines(), ElementsAreArray(LinesOfInit(StopWasRefusedWith("1061"))));
    EXPECT_FALSE(Start(kPcService));
    EXPECT_EQ(CountLines(Error("ServiceManager::StartPlenxService",
                               "start plenx service PlenxPcSvc error 5")),
              1);
    EXPECT_TRUE(Start(kPhoneService));
}

}  // namespace
}  // namespace PlenxTest
