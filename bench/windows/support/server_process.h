// A server in a process of its own, started from the folder of the running program. It ends when
// its object goes, or by itself after ten minutes.

#ifndef PLENXBENCH_WINDOWS_SUPPORT_SERVER_PROCESS_H
#define PLENXBENCH_WINDOWS_SUPPORT_SERVER_PROCESS_H

#include <windows.h>

#include <string>

#include "support/child_process.h"

namespace PlenxBench {

class ServerProcess {
public:
    /// Returns when it serves. arguments: come before the one that ServeUntilStopped takes.
    /// @throws std::runtime_error when it does not come to that.
    explicit ServerProcess(const std::wstring& program, const std::wstring& arguments = L"");
    ~ServerProcess();
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

private:
    std::wstring name_;
    HANDLE ready_;
    HANDLE stop_;
    PlenxTest::ChildProcess process_;
};

/// The server's side of it: says that it serves, and waits. name: its last argument.
void ServeUntilStopped(const std::string& name);

}  // namespace PlenxBench

#endif  // PLENXBENCH_WINDOWS_SUPPORT_SERVER_PROCESS_H
