// Another host on the same folders, in a process of its own, which ends without any cleanup.

#ifndef PLENXSDK_TESTS_WINDOWS_SYSTEM_OTHER_HOST_H
#define PLENXSDK_TESTS_WINDOWS_SYSTEM_OTHER_HOST_H

#include <string>

#include "support/child_process.h"
#include "support/install_folder.h"

namespace PlenxTest {

class OtherHost {
public:
    /// Starts the PC service and, if wanted, stops it again; then it waits to be killed.
    enum class Does { kStart, kStartAndStop };

    OtherHost(const InstallFolder& folder, Does what);

    void Kill() { process_.Kill(); }

private:
    ChildProcess process_;
};

/// For main: returns true when this process was started as such a host and nobody has killed it.
bool RunAsOtherHost(int argc, char** argv);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SYSTEM_OTHER_HOST_H
