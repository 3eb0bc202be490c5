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

// The service of a row, opened for one operation: the manager, the service, and its status as it
// was last asked for. A step that fails writes its line and returns its code.
class OpenedService {
public:
    /// record: null when there is no such row, which makes the first step fail without a line.
    OpenedService(std::string_view function, const ServiceRecord* record)
        : function_(function), record_(record) {}

    std::int32_t OpenManager() {
        if (record_ == nullptr) {
            return kOutOfTable;
        }
        manager_ = ServiceHandle(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
        return manager_ ? kSuccess : Fail("[PLENXSDK] open sc manager error ", kManagerNotOpened);
    }

    /// Writes no line.
    bool Open(DWORD access) {
        service_ = ServiceHandle(OpenServiceW(manager_.Get(), record_->name.c_str(), access));
        return static_cast<bool>(service_);
    }

    std::int32_t Query() {
        return QueryStatus(function_, service_.Get(), status_, bytesNeeded_) ? kSuccess
                                                                             : kStatusQueryFailed;
    }

    /// All of the above.
    std::int32_t OpenAndQuery(DWORD access) {
        if (const std::int32_t code = OpenManager(); code != kSuccess) {
            return code;
        }
        return Open(access) ? Query() : Fail("[PLENXSDK] open service error ", kServiceNotOpened);
    }

    std::int32_t Create() {
        const ServiceHandle created(CreateServiceW(
            manager_.Get(), record_->name.c_str(), record_->name.c_str(), record_->desiredAccess,
            record_->serviceType, record_->startType, record_->errorControl,
            record_->binaryPath.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr));
        if (!created) {
            return Fail("[PLENXSDK] create service error ", kServiceNotCreated);
        }
        LogInfo(function_, "[PLENXSDK] create service success");
        return kSuccess;
    }

    std::int32_t StartAndQuery() {
        std::vector<const wchar_t*> arguments;
        arguments.reserve(record_->arguments.size());
        for (const std::wstring& argument : record_->arguments) {
            arguments.push_back(argument.c_str());
        }
        const bool started = StartServiceW(service_.Get(), static_cast<DWORD>(arguments.size()),
                                           arguments.empty() ? nullptr : arguments.data());
        return started ? Query() : Fail("[PLENXSDK] start service error ", kServiceNotStarted);
    }

    std::int32_t SendStop() {
        SERVICE_STATUS reply{};
        if (!ControlService(service_.Get(), SERVICE_CONTROL_STOP, &reply)) {
            return Fail("[PLENXSDK] stop service error ", kStopRefused);
        }
        // The reply is the short form of the status; the fields after it keep their values.
        std::memcpy(&status_, &reply, sizeof(reply));
        return kSuccess;
    }

    void WaitWhile(DWORD state) {
        ServiceManager::WaitServiceStatus(service_.Get(), status_, bytesNeeded_,
                                          static_cast<std::int32_t>(state), false);
    }

    /// Ignores the wait hint that the service gave.
    void WaitForStop() {
        status_.dwWaitHint = kStopWaitMilliseconds;
        ServiceManager::WaitServiceStatus(service_.Get(), status_, bytesNeeded_, SERVICE_STOPPED,
                                          true);
    }

    std::int32_t Delete() {
        if (!DeleteService(service_.Get())) {
            const DWORD error = GetLastError();
            LogError(function_, "[PLENXSDK] service ", record_->name, " delete error ", error);
            return kServiceNotDeleted;
        }
        LogInfo(function_, "[PLENXSDK] delete service successful");
        return kSuccess;
    }

    DWORD State() const noexcept { return status_.dwCurrentState; }
    DWORD ProcessId() const noexcept { return status_.dwProcessId; }

private:
    std::int32_t Fail(const char* text, std::int32_t code) const {
        const DWORD error = GetLastError();
        LogError(function_, text, error);
        return code;
    }

    const std::string_view function_;
    const ServiceRecord* const record_;
    ServiceHandle manager_;
    ServiceHandle service_;  // closed before the manager
    SERVICE_STATUS_PROCESS status_{};
    DWORD bytesNeeded_ = 0;
};

// Opens nothing for the id 0.
ProcessHandle OpenToIdentify(DWORD processId) {
    return ProcessHandle(processId != 0
                             ? OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId)
                             : nullptr);
}

