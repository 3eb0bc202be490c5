// A child process: this test program itself, started again with other arguments, or another
// program. Every wait has a deadline. The destructor ends a child that is still running.

#ifndef PLENXSDK_TESTS_WINDOWS_SUPPORT_CHILD_PROCESS_H
#define PLENXSDK_TESTS_WINDOWS_SUPPORT_CHILD_PROCESS_H

#include <windows.h>

#include <optional>
#include <string>

#include "support/handle.h"

namespace PlenxTest {

/// Returns the full path of the running program, and its folder without a trailing backslash.
std::wstring ProgramPath();
std::wstring ProgramFolder();

/// Ends any process and waits for its end, for up to 5 s. It may have ended already.
void EndProcess(DWORD id);

class ChildProcess {
public:
    /// commandLine: begins with the program's path, quoted where needed. flags: those of
    /// CreateProcessW.
    explicit ChildProcess(std::wstring commandLine, DWORD flags = 0);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Starts this program with the arguments.
    static std::wstring Self(const std::wstring& arguments);

    bool Started() const { return static_cast<bool>(process_); }
    /// Returns the system's error when the child did not start.
    DWORD StartError() const { return startError_; }
    DWORD Id() const { return id_; }
    /// Returns the exit code, or nothing when the child has not ended in time.
    std::optional<DWORD> WaitForExit(DWORD milliseconds);
    void Kill();

private:
    PlenxSupport::Handle process_;
    DWORD id_ = 0;
    DWORD startError_ = 0;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SUPPORT_CHILD_PROCESS_H
