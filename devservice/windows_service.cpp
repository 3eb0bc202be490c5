#include "windows_service.h"

#include <windows.h>

#include <atomic>
#include <string>
#include <vector>

#include "dev_service.h"
#include "support/handle.h"

namespace PlenxService {
namespace {

constexpr DWORD kFirstHint = 3000;

constexpr DWORD kLongestLinger = 60 * 1000;

std::atomic<DevService*> running{nullptr};
// This is set when the service's thread has finished.
const PlenxSupport::Handle kLeft = PlenxSupport::MakeEvent();

DWORD WINAPI OnControl(DWORD control, DWORD, void*, void*) {
    switch (control) {
    case SERVICE_CONTROL_STOP:
    case SERVICE_CONTROL_SHUTDOWN:
        if (DevService* const service = running) {
            service->RequestStop();
        }
        return NO_ERROR;
    case SERVICE_CONTROL_INTERROGATE:
        return NO_ERROR;
    default:
        return ERROR_CALL_NOT_IMPLEMENTED;
    }
}

// The first argument is the service's name, which an own-process service need not know.
void WINAPI ServiceMain(DWORD count, wchar_t** arguments) {
    const SERVICE_STATUS_HANDLE handle = RegisterServiceCtrlHandlerExW(L"", OnControl, nullptr);
    if (!handle) {
        SetEvent(kLeft.Get());
        return;
    }
    // This lives until the process ends, because controls and late requests may still come in.
    auto& status = *new ServiceStatus(handle);
    status.Pending(SERVICE_START_PENDING, kFirstHint);

    const std::vector<std::wstring> own(arguments + (count > 0 ? 1 : 0), arguments + count);
    const auto identity = IdentityFromStartArguments(own);
    if (!identity) {
        status.Stopped(ERROR_INVALID_PARAMETER);
        SetEvent(kLeft.Get());
        return;
    }
    auto& service = *new DevService(*identity, status, false);
    running = &service;
    service.Run();
    SetEvent(kLeft.Get());
}

}  // namespace

unsigned long RunAsService() {
    wchar_t name[] = L"";
    const SERVICE_TABLE_ENTRYW table[] = {{name, ServiceMain}, {nullptr, nullptr}};
    if (!StartServiceCtrlDispatcherW(table)) {
        return GetLastError();
    }
    // The dispatcher returns as soon as the service has reported that it stopped.
    WaitForSingleObject(kLeft.Get(), kLongestLinger);
    return NO_ERROR;
}

}  // namespace PlenxService
