// The machine that this program runs on.

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>

#include "doctor/system.h"
#include "support/console_watch.h"
#include "support/file.h"
#include "support/handle.h"
#include "support/interruption.h"
#include "support/job.h"
#include "support/start_process.h"
#include "support/wide_text.h"
#include "verify/system.h"
#include "verify/system_facts.h"
#include "verify/traces.h"
#include "verify/watcher.h"

namespace PlenxVerify {
namespace {

namespace fs = std::filesystem;
using PlenxSupport::Handle;
using std::chrono::steady_clock;

constexpr wchar_t kTurn[] = L"Global\\plenxkit-verify";
constexpr DWORD kEnded = 0xDEAD;
constexpr DWORD kEndOfProcess = 5000;
constexpr DWORD kBetweenLooks = 50;
constexpr std::size_t kMostLogs = 40;
constexpr std::size_t kMostOfALog = 200000;  // bytes that are kept, from its end

Handle Inheritable(const std::wstring& path, DWORD access, DWORD creation) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    return Handle(CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                              creation, FILE_ATTRIBUTE_NORMAL, nullptr));
}

void Tell(const wchar_t* variable, const std::wstring& value) {
    SetEnvironmentVariableW(variable, value.c_str());
}

// Somebody who wants another value sets the variable before the run.
void Suggest(const wchar_t* variable, const wchar_t* value) {
    if (GetEnvironmentVariableW(variable, nullptr, 0) == 0) {
        Tell(variable, value);
    }
}

std::string EndOf(const std::string& text) {
    return text.size() <= kMostOfALog ? text : "...\n" + text.substr(text.size() - kMostOfALog);
}

bool IsLog(const fs::path& path) {
    return path.extension() == ".log" || path.extension() == ".txt";
}

class Machine final : public System {
public:
    explicit Machine(PlenxSupport::Interruption& interruption)
        : interruption_(interruption), programs_(fs::u8path(PlenxHost::ProgramFolder())) {}
    ~Machine() override {
        try {
            if (prepared_) {
                CleanAll();
            }
        } catch (...) {
            // The next run finds what is left.
        }
    }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    bool HasRights() override { return PlenxHost::MakeSystem()->ServiceManagerError() == 0; }

    bool TakeTurn() override {
        turn_ = Handle(CreateMutexW(nullptr, FALSE, kTurn));
        return turn_ && GetLastError() != ERROR_ALREADY_EXISTS;
    }

    std::vector<Trace> Traces() override { return AllTraces(); }
    bool HasProgram(const std::string& name) override {
        return fs::exists(programs_ / fs::u8path(name));
    }
    Facts Describe() override { return FactsOfThisSystem(); }
    std::vector<Secret> Secrets() override { return SecretsOfThisSystem(); }
    std::string Root() override { return RunFolder().u8string(); }

    std::string Prepare() override {
        if (!MakeRunFolder()) {
            return "cannot make the folder " + Root();
        }
        prepared_ = true;
        console_.emplace(interruption_);
        watcher_.emplace(turn_.Get());
        if (!watcher_->IsThere()) {
            return "cannot start the process that removes everything after a crash";
        }
        std::error_code error;
        fs::copy(programs_, RunFolder() / "programs", fs::copy_options::recursive, error);
        if (error) {
            return "cannot copy the programs to " + Root() + ": " + error.message();
        }
        for (const char* const folder : {"results", "temp", "work"}) {
            fs::create_directory(RunFolder() / folder);
        }
        SetUpEnvironment();
        return {};
    }

    Ended Run(const Launch& launch) override {
        const auto begin = steady_clock::now();
        Ended ended = RunInJob(launch);
        ended.seconds = std::chrono::duration<double>(steady_clock::now() - begin).count();
        return ended;
    }

    bool IsInterrupted() override { return interruption_.IsRaised(); }
    std::string PathOf(const std::string& file) override { return ResultFile(file).u8string(); }
    std::string Read(const std::string& file) override {
        return PlenxSupport::ReadWholeFile(ResultFile(file)).value_or("");
    }
    std::string WorkFolder() override { return (RunFolder() / "work").u8string(); }

