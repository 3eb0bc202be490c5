// Hosts that log in one particular way each, and then end with their mode's own exit code.

#ifndef PLENXSDK_TESTS_WINDOWS_COMPANION_LOGGING_HOSTS_H
#define PLENXSDK_TESTS_WINDOWS_COMPANION_LOGGING_HOSTS_H

#include <string>

namespace PlenxTest {

struct LoggingHost {
    const char* name;
    int exitCode;
    void (*run)();
};

/// Returns null when there is no such mode.
const LoggingHost* FindLoggingHost(const std::string& name);

/// In the mode "threads" this many threads write lines "thread <t> line <n>".
constexpr int kThreads = 4;
constexpr int kLinesPerThread = 2000;

/// The mode "twice" sets the first event after its first line, and then waits for the second event.
/// The parent owns both events.
constexpr const wchar_t* kOneIsWritten = L"plenx-test-one-is-written";
constexpr const wchar_t* kGoOn = L"plenx-test-go-on";

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_COMPANION_LOGGING_HOSTS_H
