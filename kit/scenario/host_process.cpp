#include "scenario/host_process.h"

#include <windows.h>

#include "scenario/ready_scenarios.h"
#include "support/handle.h"
#include "support/job.h"
#include "support/start_process.h"
#include "support/wide_text.h"

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

PlenxSupport::Handle Inheritable(const std::wstring& path, DWORD access, DWORD creation) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    return PlenxSupport::Handle(CreateFileW(path.c_str(), access,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                            creation, FILE_ATTRIBUTE_NORMAL, nullptr));
}

}  // namespace

std::optional<unsigned long> RunHost(const std::wstring& command,
                                     const std::filesystem::path& output, double seconds) {
    const PlenxSupport::Handle nothing = Inheritable(L"NUL", GENERIC_READ, OPEN_EXISTING);
    const PlenxSupport::Handle file = Inheritable(output.wstring(), GENERIC_WRITE, CREATE_ALWAYS);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = nothing.Get();
    startup.hStdOutput = file.Get();
    startup.hStdError = file.Get();
    PROCESS_INFORMATION started = {};
    std::wstring line = Expanded(command);
    if (!PlenxSupport::StartProcess(line, true, CREATE_SUSPENDED, startup, started)) {
        throw UsageError("cannot start " + PlenxSupport::ToUtf8(line) + ", error " +
                         std::to_string(GetLastError()));
    }
    const PlenxSupport::Handle process(started.hProcess);
    const PlenxSupport::Handle thread(started.hThread);
    const PlenxSupport::Handle job = PlenxSupport::MakeJob();
    AssignProcessToJobObject(job.Get(), process.Get());
    ResumeThread(thread.Get());
    if (WaitForSingleObject(process.Get(), static_cast<DWORD>(seconds * 1000)) != WAIT_OBJECT_0) {
        TerminateJobObject(job.Get(), kEnded);
        TerminateProcess(process.Get(), kEnded);
        WaitForSingleObject(process.Get(), kEndOfHost);
        return std::nullopt;
    }
    DWORD code = 0;
    GetExitCodeProcess(process.Get(), &code);
    return code;
}

}  // namespace PlenxScenario
