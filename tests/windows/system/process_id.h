// A process that has received the id that another one had.

#ifndef PLENXSDK_TESTS_WINDOWS_SYSTEM_PROCESS_ID_H
#define PLENXSDK_TESTS_WINDOWS_SYSTEM_PROCESS_ID_H

#include <windows.h>

#include <memory>

#include "support/child_process.h"

namespace PlenxTest {

/// The process sleeps from the start and ends with the object.
class ProcessOfId {
public:
    /// The system hands out ids again in the order in which they became free. So this starts and
    /// ends threads until it is the id's turn. It gives up after some seconds.
    explicit ProcessOfId(DWORD id);

    bool HasTheId() const { return process_ != nullptr; }
    bool IsAlive() const { return !process_->WaitForExit(0); }

private:
    std::unique_ptr<ChildProcess> process_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SYSTEM_PROCESS_ID_H
