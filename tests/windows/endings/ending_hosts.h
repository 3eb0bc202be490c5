// Each host ends in one particular way. It returns its mode's own exit code, so that the parent
// sees whether it got there.

#ifndef PLENXSDK_TESTS_WINDOWS_ENDINGS_ENDING_HOSTS_H
#define PLENXSDK_TESTS_WINDOWS_ENDINGS_ENDING_HOSTS_H

#include <string>

namespace PlenxTest {

struct HostMode {
    const char* name;
    int exitCode;
    int (*run)(const std::string& install, const std::string& data);
};

/// Returns null when there is no such mode.
const HostMode* FindHostMode(const std::string& name);
/// Finds a mode with a DLL that calls the library late.
const HostMode* FindLateCallHost(const std::string& name);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_ENDINGS_ENDING_HOSTS_H
