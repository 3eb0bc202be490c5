// The service table: its rows, its folders, installing and uninstalling.

#include <windows.h>

#include "common/log.h"
#include "common/result_code.h"
#include "service/file_utils.h"
#include "service/service_manager.h"

namespace DistributedFs {
namespace {

constexpr int kNumberedFolders = 100;

static_assert(SERVICE_ALL_ACCESS == 0xF01FF, "the access mask of the service rows");

// All services run the same program and differ in name and arguments.
ServiceRecord ServiceRow(const std::wstring& name, const std::wstring& installFolder,
                         const std::wstring& serviceFolder, const std::wstring& digit) {
    return {name,
            installFolder + L"\\plenxservice.exe",
            SERVICE_ALL_ACCESS,
            SERVICE_WIN32_OWN_PROCESS,
            SERVICE_DEMAND_START,
            SERVICE_ERROR_NORMAL,
            true,
            {installFolder, serviceFolder, digit}};
}

// The creation of the driver asks for no access.
ServiceRecord DriverRow(const std::wstring& installFolder) {
    return {L"Dokan1",
            installFolder + L"\\dokan1.sys",
            0,
            SERVICE_FILE_SYSTEM_DRIVER,
            SERVICE_SYSTEM_START,
            SERVICE_ERROR_NORMAL,
            false,
            {}};
}

// Removes a candidate after one of its steps has failed.
void RemoveCandidate(const std::wstring& folder) {
    if (FileUtils::ForceRemoveDirectory(folder) != kSuccess) {
        LogError("DistributedFs::ServiceManager::MakeSourcePath",
                 "[PLENXSDK] mkdir src directory error and force remove src directory error");
    }
}

bool TryCandidate(const std::wstring& folder) {
    if (FileUtils::FileExists(folder) == kSuccess &&
        FileUtils::ForceRemoveDirectory(folder) != kSuccess) {
        return false;
    }
    if (FileUtils::MakeDirectory(folder) != kSuccess ||
        ServiceManager::MakeServicePath(folder) != kSuccess) {
        RemoveCandidate(folder);
        return false;
    }
    return true;
}

}  // namespace

ServiceManager::ServiceManager(const std::wstring& installFolder, const std::wstring& dataFolder) {
    if (UpgradeDriver(installFolder) != kSuccess ||
        MakeSourcePath(dataFolder, sourcePath) != kSuccess) {
        return;
    }
    services = {
        ServiceRow(L"PlenxOfficeSvc", installFolder, sourcePath + L"\\office", L"0"),
        ServiceRow(L"PlenxPcSvc", installFolder, sourcePath + L"\\pc", L"1"),
        ServiceRow(L"PlenxPhoneSvc", installFolder, sourcePath + L"\\phone", L"2"),
        DriverRow(installFolder),
    };
    processIds.assign(services.size(), 0);
    processBirths.assign(services.size(), 0);
    InstallService();
    StartDokanService();
}

// The driver and the office service stay registered.
ServiceManager::~ServiceManager() {
    if (services.empty()) {
        return;
    }
    try {
        UninstallService();
        services.clear();
        if (FileUtils::ForceRemoveDirectory(sourcePath) != kSuccess) {
            LogError("DistributedFs::ServiceManager::~ServiceManager",
                     "[PLENXSDK] remove src path error");
        }
    } catch (...) {
        // Out of memory. The next constructor takes over what is left behind.
    }
}

std::int32_t ServiceManager::MakeSourcePath(const std::wstring& dataFolder, std::wstring& out) {
    // Candidates are deleted with their content. Without a data folder they would lie on the
    // current drive. With a NUL in it each of them would be the data folder itself, because for the
    // system a path ends there.
    if (dataFolder.empty() || dataFolder.find(L'\0') != std::wstring::npos) {
        return kNoWorkingFolder;
    }
    const std::wstring first = dataFolder + L"\\plenx";
    if (TryCandidate(first)) {
        out = first;
        return kSuccess;
    }
    for (int n = 0; n != kNumberedFolders; ++n) {
        out = first + std::to_wstring(n);
        if (TryCandidate(out)) {
            return kSuccess;
        }
    }
    return kNoWorkingFolder;
}

std::int32_t ServiceManager::MakeServicePath(const std::wstring& folder) {
    if (FileUtils::FileExists(folder) != kSuccess) {
        LogError("DistributedFs::ServiceManager::MakeServicePath",
                 "[PLENXSDK] src directory not exit");
        return kServiceFoldersNotMade;
    }
    // The office service makes its own folder.
    if (FileUtils::MakeDirectory(folder + L"\\pc") != kSuccess ||
        FileUtils::MakeDirectory(folder + L"\\phone") != kSuccess) {
        return kServiceFoldersNotMade;
    }
    return kSuccess;
}

void ServiceManager::InstallService() {
    constexpr std::string_view kFunction = "DistributedFs::ServiceManager::InstallService";
    for (std::int32_t row = kFirstInstalledRow; IsInstalledRow(row); ++row) {
        const std::wstring& name = services[row].name;
        if (const std::int32_t code = StopServiceByIndex(row); code != kSuccess) {
            LogError(kFunction, "[PLENXSDK] stop service ", name, " error ", code);
        }
        if (const std::int32_t code = CreateServiceByIndex(row); code != kSuccess) {
            LogError(kFunction, "[PLENXSDK] create service ", name, " error ", code);
        } else {
            LogInfo(kFunction, "[PLENXSDK] install service ", name, " success");
        }
    }
}

void ServiceManager::UninstallService() {
    constexpr std::string_view kFunction = "DistributedFs::ServiceManager::UninstallService";
    for (std::int32_t row = kFirstInstalledRow; IsInstalledRow(row); ++row) {
        const std::wstring& name = services[row].name;
        if (const std::int32_t code = StopServiceByIndex(row); code != kSuccess) {
            LogError(kFunction, "[PLENXSDK] stop service ", name, " error ", code);
        }
        if (const std::int32_t code = DeleteServiceByIndex(row); code != kSuccess) {
            LogError(kFunction, "[PLENXSDK] delete service ", name, " error ", code);
        } else {
            LogInfo(kFunction, "[PLENXSDK] uninstall service ", name, " success");
        }
    }
}

// The first row is the office service and the last one the driver. Neither is installed or
// uninstalled by this.
bool ServiceManager::IsInstalledRow(std::int32_t row) const noexcept {
    return row >= kFirstInstalledRow && row <= static_cast<std::int32_t>(services.size()) - 2;
}

}  // namespace DistributedFs
