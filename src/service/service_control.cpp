// Creates, starts, stops, deletes and probes the services of the table, one row at a time, through
// the Service Control Manager.

#include <windows.h>

#include <cstring>
#include <string_view>

#include "common/log.h"
#include "common/result_code.h"
#include "service/handles.h"
#include "service/kill_service_process.h"
#include "service/service_manager.h"

namespace DistributedFs {
namespace {

constexpr std::int32_t kDriverRow = 3;

// The rights that each operation asks for. The numbers are fixed, while the header's masks could
// vary.
constexpr DWORD kStartAccess = DELETE | SERVICE_STOP | SERVICE_START | SERVICE_QUERY_STATUS;
constexpr DWORD kStopAccess = SERVICE_STOP | SERVICE_ENUMERATE_DEPENDENTS | SERVICE_QUERY_STATUS;
constexpr DWORD kDeleteAccess = DELETE | SERVICE_QUERY_STATUS;
static_assert(SC_MANAGER_ALL_ACCESS == 0xF003F);
static_assert(kStartAccess == 0x10034);
static_assert(kStopAccess == 0x2C);
static_assert(kDeleteAccess == 0x10004);
static_assert(SERVICE_QUERY_STATUS == 0x4);
static_assert(sizeof(SERVICE_STATUS_PROCESS) == 36);
static_assert(sizeof(SERVICE_STATUS) == 28);

constexpr DWORD kPollsPerWaitHint = 200;
constexpr DWORD kStopWaitMilliseconds = 2000;  // counts while there is no progress

ServiceHandle OpenManager(std::string_view function) {
    ServiceHandle manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    if (!manager) {
        const DWORD error = GetLastError();
        LogError(function, "[PLENXSDK] open sc manager error ", error);
    }
    return manager;
}

ServiceHandle OpenRow(std::string_view function, const ServiceHandle& manager,
                      const ServiceRecord& record, DWORD access) {
    ServiceHandle service(OpenServiceW(manager.Get(), record.name.c_str(), access));
    if (!service) {
        const DWORD error = GetLastError();
        LogError(function, "[PLENXSDK] open service error ", error);
    }
    return service;
}

bool QueryStatus(std::string_view function, SC_HANDLE service, SERVICE_STATUS_PROCESS& status,
                 DWORD& bytesNeeded) {
    if (!QueryServiceStatusEx(service, SC_STATUS_PROCESS_INFO, reinterpret_cast<LPBYTE>(&status),
                              sizeof(status), &bytesNeeded)) {
        const DWORD error = GetLastError();
        LogError(function, "[PLENXSDK] query service status error ", error);
        return false;
    }
    return true;
}

// The call fills only the short form of the status; the fields behind it keep their values.
bool SendStop(SC_HANDLE service, SERVICE_STATUS_PROCESS& status) {
    SERVICE_STATUS reply{};
    if (!ControlService(service, SERVICE_CONTROL_STOP, &reply)) {
        return false;
    }
    std::memcpy(&status, &reply, sizeof(reply));
    return true;
}

// Returns 0 when the system does not tell the time.
std::uint64_t ProcessBirth(DWORD processId) {
    if (processId == 0) {
        return 0;
    }
    const ProcessHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId));
    FILETIME birth{};
    FILETIME exit{};
    FILETIME kernel{};
    FILETIME user{};
    if (!process || !GetProcessTimes(process.Get(), &birth, &exit, &kernel, &user)) {
        return 0;
    }
    return (std::uint64_t{birth.dwHighDateTime} << 32) | birth.dwLowDateTime;
}

}  // namespace

bool ServiceManager::IsRow(std::int32_t row) const noexcept {
    return row >= 0 && static_cast<std::size_t>(row) < services.size();
}

void ServiceManager::RememberProcess(std::int32_t row, DWORD processId) {
    processIds[row] = processId;
    processBirths[row] = ProcessBirth(processId);
}

// The last known process of the service may still exist. Its id may also belong to an unrelated
// process by now, which this spares.
void ServiceManager::EndLingeringProcess(std::int32_t row) const {
    const std::uint32_t processId = processIds[row];
    const std::uint64_t birth = processBirths[row] != 0 ? ProcessBirth(processId) : 0;
    if (birth != 0 && birth != processBirths[row]) {
        LogError("DistributedFs::KillServiceProcess", "[PLENXSDK] kill service process ",
                 processId);
        return;
    }
    KillServiceProcess(processId);
}

void ServiceManager::WaitServiceStatus(SC_HANDLE service, SERVICE_STATUS_PROCESS& status,
                                       DWORD& bytesNeeded, std::int32_t state, bool untilEqual) {
    DWORD start = GetTickCount();
    const DWORD timeout = status.dwWaitHint;
    const DWORD interval = timeout / kPollsPerWaitHint;
    DWORD lastCheckPoint = status.dwCheckPoint;
    while ((status.dwCurrentState == static_cast<DWORD>(state)) != untilEqual) {
        if (!QueryStatus("DistributedFs::ServiceManager::WaitServiceStatus", service, status,
                         bytesNeeded)) {
            return;
        }
        if (status.dwCheckPoint > lastCheckPoint) {
            lastCheckPoint = status.dwCheckPoint;
            start = GetTickCount();
        } else if (GetTickCount() - start > timeout) {
            return;
        }
        Sleep(interval);
    }
}

