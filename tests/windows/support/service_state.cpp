#include "support/service_state.h"

#include "support/child_process.h"
#include "support/system_habits.h"
#include "support/wait.h"

namespace PlenxTest {
namespace {

std::optional<SERVICE_STATUS_PROCESS> StatusOf(const std::wstring& name) {
    const PlenxSupport::ServiceHandle service = OpenedService(name, SERVICE_QUERY_STATUS);
    SERVICE_STATUS_PROCESS status{};
    DWORD needed = 0;
    if (!service ||
        !QueryServiceStatusEx(service.Get(), SC_STATUS_PROCESS_INFO,
                              reinterpret_cast<LPBYTE>(&status), sizeof(status), &needed)) {
        return std::nullopt;
    }
    return status;
}

// The system removes a deleted service once it has seen the process end, and all handles closed.
void WaitUntilRemoved(const std::wstring& name) {
    WaitFor([&] { return !IsRegistered(name); }, 5000);
}

}  // namespace

PlenxSupport::ServiceHandle OpenedService(const std::wstring& service, DWORD access) {
    const PlenxSupport::ServiceHandle manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT));
    return PlenxSupport::ServiceHandle(OpenServiceW(manager.Get(), service.c_str(), access));
}

bool IsRegistered(const std::wstring& service) {
    return StatusOf(service).has_value();
}

std::optional<DWORD> StateOf(const std::wstring& service) {
    const auto status = StatusOf(service);
    return status ? std::optional<DWORD>(status->dwCurrentState) : std::nullopt;
}

DWORD ProcessIdOf(const std::wstring& service) {
    const auto status = StatusOf(service);
    return status ? status->dwProcessId : 0;
}

bool DriverStarts() {
    return IsUsual(Habits::kStartOfTheDriver, "0");
}

void RemoveService(const std::wstring& name) {
    PlenxSupport::ServiceHandle service = OpenedService(name, SERVICE_ALL_ACCESS);
    if (!service) {
        return;
    }
    SERVICE_STATUS reply{};
    ControlService(service.Get(), SERVICE_CONTROL_STOP, &reply);
    for (int i = 0; i != 100 && StateOf(name) != SERVICE_STOPPED; ++i) {
        Sleep(50);
    }
    DeleteService(service.Get());
    service.Reset();
    WaitUntilRemoved(name);
}

void EndService(const std::wstring& name) {
    const auto status = StatusOf(name);
    if (!status) {
        return;
    }
    EndProcess(status->dwProcessId);
    DeleteService(OpenedService(name, DELETE).Get());
    WaitUntilRemoved(name);
}

}  // namespace PlenxTest
