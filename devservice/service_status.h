// What the Service Control Manager is told about this service. Any thread. Once stopped, no
// later report gets out. Without a manager (console) the reports go nowhere.

#ifndef PLENXSERVICE_SERVICE_STATUS_H
#define PLENXSERVICE_SERVICE_STATUS_H

#include <windows.h>

#include <mutex>

namespace PlenxService {

class ServiceStatus {
public:
    explicit ServiceStatus(SERVICE_STATUS_HANDLE handle = nullptr) : handle_(handle) {}

    /// SERVICE_START_PENDING or SERVICE_STOP_PENDING; every report is a step forward.
    void Pending(DWORD state, DWORD waitHint);
    void Running(bool acceptsStop);
    /// exitCode: 0, or a Windows error; ownCode: of this service, instead of one.
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
