// A machine on which tests can make a ServiceManager.

#ifndef PLENXSDK_UNIT_SERVICE_SERVICE_MANAGER_TEST_H
#define PLENXSDK_UNIT_SERVICE_SERVICE_MANAGER_TEST_H

#include <memory>
#include <string>

#include "service/service_manager.h"
#include "service_room_test.h"

constexpr std::int32_t kOffice = 0;
constexpr std::int32_t kPc = 1;
constexpr std::int32_t kPhone = 2;
constexpr std::int32_t kDriver = 3;

const std::wstring kInstall = L"C:\\App";
const std::wstring kData = L"C:\\Data";

class ServiceManagerTest : public ServiceRoomTest {
protected:
    ServiceManagerTest() { PrepareMachine(); }

    void PrepareMachine() {
        files.AddFolder(kInstall);
        files.AddFolder(kData);
    }

    std::unique_ptr<DistributedFs::ServiceManager> MakeManager() {
        return std::make_unique<DistributedFs::ServiceManager>(kInstall, kData);
    }

    /// Makes a manager with an empty table, because a driver file could not be replaced.
    std::unique_ptr<DistributedFs::ServiceManager> MakeEmptyManager() {
        files.AddFile(kInstall + L"\\upgrade\\dokan1.sys");
        files.AddFile(kInstall + L"\\dokan1.sys");
        files.Give(kInstall + L"\\dokan1.sys", FileTrait::kHeldOpen);
        return MakeManager();
    }

    /// Puts something that cannot be removed into the folder.
    void Block(const std::wstring& folder) {
        files.AddFile(folder + L"\\held");
        files.Give(folder + L"\\held", FileTrait::kHeldOpen);
    }
    void BlockAllCandidates() {
        Block(L"C:\\Data\\plenx");
        for (int n = 0; n != 100; ++n) {
            Block(L"C:\\Data\\plenx" + std::to_wstring(n));
        }
    }

    FakeFiles& files = platform.Files();
    FakeScm& scm = platform.Scm();
    FakeProcesses& processes = platform.Processes();
};

#endif  // PLENXSDK_UNIT_SERVICE_SERVICE_MANAGER_TEST_H