std::int32_t ServiceManager::CreateServiceByIndex(std::int32_t row) {
    constexpr std::string_view kFunction = "DistributedFs::ServiceManager::CreateServiceByIndex";
    if (!IsRow(row)) {
        return kOutOfTable;
    }
    const ServiceRecord& record = services[row];
    const ServiceHandle manager = OpenManager(kFunction);
    if (!manager) {
        return kManagerNotOpened;
    }
    const ServiceHandle present(
        OpenServiceW(manager.Get(), record.name.c_str(), SERVICE_ALL_ACCESS));
    if (present) {
        LogInfo(kFunction, "[PLENXSDK] sevice has been created");
        return kSuccess;
    }
    const ServiceHandle created(CreateServiceW(
        manager.Get(), record.name.c_str(), record.name.c_str(), record.desiredAccess,
        record.serviceType, record.startType, record.errorControl, record.binaryPath.c_str(),
        nullptr, nullptr, nullptr, nullptr, nullptr));
    if (!created) {
        const DWORD error = GetLastError();
        LogError(kFunction, "[PLENXSDK] create service error ", error);
        return kServiceNotCreated;
    }
    LogInfo(kFunction, "[PLENXSDK] create service success");
    return kSuccess;
}

std::int32_t ServiceManager::StartServiceByIndex(std::int32_t row) {
    constexpr std::string_view kFunction = "DistributedFs::ServiceManager::StartServiceByIndex";
    if (!IsRow(row)) {
        return kOutOfTable;
    }
    const ServiceHandle manager = OpenManager(kFunction);
    if (!manager) {
        return kManagerNotOpened;
    }
    const ServiceHandle service = OpenRow(kFunction, manager, services[row], kStartAccess);
    if (!service) {
        return kServiceNotOpened;
    }
    SERVICE_STATUS_PROCESS status{};
    DWORD bytesNeeded = 0;
    if (!QueryStatus(kFunction, service.Get(), status, bytesNeeded)) {
        return kStatusQueryFailed;
    }
    if (status.dwCurrentState != SERVICE_STOPPED && status.dwCurrentState != SERVICE_STOP_PENDING) {
        LogInfo(kFunction, "[PLENXSDK] service is running");
        RememberProcess(row, status.dwProcessId);
        return kSuccess;
    }
    EndLingeringProcess(row);
    WaitServiceStatus(service.Get(), status, bytesNeeded, SERVICE_STOP_PENDING, false);

    std::vector<const wchar_t*> arguments;
    for (const std::wstring& argument : services[row].arguments) {
        arguments.push_back(argument.c_str());
    }
    if (!StartServiceW(service.Get(), static_cast<DWORD>(arguments.size()),
                       arguments.empty() ? nullptr : arguments.data())) {
        const DWORD error = GetLastError();
        LogError(kFunction, "[PLENXSDK] start service error ", error);
        return kServiceNotStarted;
    }
    if (!QueryStatus(kFunction, service.Get(), status, bytesNeeded)) {
        return kStatusQueryFailed;
    }
    WaitServiceStatus(service.Get(), status, bytesNeeded, SERVICE_START_PENDING, false);
    if (status.dwCurrentState != SERVICE_RUNNING) {
        LogError(kFunction, "[PLENXSDK] wait service status error");
        return kServiceNotStarted;
    }
    RememberProcess(row, status.dwProcessId);
    LogInfo(kFunction, "[PLENXSDK] start service successful");
    return kSuccess;
}

std::int32_t ServiceManager::StopServiceByIndex(std::int32_t row) {
    constexpr std::string_view kFunction = "DistributedFs::ServiceManager::StopServiceByIndex";
    if (!IsRow(row)) {
        return kOutOfTable;
    }
    const ServiceHandle manager = OpenManager(kFunction);
    if (!manager) {
        return kManagerNotOpened;
    }
    const ServiceHandle service = OpenRow(kFunction, manager, services[row], kStopAccess);
    if (!service) {
        return kServiceNotOpened;
    }
    SERVICE_STATUS_PROCESS status{};
    DWORD bytesNeeded = 0;
    if (!QueryStatus(kFunction, service.Get(), status, bytesNeeded)) {
        return kStatusQueryFailed;
    }
    if (status.dwCurrentState == SERVICE_STOPPED) {
        LogInfo(kFunction, "[PLENXSDK] service has stopped");
        return kSuccess;
    }
    // If the service stops by itself during this wait, it refuses the request that follows.
    WaitServiceStatus(service.Get(), status, bytesNeeded, SERVICE_STOP_PENDING, false);
    if (!SendStop(service.Get(), status)) {
        const DWORD error = GetLastError();
        LogError(kFunction, "[PLENXSDK] stop service error ", error);
        return kStopRefused;
    }
    status.dwWaitHint = kStopWaitMilliseconds;
    WaitServiceStatus(service.Get(), status, bytesNeeded, SERVICE_STOPPED, true);
    if (status.dwCurrentState != SERVICE_STOPPED) {
        LogInfo(kFunction, "[PLENXSDK] force stop service");
        KillServiceProcess(status.dwProcessId);
    }
    LogInfo(kFunction, "[PLENXSDK] stop service successful");
    return kSuccess;
}

