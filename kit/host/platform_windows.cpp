#include "host/platform.h"

#include <windows.h>

#include "support/handle.h"
#include "support/wide_text.h"

namespace PlenxHost {

using PlenxSupport::Handle;
using PlenxSupport::ServiceHandle;

std::uint32_t CurrentThreadNumber() {
    return GetCurrentThreadId();
}

std::uint32_t EndServiceProcess(const std::string& service) {
    const ServiceHandle manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT));
    const ServiceHandle opened(
        OpenServiceW(manager.Get(), PlenxSupport::ToWide(service).c_str(), SERVICE_QUERY_STATUS));
    SERVICE_STATUS_PROCESS status{};
    DWORD needed = 0;
    if (!QueryServiceStatusEx(opened.Get(), SC_STATUS_PROCESS_INFO,
                              reinterpret_cast<BYTE*>(&status), sizeof status, &needed)) {
        return GetLastError();
    }
    if (status.dwProcessId == 0) {
        return ERROR_SERVICE_NOT_ACTIVE;
    }
    const Handle process(OpenProcess(PROCESS_TERMINATE, FALSE, status.dwProcessId));
    return TerminateProcess(process.Get(), 1) ? ERROR_SUCCESS : GetLastError();
}

void EndProcess(int exitCode) {
    ExitProcess(static_cast<UINT>(exitCode));
}

}  // namespace PlenxHost
