// Runs one of the hosts of logging_hosts.h to its end.

#ifndef PLENXSDK_TESTS_WINDOWS_COMPANION_RUN_HOST_H
#define PLENXSDK_TESTS_WINDOWS_COMPANION_RUN_HOST_H

#include <string>

#include "support/child_process.h"

namespace PlenxTest {

std::wstring HostCommand(const std::string& mode);

/// Fails the running test fatally when the host hangs or ends with a wrong exit code.
void ExpectHostExits(ChildProcess& host, const std::string& mode);
void RunHost(const std::string& mode);

/// Returns how often a test repeats a step that depends on chance.
int Repetitions();

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_COMPANION_RUN_HOST_H
