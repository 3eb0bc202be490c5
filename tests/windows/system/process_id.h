// A process that has got the id that another one had.

#ifndef PLENXSDK_TESTS_WINDOWS_SYSTEM_PROCESS_ID_H
#define PLENXSDK_TESTS_WINDOWS_SYSTEM_PROCESS_ID_H

#include <windows.h>

#include <memory>

#include "support/child_process.h"

namespace PlenxTest {

/// Asleep from the start and ended with the object.
class ProcessOfId {
public:
    /// Ids are handed out again in the order in which they became free: threads come and go until
    /// it is the id's turn. Gives up after some seconds.
    explicit ProcessOfId(DWORD id);

    bool HasTheId() const { return process_ != nullptr; }
    bool IsAlive() const { return !process_->WaitForExit(0); }

private:
    std::unique_ptr<ChildProcess> process_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SYSTEM_PROCESS_ID_H
