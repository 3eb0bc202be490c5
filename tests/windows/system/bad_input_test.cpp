// Calls every operation of the library with arguments that no reasonable host passes.

#include <limits>

#include "support/service_state.h"
#include "system/host.h"

namespace PlenxTest {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr auto kTrigger = DistributedFs::TriggerType{1};
constexpr auto kMessage = DistributedFs::PLENXMessageType{1};
const unsigned char kData[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

class BadInput : public Host {};

HOST_TEST(BadInput, EmptyStrings_AreRefusedWith26AndNothingIsQueued) {
    Init();
    const std::string full = "full";
    const std::string empty;
    EXPECT_EQ(manager.Start(kPcService, empty, full), 26);
    EXPECT_EQ(manager.Start(kPcService, full, empty), 26);
    EXPECT_EQ(manager.Stop(kPcService, empty), 26);
    EXPECT_EQ(manager.LocalDeviceOnline(kPcService, empty, full, 1, kData), 26);
    EXPECT_EQ(manager.LocalDeviceOnline(kPcService, full, empty, 1, kData), 26);
    EXPECT_EQ(manager.RemoteDeviceOnline(kPcService, empty, full), 26);
    EXPECT_EQ(manager.RemoteDeviceOnline(kPcService, full, empty), 26);
    EXPECT_EQ(manager.LocalDeviceOffline(kPcService, empty, full, kTrigger), 26);
    EXPECT_EQ(manager.LocalDeviceOffline(kPcService, full, empty, kTrigger), 26);
    EXPECT_EQ(manager.RemoteDeviceOffline(kPcService, empty, full, kTrigger), 26);
    EXPECT_EQ(manager.RemoteDeviceOffline(kPcService, full, empty, kTrigger), 26);
    EXPECT_EQ(manager.DeviceNameChanged(empty), 26);
    Settle();
    const auto refused = [](const std::string& function, const std::string& name) {
        return Error("PLENXManager::" + function, "plenx manager " + name + " invalid parameter");
    };
    EXPECT_THAT(OwnLines(), ElementsAre(refused("Start", "start"), refused("Start", "start"),
                                        refused("Stop", "stop"),
                                        refused("LocalDeviceOnline", "local device online"),
                                        refused("LocalDeviceOnline", "local device online"),
                                        refused("RemoteDeviceOnline", "remote device online"),
                                        refused("RemoteDeviceOnline", "remote device online"),
                                        refused("LocalDeviceOffline", "local device offline"),
                                        refused("LocalDeviceOffline", "local device offline"),
                                        refused("RemoteDeviceOffline", "remote device offline"),
                                        refused("RemoteDeviceOffline", "remote device offline"),
                                        refused("DeviceNameChanged", "device name changed")));
    EXPECT_THAT(WorkerLines(), IsEmpty());
}

HOST_TEST(BadInput, EmptyMessageAndSetting_GoToTheService) {
    Init();
    manager.SetConfig(kPcService, DistributedFs::kLocaleConfig, std::string());
    ASSERT_TRUE(Start(kPcService));
    EXPECT_EQ(manager.RecvRemoteMessage(kMessage, 77, ""), 0);
    EXPECT_TRUE(observer.WaitFor("SendLocalMessage(1, 77, )"));
    EXPECT_THAT(ServiceLines("pc", "received SetString"),
                ElementsAre("received SetStringConfig(7) cfgType:1 value:\"\""));
}

HOST_TEST(BadInput, EverythingBeforeInit_IsCheckedAndDropped) {
    EXPECT_EQ(manager.Start(kPcService, "a", "b"), 0);
    EXPECT_EQ(manager.Start(kPcService, "", "b"), 26);
    EXPECT_EQ(manager.Stop(kPcService, "a"), 0);
    EXPECT_EQ(manager.LocalDeviceOnline(kPcService, "a", "b", 1, kData), 0);
    EXPECT_EQ(manager.RemoteDeviceOnline(kPcService, "a", "b"), 0);
    EXPECT_EQ(manager.LocalDeviceOffline(kPcService, "a", "b", kTrigger), 0);
    EXPECT_EQ(manager.RemoteDeviceOffline(kPcService, "a", "b", kTrigger), 0);
    EXPECT_EQ(manager.DeviceNameChanged("a"), 0);
    EXPECT_EQ(manager.RecvRemoteMessage(kMessage, 1, "a"), 0);
    manager.SetConfig(kPcService, DistributedFs::kIntegerConfig0, std::int64_t{1});
    manager.SetConfig(kPcService, DistributedFs::kLocaleConfig, std::string("de_DE"));
    EXPECT_EQ(manager.GetInt64Config(kPcService, DistributedFs::kIntegerConfig0), 0);
    EXPECT_EQ(manager.GetStringConfig(kPcService, DistributedFs::kLocaleConfig), "");
    std::string dir = "name";
    EXPECT_EQ(manager.GetOfficeDir("a", "b", dir), 0);
    EXPECT_EQ(dir, "\\name");
    manager.Destroy();
    Lines expected;
    for (const char* const function :
         {"Start", "Stop", "LocalDeviceOnline", "RemoteDeviceOnline", "LocalDeviceOffline",
          "RemoteDeviceOffline", "DeviceNameChanged", "RecvRemoteMessage"}) {
        expected.push_back(
            Error(std::string("PLENXManager::") + function, "thread pool is released"));
    }
    expected.insert(expected.begin() + 1,
                    Error("PLENXManager::Start", "plenx manager start invalid parameter"));
    expected.push_back(Info("PLENXManagerInner::GetInt64Config",
                            "plenx manager get config svcType:1 cfgType:0 cfgValue:0"));
    expected.push_back(
        Info("PLENXManager::GetOfficeDir", "plenx manager get office dir is invoked"));
    expected.push_back(Info("PLENXManager::Destroy", "plenx manager destroy"));
    Lines lines;
    for (const LogLine& line : ReadLibraryLog()) {
        if (line.text.find("Observer)") == std::string::npos) {
            lines.push_back(line.text);
        }
    }
    EXPECT_THAT(lines, ElementsAreArray(expected));
    Init();
    EXPECT_TRUE(Start(kPcService));
}

HOST_TEST(BadInput, UnknownServiceTypes_AreLoggedByTheJobsAndIgnored) {
    Init();
    for (const std::uint32_t number : {4u, 7u, 0xFFFFFFFFu}) {
        const auto service = static_cast<ServiceType>(number);
        const std::string type = std::to_string(number);
        EXPECT_EQ(manager.Start(service, "group", "argument"), 0);
        EXPECT_EQ(manager.LocalDeviceOnline(service, "group", "here", sizeof kData, kData), 0);
        EXPECT_EQ(manager.RemoteDeviceOnline(service, "group", "there"), 0);
        EXPECT_EQ(manager.LocalDeviceOffline(service, "group", "here", kTrigger), 0);
        EXPECT_EQ(manager.RemoteDeviceOffline(service, "group", "there", kTrigger), 0);
        EXPECT_EQ(manager.Stop(service, "group"), 0);
        Settle();
        const auto job = [&](const std::string& function, const std::string& name,
                             const std::string& invalid) {
            return Lines{
                Info("PLENXManager::" + function + "Func",
                     "plenx manager " + name + " svcType(" + type + ") is invoked"),
                Error("PLENXManager::" + function + "Func", "plenx manager " + invalid + type)};
        };
        Lines expected =
            job("Start", "start service", "start service invalid service type svcType(") +
            job("LocalDeviceOnline", "local device online", "invalid service type svcType(") +
            job("RemoteDeviceOnline", "remote device online",
                "remote device online invalid service type svcType(") +
            job("LocalDeviceOffline", "local device offline",
                "local device offline invalid service type svcType:") +
            job("RemoteDeviceOffline", "remote device offline",
                "remote device offline invalid service type svcType:") +
            job("Stop", "stop service", "stop service invalid service type svcType(");
        for (const std::size_t closed : {1u, 3u, 5u, 11u}) {
            std::string& line = expected[closed];
            line.insert(line.rfind("(DistributedFs"), ")");
        }
        EXPECT_THAT(WorkerLines(),
                    ElementsAreArray(expected + LinesOfStatus(kCombinedService, 1, true)));

        manager.SetConfig(service, DistributedFs::kLocaleConfig, std::string("de_DE"));
        manager.SetConfig(service, DistributedFs::kIntegerConfig0, std::int64_t{1});
        EXPECT_EQ(manager.GetInt64Config(service, DistributedFs::kServiceNotRunningConfig), 0);
        EXPECT_EQ(manager.GetStringConfig(service, DistributedFs::kLocaleConfig), "");
        Settle();
        EXPECT_THAT(
            OwnLines(),
            ElementsAre(
                Error("PLENXManager::SetConfig",
                      "plenx manager set string config invalid service type svcType:" + type),
                Error("PLENXManager::SetConfig",
                      "plenx manager set int config invalid service type svcType(" + type + ")"),
                Error("PLENXManager::GetInt64Config",
                      "plenx manager invalid service type svcType:" + type),
                Error("PLENXManager::GetStringConfig",
                      "plenx manager invalid service type svcType:" + type)));
    }
}

HOST_TEST(BadInput, UnknownKeysTriggersAndMessageTypes_ArePassedOnOrIgnored) {
    constexpr auto kLowest = std::numeric_limits<std::int32_t>::min();
    Init();
    manager.SetConfig(kPcService, DistributedFs::ConfigType{0xFFFFFFFF}, std::int64_t{1});
    EXPECT_EQ(manager.GetInt64Config(kPcService, DistributedFs::ConfigType{0xFFFFFFFF}), 0);
    ASSERT_TRUE(Start(kPcService));
    manager.RecvRemoteMessage(DistributedFs::PLENXMessageType{kLowest}, 0xFFFFFFFF, "m");
    manager.RemoteDeviceOffline(kPcService, "group", "there", DistributedFs::TriggerType{kLowest});
    EXPECT_TRUE(observer.WaitFor("SendLocalMessage(-2147483648, 4294967295, m)"));
    EXPECT_TRUE(observer.WaitFor("NotifyError(-2147483648)"));
}

HOST_TEST(BadInput, DataThatIsNullOrHasAnOddSize_IsNarrowedTo32Bits) {
    Init();
    ASSERT_TRUE(Start(kPcService));
    Settle();
    const std::uint64_t twoTo32 = std::uint64_t{1} << 32;
    manager.LocalDeviceOnline(kPcService, "group", "null", 5, nullptr);
    manager.LocalDeviceOnline(kPcService, "group", "nothing", 0, kData);
    manager.LocalDeviceOnline(kPcService, "group", "wrapped", twoTo32 + 5, kData);
    manager.LocalDeviceOnline(kPcService, "group", "null, wrapped", twoTo32 + 5, nullptr);
    Settle();
    const std::string beginning = "received DeviceOnline(2) groupName:\"group_1\" deviceId:";
    EXPECT_THAT(ServiceLines("pc", "received Device"),
                ElementsAre(beginning + "\"null\" isRemote:0 length:0 data:[0]",
                            beginning + "\"nothing\" isRemote:0 length:0 data:[0]",
                            beginning + "\"wrapped\" isRemote:0 length:5 data:[5] 01 02 03 04 05",
                            beginning + "\"null, wrapped\" isRemote:0 length:0 data:[0]"));

    manager.LocalDeviceOnline(kPcService, "group", "negative", twoTo32 - 1, kData);
    Settle();
    const Lines lines = WorkerLines();
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(lines[lines.size() - 4], Error("PLENXManagerInner::LocalDeviceOnline",
                                             "plenx manager inner local device online error 19"));
    EXPECT_THAT(ToldByWorker(),
                ElementsAre("NotifyStatus(1, group, 0, 1)", "NotifyStatus(1, group, 2, 0)"));
}

HOST_TEST(BadInput, TextWithNulAndMalformedUtf8_ComesBackByteForByte) {
    const std::string text("a\0b\xff\xc0\xed\xa0\x80 \xf4\x90", 11);
    Init();
    manager.SetConfig(kPcService, DistributedFs::kLocaleConfig, text);
    EXPECT_EQ(manager.Start(kPcService, text, text), 0);
    EXPECT_TRUE(observer.WaitFor("NotifyStatus(1, " + text + ", 0, 1)"));
    EXPECT_TRUE(observer.WaitFor("NotifyConnect(1, " + text + ")"));
    manager.LocalDeviceOnline(kPcService, text, text, sizeof kData, kData);
    manager.RemoteDeviceOnline(kPcService, text, text);
    manager.DeviceNameChanged(text);
    manager.RecvRemoteMessage(kMessage, 1, text);
    manager.LocalDeviceOffline(kPcService, text, text, kTrigger);
    manager.RemoteDeviceOffline(kPcService, text, text, kTrigger);
    EXPECT_TRUE(observer.WaitFor("QueryLinkStatus(1, " + text + ", 0)"));
    EXPECT_TRUE(observer.WaitFor("NotifyReconnect(1, " + text + ")"));
    EXPECT_TRUE(observer.WaitFor("SendLocalMessage(1, 1, " + text + ")"));
    EXPECT_TRUE(observer.WaitFor("NotifyError(1)"));
    manager.Stop(kPcService, text);
    EXPECT_TRUE(observer.WaitFor("NotifyDisconnect(1, " + text + ")"));

    manager.Start(kOfficeService, text, text);
    manager.LocalDeviceOnline(kOfficeService, text, text, sizeof kData, kData);
    manager.RemoteDeviceOnline(kOfficeService, text, text);
    EXPECT_TRUE(observer.WaitFor("NotifyStatus(0, " + text + ", 2, 1)"));
    std::string dir = text;
    EXPECT_EQ(manager.GetOfficeDir(text, text, dir), 1005) << "no folder can have that name";
    EXPECT_EQ(dir, "\\" + text);
    manager.Stop(kOfficeService, text);
    EXPECT_TRUE(Settle());
    // Each malformed byte shows as U+FFFD in a line.
    const std::string bad = "\xef\xbf\xbd";
    EXPECT_EQ(CountLines(Info("RpcManager::SetStringConfig",
                              "rpc manager set string config svcType:1 cfgType:1 cfgValue:a"
                              "\\u0000b" +
                                  bad + bad + bad + bad + bad + " " + bad + bad)),
              1);
}

class HugeText : public Host {
protected:
    const std::string huge = std::string(std::size_t{64} << 20, 'x');
};

HOST_TEST(HugeText, AsASetting_LeavesTheLogUsable) {
    Init();
    manager.SetConfig(kPcService, DistributedFs::kLocaleConfig, huge);
    EXPECT_TRUE(Settle(60000));
    manager.SetConfig(kPcService, DistributedFs::kLocaleConfig, std::string("en_US"));
    EXPECT_TRUE(Start(kPcService));
    EXPECT_TRUE(LogComesToSay(Info("RpcManager::SetStringConfig",
                                   "rpc manager set string config svcType:1 cfgType:1 "
                                   "cfgValue:en_US")));
}

HOST_TEST(HugeText, AsArgumentOfEveryOperation_IsSentOrFailsAndTheLibraryGoesOn) {
    Init();
    ASSERT_TRUE(Start(kPhoneService));
    // No PC service answers, so the requests are built and fail.
    EXPECT_EQ(manager.RecvRemoteMessage(kMessage, 1, huge), 0);
    EXPECT_EQ(manager.DeviceNameChanged(huge), 0);
    EXPECT_EQ(manager.RemoteDeviceOnline(kPcService, huge, huge), 0);
    EXPECT_TRUE(Settle(60000));
    EXPECT_EQ(manager.GetInt64Config(kPhoneService, DistributedFs::kServiceNotRunningConfig), 0);
    // This service answers.
    EXPECT_EQ(manager.LocalDeviceOnline(kPhoneService, "group", "here", huge.size(),
                                        reinterpret_cast<const unsigned char*>(huge.data())),
              0);
    EXPECT_TRUE(Settle(60000));
    EXPECT_TRUE(ServiceComesToSay("answered DeviceOnline(2) result:0 reply:0"));
    EXPECT_TRUE(Start(kPcService));
}

// The office service's own code for such names does not matter here.
HOST_TEST(HugeText, AsGroupDeviceAndFolder_IsTakenAndTheLibraryGoesOn) {
    Init();
    EXPECT_EQ(manager.Start(kOfficeService, huge, huge), 0);
    EXPECT_EQ(manager.RemoteDeviceOnline(kOfficeService, huge, huge), 0);
    EXPECT_TRUE(Settle(60000));
    EXPECT_EQ(manager.LocalDeviceOffline(kOfficeService, huge, huge, kTrigger), 0);
    EXPECT_EQ(manager.RemoteDeviceOffline(kOfficeService, huge, huge, kTrigger), 0);
    EXPECT_EQ(manager.Stop(kOfficeService, huge), 0);
    EXPECT_TRUE(Settle(60000));
    std::string dir = "relative";
    manager.GetOfficeDir(huge, huge, dir);
    EXPECT_EQ(dir.substr(dir.size() - 9), "\\relative");
    EXPECT_TRUE(Start(kPcService));
}

// As folders of the first Init, such texts would keep the worker busy for minutes, because the
// library asks for each of 101 candidates.
HOST_TEST(HugeText, AsArgumentOfInit_IsTakenAndTheLibraryGoesOn) {
    manager.Init(folder.Install(), folder.Data(), huge, true);
    EXPECT_TRUE(Settle(60000));
    manager.Init(huge, huge, huge, true);
    manager.Destroy();
    EXPECT_TRUE(Settle(60000));
    EXPECT_TRUE(Start(kPcService));
}

class BadFolders : public Host {
protected:
    void StartFailsWith16(ServiceType service);
};

// Nothing was installed, so there is no service of any type.
void BadFolders::StartFailsWith16(ServiceType service) {
    const std::string type = std::to_string(service);
    EXPECT_FALSE(Start(service));
    Settle();
    EXPECT_THAT(
        WorkerLines(),
        ElementsAreArray(
            Lines{StartIsInvoked(service),
                  Info("PLENXManagerInner::Start", "plenx manager start service " + type),
                  Error("PLENXManagerInner::Start", "plenx manager start plenx service error 16")} +
            LinesOfStatus(service, 0, false)));
    EXPECT_FALSE(IsRegistered(L"PlenxPcSvc"));
    EXPECT_TRUE(Start(kOfficeService)) << "the office service needs no installed service";
}

HOST_TEST(BadFolders, MalformedUtf8_LeavesNoServiceSideUntilTheNextInit) {
    for (const auto& [install, data] : {std::pair("C:\\\xff", folder.Data().c_str()),
                                        std::pair(folder.Install().c_str(), "C:\\\xc3")}) {
        manager.Init(install, data, "third", true);
        Settle();
        EXPECT_THAT(WorkerLines(),
                    ElementsAre(Info("PLENXManagerInner::Init", "service manager initialization")));
    }
    StartFailsWith16(kPcService);
    Init();
    EXPECT_TRUE(Start(kPcService));
}

// The system sees a path up to its first NUL, so the library would wipe the data folder itself.
HOST_TEST(BadFolders, DataFolderWithANul_IsNotTouchedAndLeavesNoServices) {
    const std::filesystem::path file = folder.DataPath() / L"file.txt";
    WriteFile(file, "the host's");
    manager.Init(folder.Install(), folder.Data() + std::string(1, '\0'), "third", true);
    EXPECT_TRUE(Settle());
    EXPECT_EQ(ReadFile(file), "the host's");
    StartFailsWith16(kPcService);
}

// The same holds for the install folder: the driver upgrade would delete the file itself.
HOST_TEST(BadFolders, InstallFolderWithANul_IsNotTouchedAndLeavesNoServices) {
    const std::filesystem::path file = folder.DataPath() / L"file.txt";
    WriteFile(file, "the host's");
    manager.Init(folder.Data() + "\\file.txt" + std::string(1, '\0'), folder.Data(), "third", true);
    EXPECT_TRUE(Settle());
    EXPECT_EQ(ReadFile(file), "the host's");
    StartFailsWith16(kPcService);
}

HOST_TEST(BadFolders, EmptyDataFolder_LeavesNoServices) {
    manager.Init(folder.Install(), "", "third", true);
    Settle();
    EXPECT_THAT(WorkerLines(),
                ElementsAre(Info("PLENXManagerInner::Init", "service manager initialization"),
                            Info("PLENXManagerInner::Init", "rpc listen thread initialization")));
    StartFailsWith16(kPcService);
    EXPECT_EQ(manager.GetInt64Config(kPcService, DistributedFs::kServiceNotRunningConfig), 1);
}

HOST_TEST(BadFolders, DataFolderThatDoesNotExist_IsTried101TimesAndLeavesNoServices) {
    manager.Init(folder.Install(), folder.Data() + "\\missing", "third", true);
    Settle();
    Lines expected = {Info("PLENXManagerInner::Init", "service manager initialization")};
    for (int i = 0; i != 101; ++i) {
        expected.push_back(Error("FileUtils::MakeDirectory", "mkdir error 3"));
    }
    expected.push_back(Info("PLENXManagerInner::Init", "rpc listen thread initialization"));
    EXPECT_THAT(WorkerLines(), ElementsAreArray(expected));
    StartFailsWith16(kPhoneService);
}

HOST_TEST(BadFolders, InstallFolderThatDoesNotExist_FailsTheStarts) {
    manager.Init("C:\\plenx-missing", folder.Data(), "third", true);
    Settle();
    EXPECT_FALSE(Start(kPcService));
    Settle();
    EXPECT_THAT(WorkerLines(), testing::Contains(Error("ServiceManager::StartPlenxService",
                                                       "start plenx service PlenxPcSvc error 5")));
}

}  // namespace
}  // namespace PlenxTest
