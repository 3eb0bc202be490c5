// ServiceManager: the fixed table of the Windows services that the library installs and
// drives (three instances of one service program, and the file-system driver), and the
// folders that they work in.
//
// Making one upgrades the driver files, makes a fresh working folder, registers the PC and
// phone services and starts the driver; destroying it unregisters those services and
// removes the folder. Either all of the table is there or, when making it had to stop,
// none. The table never changes after construction.
//
// Threads: isServiceAlive may be called from any thread; everything else from one at a
// time. Every operation opens its own handles and keeps none.

#ifndef PLENXSDK_SERVICE_SERVICE_MANAGER_H
#define PLENXSDK_SERVICE_SERVICE_MANAGER_H

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

namespace DistributedFs {

struct ServiceRecord {
    std::wstring name;  // service name and display name
    std::wstring binaryPath;
    std::uint32_t desiredAccess;
    std::uint32_t serviceType;
    std::uint32_t startType;
    std::uint32_t errorControl;
    bool isServiceProcess;
    std::vector<std::wstring> arguments;  // given to the service when it is started
};

class ServiceManager {
public:
    ServiceManager(const std::wstring& installFolder, const std::wstring& dataFolder);
    ~ServiceManager();
    ServiceManager(const ServiceManager&) = delete;
    ServiceManager& operator=(const ServiceManager&) = delete;

    // row: a ServiceType, or 3 for the driver.
    std::int32_t StartPlenxService(std::int32_t row);
    std::int32_t StopPlenxService(std::int32_t row);
    bool isServiceAlive(std::int32_t row) const;
    std::int32_t StartDokanService();

    std::int32_t CreateServiceByIndex(std::int32_t row);
    std::int32_t StartServiceByIndex(std::int32_t row);
    std::int32_t StopServiceByIndex(std::int32_t row);
    std::int32_t DeleteServiceByIndex(std::int32_t row);

    void InstallService();
    void UninstallService();

    static std::int32_t UpgradeDriver(const std::wstring& installFolder);
    static std::int32_t MakeSourcePath(const std::wstring& dataFolder, std::wstring& out);
    static std::int32_t MakeServicePath(const std::wstring& folder);

    /// Polls the status until it equals state (untilEqual) or differs from it, for as long
    /// as the service makes progress within the wait hint that stands in status.
    static void WaitServiceStatus(SC_HANDLE service, SERVICE_STATUS_PROCESS& status,
                                  DWORD& bytesNeeded, std::int32_t state, bool untilEqual);

private:
    static constexpr std::int32_t kFirstInstalledRow = 1;

    bool IsRow(std::int32_t row) const noexcept;
    bool IsInstalledRow(std::int32_t row) const noexcept;
    void RememberProcess(std::int32_t row, DWORD processId);
    void EndLingeringProcess(std::int32_t row) const;

    std::vector<ServiceRecord> services;
    std::wstring sourcePath;
    std::vector<std::uint32_t> processIds;  // per row, last seen running
    // Creation times, 0 when unknown: they tell a process from a later one that was given the
    // same id.
    std::vector<std::uint64_t> processBirths;
};

}  // namespace DistributedFs

#endif  // PLENXSDK_SERVICE_SERVICE_MANAGER_H