    std::vector<LogFile> Logs() override {
        std::vector<LogFile> logs;
        const fs::path work = RunFolder() / "work";
        std::error_code error;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(work, error)) {
            if (logs.size() != kMostLogs && entry.is_regular_file(error) && IsLog(entry.path())) {
                std::string name = entry.path().lexically_relative(work).generic_u8string();
                std::replace(name.begin(), name.end(), '/', '-');
                logs.push_back(
                    {name, EndOf(PlenxSupport::ReadWholeFile(entry.path()).value_or(""))});
            }
        }
        return logs;
    }

    std::vector<std::string> Clean() override { return RemoveTracesIn(RunFolder() / "work"); }
    void CleanAll() override {
        RemoveAllTraces();
        prepared_ = false;
    }

private:
    static fs::path ResultFile(const std::string& file) {
        return RunFolder() / "results" / fs::u8path(file);
    }

    // A program that crashes must not open an error window.
    static void SetUpEnvironment() {
        SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
        const std::wstring temp = RunFolder() / "temp";
        Tell(L"TEMP", temp);
        Tell(L"TMP", temp);
        Tell(L"PLENX_TEST_FOLDER", (RunFolder() / "work").wstring());
        Suggest(L"PLENX_TEST_ENDINGS", L"2");
        Suggest(L"PLENX_TEST_HOSTILE", L"200");
    }

    static std::wstring LineOf(const Launch& launch) {
        std::wstring line =
            L"\"" + (RunFolder() / "programs" / fs::u8path(launch.program)).wstring() + L"\"";
        for (const std::string& argument : launch.arguments) {
            line += L" \"" + PlenxSupport::ToWide(argument) + L"\"";
        }
        return line;
    }

    Ended RunInJob(const Launch& launch) const {
        const Handle nothing = Inheritable(L"NUL", GENERIC_READ, OPEN_EXISTING);
        const Handle output = Inheritable(ResultFile(launch.output), GENERIC_WRITE, CREATE_ALWAYS);
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdInput = nothing.Get();
        startup.hStdOutput = output.Get();
        startup.hStdError = output.Get();
        PROCESS_INFORMATION started{};
        std::wstring line = LineOf(launch);
        // The program gets a process group of its own, so that only this process hears of Ctrl-C.
        if (!PlenxSupport::StartProcess(line, true, CREATE_SUSPENDED | CREATE_NEW_PROCESS_GROUP,
                                        startup, started, (RunFolder() / "programs").c_str())) {
            return {Ended::How::kNotStarted, GetLastError()};
        }
        const Handle process(started.hProcess);
        const Handle thread(started.hThread);
        const Handle job = PlenxSupport::MakeJob();
        AssignProcessToJobObject(job.Get(), process.Get());
        ResumeThread(thread.Get());
        return WaitFor(process, job, launch.seconds);
    }

    Ended WaitFor(const Handle& process, const Handle& job, unsigned seconds) const {
        const auto end = steady_clock::now() + std::chrono::seconds(seconds);
        while (WaitForSingleObject(process.Get(), kBetweenLooks) != WAIT_OBJECT_0) {
            if (interruption_.IsRaised() || steady_clock::now() > end) {
                TerminateJobObject(job.Get(), kEnded);
                TerminateProcess(process.Get(), kEnded);
                WaitForSingleObject(process.Get(), kEndOfProcess);
                return {interruption_.IsRaised() ? Ended::How::kInterrupted
                                                 : Ended::How::kTimeWasOver};
            }
        }
        DWORD code = 0;
        GetExitCodeProcess(process.Get(), &code);
        return {Ended::How::kByItself, code};
    }

    PlenxSupport::Interruption& interruption_;
    const fs::path programs_;
    Handle turn_;
    std::optional<PlenxSupport::ConsoleWatch> console_;
    std::optional<Watcher> watcher_;  // destroyed first, when everything has been removed
    bool prepared_ = false;
};

}  // namespace

std::unique_ptr<System> MakeSystem(PlenxSupport::Interruption& interruption) {
    return std::make_unique<Machine>(interruption);
}

}  // namespace PlenxVerify
