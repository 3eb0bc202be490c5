// Runs a server in a process of its own, started from the folder of the running program. The server
// ends with the object, or by itself after ten minutes.

#ifndef PLENXBENCH_WINDOWS_SUPPORT_SERVER_PROCESS_H
#define PLENXBENCH_WINDOWS_SUPPORT_SERVER_PROCESS_H

#include <windows.h>

#include <string>

#include "support/child_process.h"

namespace PlenxBench {

class ServerProcess {
public:
    /// Returns when the server is ready. arguments: these come before the one that ServerLife
    /// takes.
    /// @throws std::runtime_error when the server does not get ready.
    explicit ServerProcess(const std::wstring& program, const std::wstring& arguments = L"");
    ~ServerProcess();
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    /// This word is in its command line and in no other one.
    const std::wstring& Name() const { return name_; }
    DWORD Id() const { return process_.Id(); }

private:
    std::wstring name_;
    HANDLE ready_;
    HANDLE stop_;
    PlenxTest::ChildProcess process_;
};

/// The server uses this side.
class ServerLife {
public:
    /// name: the server's last argument.
    explicit ServerLife(const std::string& name);

    /// Says that the server is ready, and returns when it must end.
    void ServeUntilStopped() const;

private:
    HANDLE ready_;
    HANDLE stop_;
};

}  // namespace PlenxBench

#endif  // PLENXBENCH_WINDOWS_SUPPORT_SERVER_PROCESS_H