std::int32_t ServiceManager::DeleteServiceByIndex(std::int32_t row) {
    constexpr std::string_view kFunction = "DistributedFs::ServiceManager::DeleteServiceByIndex";
    if (!IsRow(row)) {
        return kOutOfTable;
    }
    const std::wstring& name = services[row].name;
    const ServiceHandle manager = OpenManager(kFunction);
    if (!manager) {
        return kManagerNotOpened;
    }
    const ServiceHandle service(OpenServiceW(manager.Get(), name.c_str(), kDeleteAccess));
    if (!service) {
        LogError(kFunction, "[PLENXSDK] service ", name, " has been deleted");
        return kSuccess;
    }
    SERVICE_STATUS_PROCESS status{};
    DWORD bytesNeeded = 0;
    if (!QueryStatus(kFunction, service.Get(), status, bytesNeeded)) {
        return kStatusQueryFailed;
    }
    if (status.dwCurrentState != SERVICE_STOPPED) {
        LogError(kFunction, "[PLENXSDK] service ", name, " is not stopped");
        return kServiceNotDeleted;
    }
    if (!DeleteService(service.Get())) {
        const DWORD error = GetLastError();
        LogError(kFunction, "[PLENXSDK] service ", name, " delete error ", error);
        return kServiceNotDeleted;
    }
    LogInfo(kFunction, "[PLENXSDK] delete service successful");
    return kSuccess;
}

std::int32_t ServiceManager::StartDokanService() {
    constexpr std::string_view kFunction = "DistributedFs::ServiceManager::StartDokanService";
    // Somebody else may have registered the driver.
    if (const std::int32_t code = CreateServiceByIndex(kDriverRow); code != kSuccess) {
        LogError(kFunction, "[PLENXSDK] create dokan service error ", code);
    }
    const std::int32_t code = StartServiceByIndex(kDriverRow);
    if (code != kSuccess) {
        LogError(kFunction, "[PLENXSDK] start dokan service error ", code);
    } else {
        LogInfo(kFunction, "[PLENXSDK] start dokan service success");
    }
    return code;
}

std::int32_t ServiceManager::StartPlenxService(std::int32_t row) {
    constexpr std::string_view kFunction = "DistributedFs::ServiceManager::StartPlenxService";
    if (!IsRow(row)) {
        return kOutOfTable;
    }
    const std::wstring& name = services[row].name;
    const std::int32_t code = StartServiceByIndex(row);
    if (code != kSuccess) {
        LogError(kFunction, "[PLENXSDK] start plenx service ", name, " error ", code);
    } else {
        LogInfo(kFunction, "[PLENXSDK] start plenx service ", name, " success");
    }
    return code;
}

std::int32_t ServiceManager::StopPlenxService(std::int32_t row) {
    constexpr std::string_view kFunction = "DistributedFs::ServiceManager::StopPlenxService";
    if (!IsRow(row)) {
        return kOutOfTable;
    }
    const std::wstring& name = services[row].name;
    const std::int32_t code = StopServiceByIndex(row);
    if (code != kSuccess) {
        LogError(kFunction, "[PLENXSDK] stop plenx service ", name, " error ", code);
    } else {
        LogInfo(kFunction, "[PLENXSDK] stop plenx service ", name, " success");
    }
    return code;
}

bool ServiceManager::isServiceAlive(std::int32_t row) const {
    constexpr std::string_view kFunction = "DistributedFs::ServiceManager::isServiceAlive";
    if (!IsRow(row)) {
        return false;
    }
    const ServiceHandle manager = OpenManager(kFunction);
    if (!manager) {
        return false;
    }
    const ServiceHandle service = OpenRow(kFunction, manager, services[row], SERVICE_QUERY_STATUS);
    if (!service) {
        return false;
    }
    SERVICE_STATUS_PROCESS status{};
    DWORD bytesNeeded = 0;
    if (!QueryStatus(kFunction, service.Get(), status, bytesNeeded)) {
        return false;
    }
    if (status.dwCurrentState == SERVICE_STOPPED) {
        LogInfo(kFunction, "[PLENXSDK] service has stopped");
        return false;
    }
    return true;
}

}  // namespace DistributedFs
