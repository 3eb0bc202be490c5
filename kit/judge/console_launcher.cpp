// Runs the program under judgement as an ordinary process, with a command that the user gives.

#include <chrono>

#include "judge/launcher.h"
#include "judge/manager_endpoint.h"
#include "support/start_process.h"
#include "support/wide_text.h"

namespace PlenxJudge {
namespace {

using PlenxSupport::Handle;
using PlenxSupport::Interruption;

constexpr DWORD kEnded = 0xDEAD;
constexpr DWORD kEndOfProcess = 5000;
constexpr std::chrono::milliseconds kUntilFree(3000);

void Tell(const wchar_t* variable, const std::wstring& value) {
    SetEnvironmentVariableW(variable, value.c_str());
}

std::wstring Expanded(const std::string& command) {
    std::wstring expanded(32768, L'\0');
    const DWORD length =
        ExpandEnvironmentStringsW(PlenxSupport::ToWide(command).c_str(), expanded.data(),
                                  static_cast<DWORD>(expanded.size()));
    expanded.resize(length > 0 ? length - 1 : 0);
    return expanded;
}

// All processes that the command starts end with the job.
Handle MakeJob() {
    Handle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job.Get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

Handle OutputFile(const std::wstring& path) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    return Handle(CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              &inherited, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
}

class Console : public Launcher {
public:
    Console(const Way& way, const Interruption& interruption)
        : interruption_(interruption),
          endpoint_(way.Endpoint()),
          folders_(MakeFolders(way)),
          command_(way.target) {
        if (IsServed(endpoint_)) {
            throw Refusal("somebody serves " + endpoint_ + " already");
        }
        Tell(L"PLENX_DATA", folders_.data);
        Tell(L"PLENX_ENDPOINT", PlenxSupport::ToWide(endpoint_));
        Tell(L"PLENX_ROLE", std::to_wstring(way.role));
    }
    ~Console() override { End(); }
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    bool IsUp() override {
        return process_ && WaitForSingleObject(process_.Get(), 0) == WAIT_TIMEOUT &&
               IsServed(endpoint_);
    }

    bool Restart() override {
        End();
        return Start() && WaitUntilServed(endpoint_, process_.Get(), interruption_);
    }

    HANDLE Process() override { return process_.Get(); }

    std::string CleanUp() override {
        if (!End()) {
            return "the process of " + command_;
        }
        return RemoveFolders(folders_, kUntilFree);
    }

private:
    bool Start() {
        const Handle output = OutputFile(folders_.work + L"\\output.txt");
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdOutput = output.Get();
        startup.hStdError = output.Get();
        PROCESS_INFORMATION started{};
        std::wstring line = Expanded(command_);
        if (!PlenxSupport::StartProcess(line, true, CREATE_SUSPENDED, startup, started)) {
            throw Refusal("cannot start " + PlenxSupport::ToUtf8(line) + ", error " +
                          std::to_string(GetLastError()));
        }
        const Handle thread(started.hThread);
        process_ = Handle(started.hProcess);
        job_ = MakeJob();
        AssignProcessToJobObject(job_.Get(), process_.Get());
        ResumeThread(thread.Get());
        return true;
    }

    bool End() {
        if (!process_) {
            return true;
        }
        TerminateJobObject(job_.Get(), kEnded);
        TerminateProcess(process_.Get(), kEnded);
        const bool ended = WaitForSingleObject(process_.Get(), kEndOfProcess) == WAIT_OBJECT_0;
        process_.Reset();
        job_.Reset();
        return ended;
    }

    const Interruption& interruption_;
    const std::string endpoint_;
    const Folders folders_;
    const std::string command_;
    Handle process_;
    Handle job_;
};

}  // namespace

std::unique_ptr<Launcher> MakeConsole(const Way& way, const Interruption& interruption) {
    return std::make_unique<Console>(way, interruption);
}

}  // namespace PlenxJudge
