// Hosts that end in one particular way each. A host returns its mode's own exit code, so that a
// parent sees whether it got there.

#ifndef PLENXSDK_TESTS_WINDOWS_ENDINGS_ENDING_HOSTS_H
#define PLENXSDK_TESTS_WINDOWS_ENDINGS_ENDING_HOSTS_H

#include <string>

namespace PlenxTest {

struct HostMode {
    const char* name;
    int exitCode;
    int (*run)(const std::string& install, const std::string& data);
};

/// Null when there is no such mode.
const HostMode* FindHostMode(const std::string& name);
/// Of those with a DLL that calls the library late.
const HostMode* FindLateCallHost(const std::string& name);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_ENDINGS_ENDING_HOSTS_H