// Returns 0 when the system does not give the time of creation.
std::uint64_t ProcessBirth(const ProcessHandle& process) {
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

const ServiceRecord* ServiceManager::FindRow(std::int32_t row) const noexcept {
    return row >= 0 && static_cast<std::size_t>(row) < services.size() ? &services[row] : nullptr;
}

void ServiceManager::RememberProcess(std::int32_t row, DWORD processId) {
    processIds[row] = processId;
    processBirths[row] = ProcessBirth(OpenToIdentify(processId));
}

// The last known process of the service may still exist. Its id may also belong to an unrelated
// process by now, which this spares. A process that could not be identified when it was seen had
// ended by then, so its id can only belong to somebody else.
void ServiceManager::EndLingeringProcess(std::int32_t row) const {
    const std::uint32_t processId = processIds[row];
    const std::uint64_t birth = processBirths[row];
    // Windows gives nobody the id of a process that is still open.
    const ProcessHandle process = OpenToIdentify(birth != 0 ? processId : 0);
    const std::uint64_t birthNow = ProcessBirth(process);
    const bool isAnother = birthNow != 0 && birthNow != birth;
    if (birth == 0 || isAnother) {
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
    OpenedService service(kFunction, FindRow(row));
    if (const std::int32_t code = service.OpenManager(); code != kSuccess) {
        return code;
    }
    if (service.Open(SERVICE_ALL_ACCESS)) {
        LogInfo(kFunction, "[PLENXSDK] sevice has been created");
        return kSuccess;
    }
    return service.Create();
}

std::int32_t ServiceManager::StartServiceByIndex(std::int32_t row) {
    constexpr std::string_view kFunction = "DistributedFs::ServiceManager::StartServiceByIndex";
    OpenedService service(kFunction, FindRow(row));
    if (const std::int32_t code = service.OpenAndQuery(kStartAccess); code != kSuccess) {
        return code;
    }
    if (service.State() != SERVICE_STOPPED && service.State() != SERVICE_STOP_PENDING) {
        LogInfo(kFunction, "[PLENXSDK] service is running");
        RememberProcess(row, service.ProcessId());
        return kSuccess;
    }
    EndLingeringProcess(row);
    service.WaitWhile(SERVICE_STOP_PENDING);
    if (const std::int32_t code = service.StartAndQuery(); code != kSuccess) {
        return code;
    }
    service.WaitWhile(SERVICE_START_PENDING);
    if (service.State() != SERVICE_RUNNING) {
        LogError(kFunction, "[PLENXSDK] wait service status error");
        return kServiceNotStarted;
    }
    RememberProcess(row, service.ProcessId());
    LogInfo(kFunction, "[PLENXSDK] start service successful");
    return kSuccess;
}

std::int32_t ServiceManager::StopServiceByIndex(std::int32_t row) {
    constexpr std::string_view kFunction = "DistributedFs::ServiceManager::StopServiceByIndex";
    OpenedService service(kFunction, FindRow(row));
    if (const std::int32_t code = service.OpenAndQuery(kStopAccess); code != kSuccess) {
        return code;
    }
    if (service.State() == SERVICE_STOPPED) {
        LogInfo(kFunction, "[PLENXSDK] service has stopped");
        return kSuccess;
    }
    // If the service stops by itself during this wait, it refuses the request that follows.
    service.WaitWhile(SERVICE_STOP_PENDING);
    if (const std::int32_t code = service.SendStop(); code != kSuccess) {
        return code;
    }
    service.WaitForStop();
    if (service.State() != SERVICE_STOPPED) {
        LogInfo(kFunction, "[PLENXSDK] force stop service");
        KillServiceProcess(service.ProcessId());
    }
    LogInfo(kFunction, "[PLENXSDK] stop service successful");
    return kSuccess;
}

std::int32_t ServiceManager::DeleteServiceByIndex(std::int32_t row) {
    constexpr std::string_view kFunction = "DistributedFs::ServiceManager::DeleteServiceByIndex";
    OpenedService service(kFunction, FindRow(row));
    if (const std::int32_t code = service.OpenManager(); code != kSuccess) {
        return code;
    }
    if (!service.Open(kDeleteAccess)) {
        LogError(kFunction, "[PLENXSDK] service ", services[row].name, " has been deleted");
        return kSuccess;
    }
    if (const std::int32_t code = service.Query(); code != kSuccess) {
        return code;
    }
    if (service.State() != SERVICE_STOPPED) {
        LogError(kFunction, "[PLENXSDK] service ", services[row].name, " is not stopped");
        return kServiceNotDeleted;
    }
    return service.Delete();
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
    return ReportOutcome("DistributedFs::ServiceManager::StartPlenxService",
                         "[PLENXSDK] start plenx service ", row, StartServiceByIndex(row));
}

std::int32_t ServiceManager::StopPlenxService(std::int32_t row) {
    return ReportOutcome("DistributedFs::ServiceManager::StopPlenxService",
                         "[PLENXSDK] stop plenx service ", row, StopServiceByIndex(row));
}

// A row that does not exist has no name and no line.
std::int32_t ServiceManager::ReportOutcome(std::string_view function, const char* text,
                                           std::int32_t row, std::int32_t code) const {
    if (const ServiceRecord* const record = FindRow(row); record != nullptr && code == kSuccess) {
        LogInfo(function, text, record->name, " success");
    } else if (record != nullptr) {
        LogError(function, text, record->name, " error ", code);
    }
    return code;
}

bool ServiceManager::isServiceAlive(std::int32_t row) const {
    constexpr std::string_view kFunction = "DistributedFs::ServiceManager::isServiceAlive";
    OpenedService service(kFunction, FindRow(row));
    if (service.OpenAndQuery(SERVICE_QUERY_STATUS) != kSuccess) {
        return false;
    }
    if (service.State() == SERVICE_STOPPED) {
        LogInfo(kFunction, "[PLENXSDK] service has stopped");
        return false;
    }
    return true;
}

}  // namespace DistributedFs
