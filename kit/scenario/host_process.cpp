#include "host_process.h"

#include <windows.h>

#include "ready_scenarios.h"
#include "text/text.h"
#include "unique_handle.h"

namespace PlenxScenario {
namespace {

constexpr DWORD kEnded = 0xDEAD;
constexpr DWORD kEndOfHost = 5000;

std::wstring Expanded(const std::wstring& command) {
    std::wstring expanded(32768, L'\0');
    const DWORD length = ExpandEnvironmentStringsW(command.c_str(), expanded.data(),
                                                   static_cast<DWORD>(expanded.size()));
    expanded.resize(length > 0 ? length - 1 : 0);
    return expanded;
}

UniqueHandle Inheritable(const std::wstring& path, DWORD access, DWORD creation) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    return UniqueHandle(CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    &inherited, creation, FILE_ATTRIBUTE_NORMAL, nullptr));
}

// All processes of a host end with the job.
UniqueHandle MakeJob() {
    UniqueHandle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

}  // namespace

std::optional<unsigned long> RunHost(const std::wstring& command,
                                     const std::filesystem::path& output, double seconds) {
    const UniqueHandle nothing = Inheritable(L"NUL", GENERIC_READ, OPEN_EXISTING);
    const UniqueHandle file = Inheritable(output.wstring(), GENERIC_WRITE, CREATE_ALWAYS);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = nothing.get();
    startup.hStdOutput = file.get();
    startup.hStdError = file.get();
    PROCESS_INFORMATION started = {};
    std::wstring line = Expanded(command);
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr,
                        nullptr, &startup, &started)) {
        throw UsageError("cannot start " + PlenxText::ToUtf8(line) + ", error " +
                         std::to_string(GetLastError()));
    }
    const UniqueHandle process(started.hProcess);
    const UniqueHandle thread(started.hThread);
    const UniqueHandle job = MakeJob();
    AssignProcessToJobObject(job.get(), process.get());
    ResumeThread(thread.get());
    if (WaitForSingleObject(process.get(), static_cast<DWORD>(seconds * 1000)) != WAIT_OBJECT_0) {
        TerminateJobObject(job.get(), kEnded);
        TerminateProcess(process.get(), kEnded);
        WaitForSingleObject(process.get(), kEndOfHost);
        return std::nullopt;
    }
    DWORD code = 0;
    GetExitCodeProcess(process.get(), &code);
    return code;
}

}  // namespace PlenxScenario
