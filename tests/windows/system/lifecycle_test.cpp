// Tests the services' lives as a host sees them when all is well: every operation, its requests to
// the services, their notifications, and the log.

#include "support/service_state.h"
#include "support/wide_text.h"
#include "system/host.h"

namespace PlenxTest {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

class Lifecycle : public Host {};

HOST_TEST(Lifecycle, Init_InstallsServicesStartsDriverAndListens) {
    EXPECT_EQ(manager.GetInt64Config(kPcService, DistributedFs::kServiceNotRunningConfig), 0);
    Init();
    EXPECT_THAT(
        WorkerLines(),
        ElementsAreArray(
            Lines{Info("PLENXManagerInner::Init", "service manager initialization"),
                  Error("ServiceManager::StopServiceByIndex", "open service error 1060"),
                  Error("ServiceManager::InstallService", "stop service PlenxPcSvc error 2"),
                  Info("ServiceManager::CreateServiceByIndex", "create service success"),
                  Info("ServiceManager::InstallService", "install service PlenxPcSvc success"),
                  Error("ServiceManager::StopServiceByIndex", "open service error 1060"),
                  Error("ServiceManager::InstallService", "stop service PlenxPhoneSvc error 2"),
                  Info("ServiceManager::CreateServiceByIndex", "create service success"),
                  Info("ServiceManager::InstallService", "install service PlenxPhoneSvc success"),
                  Info("ServiceManager::CreateServiceByIndex", "create service success")} +
            LinesOfDriverStart() +
            Lines{Info("PLENXManagerInner::Init", "rpc listen thread initialization")}));
    EXPECT_EQ(StateOf(L"PlenxPcSvc"), DWORD{SERVICE_STOPPED});
    EXPECT_EQ(StateOf(L"PlenxPhoneSvc"), DWORD{SERVICE_STOPPED});
    EXPECT_EQ(StateOf(L"Dokan1") == DWORD{SERVICE_RUNNING}, DriverStarts());
    EXPECT_FALSE(IsRegistered(L"PlenxOfficeSvc"));
    EXPECT_TRUE(std::filesystem::is_directory(folder.WorkingFolder() / "pc"));
    EXPECT_TRUE(std::filesystem::is_directory(folder.WorkingFolder() / "phone"));
    EXPECT_THAT(observer.Calls(), IsEmpty());
}

HOST_TEST(Lifecycle, HostsOwnLinesOfInitAndDestroy_AreWrittenOnItsThread) {
    Init();
    manager.Destroy();
    EXPECT_TRUE(Settle());
    EXPECT_THAT(OwnLines(), ElementsAre(Info("PLENXManager::Destroy", "plenx manager destroy"),
                                        Info("PLENXManager::Destroy",
                                             "plenx manager plenx manager inner "
                                             "destroy is pushed into thread pool")));
    EXPECT_THAT(WorkerLines(), IsEmpty()) << "everything is done already";
    EXPECT_THAT(LinesOf("PLENXManager::Init"),
                ElementsAre(Info("PLENXManager::Init", "plenx manager Init"),
                            Info("PLENXManager::Init",
                                 "plenx manager plenx manager inner init "
                                 "is pushed into thread pool")));
}

class EachService : public Host {
protected:
    void StartAndStop(ServiceType service, const std::string& name, const std::string& nickname);
};

void EachService::StartAndStop(ServiceType service, const std::string& name,
                               const std::string& nickname) {
    const std::string type = std::to_string(service);
    Init();
    EXPECT_TRUE(Start(service));
    Settle();
    EXPECT_THAT(WorkerLines(),
                ElementsAreArray(Lines{StartIsInvoked(service)} + LinesOfStart(service, name)));
    EXPECT_THAT(OwnLines(),
                ElementsAre(Info("PLENXManager::Start", "plenx manager start service (" + type +
                                                            ") is pushed into thread pool")));
    EXPECT_TRUE(observer.WaitFor("NotifyStatus(" + type + ", group, 100, 1)"));

    EXPECT_EQ(manager.Stop(service, "group"), 0);
    Settle();
    EXPECT_THAT(WorkerLines(),
                ElementsAreArray(
                    Lines{StopIsInvoked(service),
                          Info("PLENXManagerInner::Stop", "plenx manager stop service " + type),
                          Info("RpcManager::DeleteGroup", "delete group svcType:" + type),
                          Info("ServiceManager::StopServiceByIndex", "stop service successful"),
                          Info("ServiceManager::StopPlenxService",
                               "stop plenx service " + name + " success")} +
                    LinesOfStatus(service, 1, false) + LinesOfStatus(kCombinedService, 1, true)));

    EXPECT_THAT(ToldByWorker(), ElementsAre("NotifyStatus(" + type + ", group, 0, 1)",
                                            "NotifyStatus(" + type + ", group, 1, 0)",
                                            "NotifyStatus(3, group, 1, 1)"));
    EXPECT_TRUE(observer.WaitFor("NotifyDisconnect(" + type + ", group)"));
    EXPECT_THAT(ToldByServices(), ElementsAre("NotifyConnect(" + type + ", group)",
                                              "NotifyStatus(" + type + ", group, 100, 1)",
                                              "NotifyDisconnect(" + type + ", group)"));
    const std::string group = "groupName:\"group_" + type + "\"";
    EXPECT_THAT(ServiceLines(nickname, "received "),
                ElementsAre("received PingService(19) number:0",
                            "received SetStringConfig(7) cfgType:1 value:\"en_US\"",
                            "received SetInt64Config(8) cfgType:0 value:0",
                            "received SetInt64Config(8) cfgType:2 value:0",
                            "received CreateGroup(0) " + group + " kind:2 groupArg:\"argument\"",
                            "received DeleteGroup(1) " + group));
    EXPECT_EQ(StateOf(PlenxSupport::ToWide(name)), DWORD{SERVICE_STOPPED});
}

HOST_TEST(EachService, PcService_StartsAndStops) {
    StartAndStop(kPcService, "PlenxPcSvc", "pc");
}

HOST_TEST(EachService, PhoneService_StartsAndStops) {
    StartAndStop(kPhoneService, "PlenxPhoneSvc", "phone");
}

HOST_TEST(EachService, OfficeService_StartsAndStopsInTheCompanion) {
    Init();
    EXPECT_TRUE(Start(kOfficeService));
    Settle();
    EXPECT_THAT(WorkerLines(), ElementsAreArray(Lines{StartIsInvoked(kOfficeService)} +
                                                LinesOfStatus(kOfficeService, 0, true)));
    manager.Stop(kOfficeService, "group");
    Settle();
    EXPECT_THAT(WorkerLines(), ElementsAreArray(Lines{StopIsInvoked(kOfficeService)} +
                                                LinesOfStatus(kOfficeService, 1, true) +
                                                LinesOfStatus(kCombinedService, 1, true)));
    EXPECT_FALSE(IsRegistered(L"PlenxOfficeSvc"));
}

HOST_TEST(EachService, Combination_IsPcThenOffice) {
    Init();
    EXPECT_EQ(manager.Start(kCombinedService, "group", "argument"), 0);
    Settle();
    EXPECT_THAT(WorkerLines(), ElementsAreArray(Lines{StartIsInvoked(kCombinedService)} +
                                                LinesOfStart(kPcService, "PlenxPcSvc") +
                                                LinesOfStatus(kOfficeService, 0, true)));
    // No signal says that everything is stopped while a part of the combination runs.
    manager.Stop(kOfficeService, "group");
    manager.Stop(kPcService, "group");
    manager.Stop(kCombinedService, "group");
    Settle();
    EXPECT_THAT(ToldByWorker(),
                ElementsAre("NotifyStatus(1, group, 0, 1)", "NotifyStatus(0, group, 0, 1)",
                            "NotifyStatus(0, group, 1, 1)",  // office
                            "NotifyStatus(1, group, 1, 0)",  // PC
                            "NotifyStatus(1, group, 1, 0)", "NotifyStatus(0, group, 1, 0)",
                            "NotifyStatus(3, group, 1, 1)"));
}

HOST_TEST(Lifecycle, EveryNotification_ReachesTheObserverInOrder) {
    observer.linkStatus = 4711;
    Init();
    ASSERT_TRUE(Start(kPcService));
    const unsigned char data[] = {1, 2, 3};
    manager.LocalDeviceOnline(kPcService, "group", "here", sizeof data, data);
    manager.RemoteDeviceOnline(kPcService, "group", "there");
    manager.DeviceNameChanged("name");
    manager.RecvRemoteMessage(static_cast<DistributedFs::PLENXMessageType>(-7), 3, "abc");
    manager.LocalDeviceOffline(kPcService, "group", "here", DistributedFs::TriggerType{5});
    manager.RemoteDeviceOffline(kPcService, "group", "there", DistributedFs::TriggerType{-6});
    Settle();
    manager.Stop(kPcService, "group");
    EXPECT_TRUE(observer.WaitFor("NotifyDisconnect(1, group)"));
    EXPECT_THAT(ToldByServices(),
                ElementsAre("NotifyConnect(1, group)", "NotifyStatus(1, group, 100, 1)",
                            "QueryLinkStatus(1, group, 0)", "NotifyDiskName(P:)",
                            "NotifyReconnect(1, group)", "NotifyStatus(1, group, 101, 1)",
                            "SendLocalMessage(-7, 3, abc)", "NotifyError(-6)",
                            "NotifyDisconnect(1, group)"));
    // 17 and 18 go to Explorer, and each gets an answer.
    for (const char* const answer : {"Manager answered LinkTypeQuery(13) result:0 reply:4711",
                                     "Manager answered UpdateWindowsExplore(17) result:0 reply:0",
                                     "Manager answered ExploreFlushNotify(18) result:0 reply:0"}) {
        EXPECT_TRUE(ServiceComesToSay(answer)) << answer;
    }
    EXPECT_THAT(LinesOf("RpcManager::FlushExplorer"),
                ElementsAre(Info("RpcManager::FlushExplorer",
                                 "update device status invoked cLetter:P expFlushType:0"),
                            Info("RpcManager::FlushExplorer", "sh change notify begin"),
                            Info("RpcManager::FlushExplorer", "sh change notify end"),
                            Info("RpcManager::FlushExplorer",
                                 "update device status invoked cLetter:P expFlushType:2"),
                            Info("RpcManager::FlushExplorer", "sh change notify begin"),
                            Info("RpcManager::FlushExplorer", "sh change notify end")));
}

HOST_TEST(Lifecycle, DeviceRequests_ReachTheServiceWithAllTheirArguments) {
    Init();
    ASSERT_TRUE(Start(kPhoneService));
    const unsigned char data[] = {0, 0xff, 0x80};
    manager.LocalDeviceOnline(kPhoneService, "group", "here", sizeof data, data);
    manager.RemoteDeviceOnline(kPhoneService, "group", "there");
    manager.LocalDeviceOffline(kPhoneService, "group", "here", DistributedFs::TriggerType{5});
    manager.RemoteDeviceOffline(kPhoneService, "group", "there", DistributedFs::TriggerType{6});
    Settle();
    const std::string group = "groupName:\"group_2\"";
    EXPECT_THAT(
        ServiceLines("phone", "received Device"),
        ElementsAre(
            "received DeviceOnline(2) " + group +
                " deviceId:\"here\" isRemote:0 length:3 data:[3] 00 ff 80",
            "received DeviceOnline(2) " + group +
                " deviceId:\"there\" isRemote:1 length:0 data:[0]",
            "received DeviceOffline(3) " + group + " deviceId:\"here\" isRemote:0 trigger:5",
            "received DeviceOffline(3) " + group + " deviceId:\"there\" isRemote:1 trigger:6"));
    EXPECT_THAT(ToldByWorker(), ElementsAre("NotifyStatus(2, group, 0, 1)"));
}

HOST_TEST(Lifecycle, Configuration_IsPushedAtTheNextStartInTheOrderOfKeys) {
    Init();
    manager.SetConfig(kCombinedService, DistributedFs::kIntegerConfig2, std::int64_t{-5});
    manager.SetConfig(kPcService, DistributedFs::kLocaleConfig, std::string("de_DE"));
    manager.SetConfig(kPcService, DistributedFs::ConfigType{99}, std::string("unknown key"));
    manager.SetConfig(kPhoneService, DistributedFs::kIntegerConfig0, std::int64_t{1} << 40);
    ASSERT_TRUE(Start(kPcService));
    ASSERT_TRUE(Start(kPhoneService));
    EXPECT_THAT(ServiceLines("pc", "received Set"),
                ElementsAre("received SetStringConfig(7) cfgType:1 value:\"de_DE\"",
                            "received SetInt64Config(8) cfgType:0 value:0",
                            "received SetInt64Config(8) cfgType:2 value:-5"));
    EXPECT_THAT(ServiceLines("phone", "received Set"),
                ElementsAre("received SetStringConfig(7) cfgType:1 value:\"en_US\"",
                            "received SetInt64Config(8) cfgType:0 value:1099511627776",
                            "received SetInt64Config(8) cfgType:2 value:-5"));
}

HOST_TEST(Lifecycle, SecondStartOfARunningService_FindsItRunning) {
    Init();
    ASSERT_TRUE(Start(kPcService));
    Settle();
    const DWORD process = ProcessIdOf(L"PlenxPcSvc");
    EXPECT_TRUE(Start(kPcService));
    Settle();
    const Lines lines = WorkerLines();
    ASSERT_GT(lines.size(), 3u);
    EXPECT_EQ(lines[2], Info("ServiceManager::StartServiceByIndex", "service is running"));
    EXPECT_EQ(lines[3],
              Info("ServiceManager::StartPlenxService", "start plenx service PlenxPcSvc success"));
    EXPECT_EQ(ProcessIdOf(L"PlenxPcSvc"), process);
}

HOST_TEST(Lifecycle, StopOfAServiceThatIsNotRunning_ReportsAllTheSame) {
    Init();
    manager.Stop(kPcService, "group");
    Settle();
    EXPECT_THAT(
        WorkerLines(),
        ElementsAreArray(
            Lines{
                StopIsInvoked(kPcService),
                Info("PLENXManagerInner::Stop", "plenx manager stop service 1"),
                Info("RpcManager::DeleteGroup", "delete group svcType:1"),
                Error("RpcManager::SendRpcMessage", "send service message exception 1722"),
                Error("RpcManager::DeleteGroup", "send rpc message error ret:1722"),
                Error("PLENXManagerInner::Stop", "plenx manager delete group error 1722"),
                Info("ServiceManager::StopServiceByIndex", "service has stopped"),
                Info("ServiceManager::StopPlenxService", "stop plenx service PlenxPcSvc success")} +
            LinesOfStatus(kPcService, 1, false) + LinesOfStatus(kCombinedService, 1, true)));
}

HOST_TEST(Lifecycle, ServiceNotRunningConfig_FollowsTheService) {
    const auto notRunning = [this](ServiceType service) {
        return manager.GetInt64Config(service, DistributedFs::kServiceNotRunningConfig);
    };
    Init();
    EXPECT_EQ(notRunning(kPcService), 1);
    EXPECT_EQ(notRunning(kCombinedService) == 0, DriverStarts())
        << "the combined type asks about the driver";
    ASSERT_TRUE(Start(kPcService));
    EXPECT_EQ(notRunning(kPcService), 0);
    EXPECT_EQ(notRunning(kPhoneService), 1);
    EXPECT_EQ(notRunning(kOfficeService), 0);
    manager.Stop(kPcService, "group");
    Settle();
    EXPECT_EQ(notRunning(kPcService), 1);
    EXPECT_THAT(LinesOf("PLENXManagerInner::GetInt64Config"),
                testing::Contains(Info("PLENXManagerInner::GetInt64Config",
                                       "plenx manager get config svcType:1 cfgType:5 "
                                       "cfgValue:1")));
    EXPECT_EQ(manager.GetInt64Config(kPcService, DistributedFs::kIntegerConfig2), 0);
}

HOST_TEST(Lifecycle, StringConfig_CannotBeReadBack) {
    Init();
    manager.SetConfig(kPcService, DistributedFs::kLocaleConfig, std::string("de_DE"));
    Settle();
    for (const ServiceType service :
         {kOfficeService, kPcService, kPhoneService, kCombinedService}) {
        EXPECT_EQ(manager.GetStringConfig(service, DistributedFs::kLocaleConfig), "");
    }
    EXPECT_THAT(LinesOf("PLENXManager::GetStringConfig"),
                ElementsAre(Error("PLENXManager::GetStringConfig",
                                  "plenx manager invalid service type svcType:0")));
}

HOST_TEST(Lifecycle, GetOfficeDir_GivesARealFolderAndTheName) {
    Init();
    ASSERT_TRUE(Start(kOfficeService));
    manager.RemoteDeviceOnline(kOfficeService, "group", "there");
    Settle();
    std::string dir = "report.txt";
    EXPECT_EQ(manager.GetOfficeDir("group", "there", dir), 0);
    EXPECT_EQ(dir, folder.Data() + "\\office\\group\\there\\report.txt");
    EXPECT_TRUE(std::filesystem::is_directory(std::filesystem::u8path(dir).parent_path()));

    dir = "report.txt";
    EXPECT_EQ(manager.GetOfficeDir("group", "nobody", dir), 1003);
    EXPECT_EQ(dir, "\\report.txt");
}

HOST_TEST(Lifecycle, AfterDestroy_EverythingGoesOn) {
    Init();
    ASSERT_TRUE(Start(kPcService));
    manager.Destroy();
    EXPECT_TRUE(Settle());
    EXPECT_EQ(StateOf(L"PlenxPcSvc"), DWORD{SERVICE_RUNNING});
    manager.RecvRemoteMessage(DistributedFs::PLENXMessageType{1}, 5, "hello");
    EXPECT_TRUE(observer.WaitFor("SendLocalMessage(1, 5, hello)"));
    EXPECT_TRUE(Start(kPhoneService));
    EXPECT_TRUE(Start(kOfficeService));
}

HOST_TEST(Lifecycle, SecondInitWithOtherFolders_KeepsTheFirst) {
    Init();
    manager.Init("C:\\elsewhere", "C:\\elsewhere", "other", false);
    EXPECT_TRUE(Settle());
    EXPECT_THAT(WorkerLines(), IsEmpty());
    EXPECT_TRUE(Start(kPcService));
    EXPECT_FALSE(std::filesystem::exists("C:\\elsewhere"));
}

HOST_TEST(Lifecycle, StartAgainAfterAStop_LooksForTheFormerProcess) {
    Init();
    ASSERT_TRUE(Start(kPcService));
    const std::string former = std::to_string(ProcessIdOf(L"PlenxPcSvc"));
    manager.Stop(kPcService, "group");
    EXPECT_TRUE(Start(kPcService));
    EXPECT_TRUE(LogComesToSay(Error("KillServiceProcess", "kill service process " + former)));
}

}  // namespace
}  // namespace PlenxTest
