#include "service_status.h"

namespace PlenxService {
namespace {

SERVICE_STATUS StatusOf(DWORD state) {
    SERVICE_STATUS status = {};
    status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    status.dwCurrentState = state;
    return status;
}

}  // namespace

void ServiceStatus::Pending(DWORD state, DWORD waitHint) {
    SERVICE_STATUS status = StatusOf(state);
    status.dwWaitHint = waitHint;
    Report(status);
}

void ServiceStatus::Running(bool acceptsStop) {
    SERVICE_STATUS status = StatusOf(SERVICE_RUNNING);
    status.dwControlsAccepted = acceptsStop ? SERVICE_ACCEPT_STOP | SERVICE_ACCEPT_SHUTDOWN : 0;
    Report(status);
}

void ServiceStatus::Stopped(DWORD exitCode, DWORD ownCode) {
    SERVICE_STATUS status = StatusOf(SERVICE_STOPPED);
    status.dwWin32ExitCode = ownCode != 0 ? ERROR_SERVICE_SPECIFIC_ERROR : exitCode;
    status.dwServiceSpecificExitCode = ownCode;
    Report(status);
}

void ServiceStatus::Report(SERVICE_STATUS status) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!handle_ || stopped_) {
        return;
    }
    const bool pending = status.dwCurrentState == SERVICE_START_PENDING ||
                         status.dwCurrentState == SERVICE_STOP_PENDING;
    checkPoint_ = pending ? checkPoint_ + 1 : 0;
    status.dwCheckPoint = checkPoint_;
    stopped_ = status.dwCurrentState == SERVICE_STOPPED;
    SetServiceStatus(handle_, &status);
}

}  // namespace PlenxService
