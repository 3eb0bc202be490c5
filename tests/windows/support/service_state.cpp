#include "support/service_state.h"

namespace PlenxTest {
namespace {

class Handle {
public:
    explicit Handle(SC_HANDLE handle) : handle_(handle) {}
    ~Handle() {
        if (handle_ != nullptr) {
            CloseServiceHandle(handle_);
        }
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    SC_HANDLE Get() const { return handle_; }

private:
    SC_HANDLE handle_;
};

std::optional<SERVICE_STATUS_PROCESS> StatusOf(const std::wstring& name) {
    const Handle manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT));
    const Handle service(OpenServiceW(manager.Get(), name.c_str(), SERVICE_QUERY_STATUS));
    SERVICE_STATUS_PROCESS status{};
    DWORD needed = 0;
    if (service.Get() == nullptr ||
        !QueryServiceStatusEx(service.Get(), SC_STATUS_PROCESS_INFO,
                              reinterpret_cast<LPBYTE>(&status), sizeof(status), &needed)) {
        return std::nullopt;
    }
    return status;
}

}  // namespace

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

void RemoveService(const std::wstring& name) {
    const Handle manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    const Handle service(OpenServiceW(manager.Get(), name.c_str(), SERVICE_ALL_ACCESS));
    if (service.Get() == nullptr) {
        return;
    }
    SERVICE_STATUS reply{};
    ControlService(service.Get(), SERVICE_CONTROL_STOP, &reply);
    for (int i = 0; i != 100 && StateOf(name) != SERVICE_STOPPED; ++i) {
        Sleep(50);
    }
    DeleteService(service.Get());
}

void EndService(const std::wstring& name) {
    const auto status = StatusOf(name);
    if (!status) {
        return;
    }
    if (const HANDLE process =
            OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, status->dwProcessId)) {
        TerminateProcess(process, 0);
        WaitForSingleObject(process, 5000);
        CloseHandle(process);
    }
    const Handle manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    const Handle service(OpenServiceW(manager.Get(), name.c_str(), SERVICE_ALL_ACCESS));
    DeleteService(service.Get());
}

}  // namespace PlenxTest
