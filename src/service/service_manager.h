// ServiceManager has the fixed table of the Windows services that the library installs and controls
// (three instances of one service program, and the file-system driver), and the folders in which
// they work.
//
// The constructor upgrades the driver files, makes a fresh working folder, registers the PC and
// phone services and starts the driver. The destructor unregisters those services and removes the
// folder. The table is complete, or empty when the constructor had to stop early. It never changes
// later.
//
// Any thread may call isServiceAlive; only one thread at a time may call anything else. Every
// operation opens its own handles and keeps none.

#ifndef PLENXSDK_SERVICE_SERVICE_MANAGER_H
#define PLENXSDK_SERVICE_SERVICE_MANAGER_H

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>
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

    // A row is a ServiceType, or 3 for the driver.
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

    /// Polls the status until it equals state (untilEqual) or differs from it. Gives up when the
    /// service makes no progress within the wait hint in status.
    static void WaitServiceStatus(SC_HANDLE service, SERVICE_STATUS_PROCESS& status,
                                  DWORD& bytesNeeded, std::int32_t state, bool untilEqual);

private:
    static constexpr std::int32_t kFirstInstalledRow = 1;

    /// Null when there is no such row.
    const ServiceRecord* FindRow(std::int32_t row) const noexcept;
    bool IsInstalledRow(std::int32_t row) const noexcept;
    void RememberProcess(std::int32_t row, DWORD processId);
    void EndLingeringProcess(std::int32_t row) const;
    std::int32_t ReportOutcome(std::string_view function, const char* text, std::int32_t row,
                               std::int32_t code) const;

    std::vector<ServiceRecord> services;
    std::wstring sourcePath;
    std::vector<std::uint32_t> processIds;  // for each row the process last seen running
    // Creation times, or 0 when unknown. They distinguish a process from a later one with the same
    // id.
    std::vector<std::uint64_t> processBirths;
};

}  // namespace DistributedFs

#endif  // PLENXSDK_SERVICE_SERVICE_MANAGER_H
