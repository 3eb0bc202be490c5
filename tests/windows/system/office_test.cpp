// Tests the office service's part in every operation, seen from the companion library, and the
// outcomes for the host when the companion fails.

#include <sstream>

#include "system/host.h"

namespace PlenxTest {
namespace {

using testing::ElementsAre;

constexpr auto kTrigger = DistributedFs::TriggerType{1};

class Office : public Host {
protected:
    Office() { SetEnvironmentVariableW(L"PLENX_OFFICE_LOG", officeLog.c_str()); }

    void UseEverything(ServiceType service);
    Lines CallsOfCompanion() const {
        std::istringstream file(ReadFile(officeLog));
        Lines lines;
        for (std::string line; std::getline(file, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    const std::filesystem::path officeLog = folder.InstallPath() / "office.log";
};

void Office::UseEverything(ServiceType service) {
    unsigned char data[20] = {};
    data[0] = 0xff;
    data[15] = 0xfe;
    data[16] = 0xfd;  // the office service takes 16 bytes at most
    manager.Start(service, "group", "argument");
    manager.LocalDeviceOnline(service, "group", "here", sizeof data, data);
    manager.RemoteDeviceOnline(service, "group", "there");
    manager.RemoteDeviceOffline(service, "group", "there", kTrigger);
    manager.LocalDeviceOffline(service, "group", "here", kTrigger);
    manager.Stop(service, "group");
    Settle();
}

HOST_TEST(Office, EveryOperation_ReachesTheCompanion) {
    manager.Init(folder.Install(), folder.Data(), "third", true);
    UseEverything(kOfficeService);
    manager.Destroy();
    std::string install;
    std::string data;
    for (const char letter : folder.Install()) {
        install += letter == '\\' ? "\\\\" : std::string(1, letter);
    }
    for (const char letter : folder.Data()) {
        data += letter == '\\' ? "\\\\" : std::string(1, letter);
    }
    EXPECT_THAT(CallsOfCompanion(), ElementsAre("DistributedFileManager(\"" + install + "\", \"" +
                                                    data + "\", \"third\", true)",
                                                "Start() = 0",
                                                "LocalDeviceOnline(\"group\", \"here\", 1, "
                                                "ff0000000000000000000000000000fe) = 0",
                                                "RemoteDeviceOnline(\"group\", \"there\") = 0",
                                                "RemoteDeviceOffline(\"group\", \"there\") = 0",
                                                "LocalDeviceOffline(\"group\", \"here\") = 0",
                                                "Stop() = 0", "UninstallPackages() = 0"));
    EXPECT_THAT(ToldByWorker(),
                ElementsAre("NotifyStatus(0, group, 0, 1)", "NotifyStatus(0, group, 2, 1)",
                            "NotifyStatus(0, group, 3, 1)", "NotifyStatus(0, group, 1, 1)",
                            "NotifyStatus(3, group, 1, 1)"));
}

HOST_TEST(Office, CompanionThatFails_IsReportedForTheFourKinds) {
    SetEnvironmentVariableW(L"PLENX_OFFICE_FAIL",
                            L"Start=7,Stop=8,LocalDeviceOnline=9,RemoteDeviceOnline=10,"
                            L"LocalDeviceOffline=11,RemoteDeviceOffline=12,"
                            L"GetGroupNeighborDistributedDir=13,UninstallPackages=14");
    Init();
    UseEverything(kOfficeService);
    EXPECT_THAT(ToldByWorker(),
                ElementsAre("NotifyStatus(0, group, 0, 0)", "NotifyStatus(0, group, 2, 0)",
                            "NotifyStatus(0, group, 3, 0)", "NotifyStatus(0, group, 1, 0)",
                            "NotifyStatus(3, group, 1, 1)"));
    std::string dir = "name";
    EXPECT_EQ(manager.GetOfficeDir("group", "there", dir), 13);
    EXPECT_EQ(dir, "\\name");
    manager.Destroy();
    EXPECT_TRUE(Settle());
}

HOST_TEST(Office, CompanionThatFailsInACombination_LeavesThePcService) {
    SetEnvironmentVariableW(L"PLENX_OFFICE_FAIL", L"Start=7,Stop=8");
    Init();
    manager.Start(kCombinedService, "group", "argument");
    manager.LocalDeviceOnline(kCombinedService, "group", "here", 0, nullptr);
    manager.Stop(kCombinedService, "group");
    Settle();
    // The office service alone hears of a local device of the combination, because there is no
    // service 3 that could.
    EXPECT_THAT(ToldByWorker(),
                ElementsAre("NotifyStatus(1, group, 0, 1)", "NotifyStatus(0, group, 0, 0)",
                            "NotifyStatus(3, group, 2, 0)", "NotifyStatus(1, group, 1, 0)",
                            "NotifyStatus(0, group, 1, 0)", "NotifyStatus(3, group, 1, 1)"));
    EXPECT_EQ(CountLines(Error("PLENXManagerInner::LocalDeviceOnline",
                               "plenx manager inner local device online error 16")),
              1);
}

}  // namespace
}  // namespace PlenxTest
