// The owner of a Windows handle.

#ifndef PLENXSCENARIO_UNIQUE_HANDLE_H
#define PLENXSCENARIO_UNIQUE_HANDLE_H

#include <windows.h>

#include <memory>

namespace PlenxScenario {

struct HandleCloser {
    void operator()(HANDLE handle) const {
        if (handle != INVALID_HANDLE_VALUE) {
            CloseHandle(handle);
        }
    }
};
using UniqueHandle = std::unique_ptr<void, HandleCloser>;

struct ServiceHandleCloser {
    void operator()(SC_HANDLE handle) const { CloseServiceHandle(handle); }
};
using UniqueServiceHandle = std::unique_ptr<SC_HANDLE__, ServiceHandleCloser>;

}  // namespace PlenxScenario

#endif  // PLENXSCENARIO_UNIQUE_HANDLE_H
