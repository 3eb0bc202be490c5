// Reports the state of this service to the Service Control Manager. Any thread may report. After
// "stopped" no further report gets out. On the console there is no manager, and the reports go
// nowhere.

#ifndef PLENXSERVICE_SERVICE_STATUS_H
#define PLENXSERVICE_SERVICE_STATUS_H

#include <windows.h>

#include <mutex>

namespace PlenxService {

class ServiceStatus {
public:
    explicit ServiceStatus(SERVICE_STATUS_HANDLE handle = nullptr) : handle_(handle) {}

    /// The state is SERVICE_START_PENDING or SERVICE_STOP_PENDING. Every report raises the
    /// checkpoint.
    void Pending(DWORD state, DWORD waitHint);
    void Running(bool acceptsStop);
    /// exitCode is 0 or a Windows error; ownCode is the service's own code, used instead.
    void Stopped(DWORD exitCode = NO_ERROR, DWORD ownCode = 0);

private:
    void Report(SERVICE_STATUS status);

    std::mutex mutex_;
    const SERVICE_STATUS_HANDLE handle_;
    DWORD checkPoint_ = 0;
    bool stopped_ = false;
};

}  // namespace PlenxService

#endif  // PLENXSERVICE_SERVICE_STATUS_H
