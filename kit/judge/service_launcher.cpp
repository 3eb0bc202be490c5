// Runs the program under judgement as a Windows service, as the library does it.

#include <algorithm>
#include <chrono>
#include <filesystem>

#include "judge/launcher.h"
#include "judge/manager_endpoint.h"
#include "support/wide_text.h"

namespace PlenxJudge {
namespace {

namespace fs = std::filesystem;
using PlenxSupport::Handle;
using PlenxSupport::Interruption;
using PlenxSupport::ServiceHandle;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr const wchar_t* kNames[] = {L"PlenxOfficeSvc", L"PlenxPcSvc", L"PlenxPhoneSvc"};
constexpr const char* kEndpoints[] = {"PLENXOfficeService", "PLENXPCService", "PLENXPhoneService"};
constexpr int kMostStarts = 3;
constexpr DWORD kStopPatience = 2000;  // the library's, while there is no larger checkpoint
constexpr DWORD kBetweenLooks = 5;
constexpr DWORD kEndOfProcess = 5000;
constexpr milliseconds kUntilFree(3000);
constexpr DWORD kUntilStopped = 1500;
// Windows gives a process about 5 s when its console is closed.
constexpr milliseconds kStopWhenInterrupted(2000);

ServiceState StateOf(DWORD state) {
    switch (state) {
    case SERVICE_STOPPED:
        return ServiceState::kStopped;
    case SERVICE_START_PENDING:
        return ServiceState::kStartPending;
    case SERVICE_STOP_PENDING:
        return ServiceState::kStopPending;
    case SERVICE_RUNNING:
        return ServiceState::kRunning;
    default:
        return ServiceState::kOther;
    }
}

StatusReport ReportOf(const SERVICE_STATUS_PROCESS& status, steady_clock::time_point begin) {
    StatusReport report;
    report.state = StateOf(status.dwCurrentState);
    report.checkPoint = status.dwCheckPoint;
    report.waitHint = status.dwWaitHint;
    report.exitCode = status.dwWin32ExitCode == ERROR_SERVICE_SPECIFIC_ERROR
                          ? status.dwServiceSpecificExitCode
                          : status.dwWin32ExitCode;
    report.acceptsStop = (status.dwControlsAccepted & SERVICE_ACCEPT_STOP) != 0;
    report.since = std::chrono::duration_cast<milliseconds>(steady_clock::now() - begin);
    return report;
}

bool SaySame(const StatusReport& one, const StatusReport& other) {
    return one.state == other.state && one.checkPoint == other.checkPoint &&
           one.waitHint == other.waitHint;
}

// The library registers the path as it is, without quotes.
void CheckPath(const fs::path& program) {
    const std::u16string path = program.u16string();
    const bool plain = std::all_of(path.begin(), path.end(),
                                   [](char16_t letter) { return letter > u' ' && letter < 0x7f; });
    if (!plain) {
        throw Refusal("the path of the program must be ASCII and free of blanks: " +
                      program.u8string());
    }
    if (!fs::is_regular_file(program)) {
        throw Refusal("there is no program " + program.u8string());
    }
}

class ServiceLauncher final : public Launcher, public Service {
public:
    ServiceLauncher(const Way& way, const Interruption& interruption)
        : interruption_(interruption),
          role_(way.role),
          program_(fs::absolute(fs::u8path(way.target))),
          folders_((CheckPath(program_), MakeFolders(way))),
          manager_(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS)) {
        if (!manager_) {
            throw Refusal("the Service Control Manager cannot be opened, error " +
                          std::to_string(GetLastError()) + "; run it elevated");
        }
        for (const char* const endpoint : kEndpoints) {
            if (IsServed(endpoint)) {
                throw Refusal(std::string("somebody serves ") + endpoint + " already");
            }
        }
        Register();
    }
    ~ServiceLauncher() override {
        try {
            CleanUp();
        } catch (...) {
            // What is left here is found by the next run.
        }
    }
    ServiceLauncher(const ServiceLauncher&) = delete;
    ServiceLauncher& operator=(const ServiceLauncher&) = delete;

    // Launcher

    bool IsUp() override {
        return process_ && WaitForSingleObject(process_.Get(), 0) == WAIT_TIMEOUT &&
               Status().dwCurrentState == SERVICE_RUNNING;
    }
    bool Restart() override {
        End();
        const Watched watched = Start({true, role_});
        return watched.error == 0 && watched.Last().state == ServiceState::kRunning;
    }
    Service* AsService() override { return this; }
    HANDLE Process() override { return process_.Get(); }

    std::string CleanUp() override {
        if (!service_) {
            return {};
        }
        StopWithin(kStopWhenInterrupted);
        if (!EndTheProcess()) {
            return "the process of " + program_.u8string();
        }
        DeleteService(service_.Get());
        service_.Reset();
        if (!ServiceIsGone()) {
            return "the service " + Name() +
                   "; it goes when nobody has it open any more, such as the console \"Services\"";
        }
        return RemoveFolders(folders_, kUntilFree);
    }

    // Service

    Watched Start(const StartArguments& arguments) override {
        EndTheProcess();
        Watched watched;
        if (interruption_.IsRaised()) {
            watched.error = ERROR_CANCELLED;
            return watched;
        }
        steady_clock::time_point begin;
        int starts = 0;
        // Under Wine, one new process in some thousands disappears before it has begun.
        do {
            begin = steady_clock::now();
            watched.error = AskForStart(arguments);
        } while (watched.error == ERROR_INTERNAL_ERROR && ++starts < kMostStarts);
        if (watched.error != 0) {
            return watched;
        }
        const SERVICE_STATUS_PROCESS first = Status();
        KeepTheProcess(first.dwProcessId);
        // A hint of 0 has a check of its own. With such a hint, it is a matter of speed whether the
        // library gives up, so no other check depends on it.
        watched.patience = first.dwWaitHint != 0 ? first.dwWaitHint : kStopPatience;
        Watch(watched, begin, milliseconds(0),
              [](ServiceState state) { return state != ServiceState::kStartPending; });
        return watched;
    }

    Watched Stop() override { return StopWithin(milliseconds(0)); }

    void End() override {
        EndTheProcess();
        if (StatusBecomesStopped()) {
            return;
        }
        // Wine's manager does not notice that a process is gone.
        DeleteService(service_.Get());
        service_.Reset();
        Register();
    }

    std::optional<milliseconds> UntilProcessEnds(milliseconds longest) override {
        const auto begin = steady_clock::now();
        if (process_ && WaitForSingleObject(process_.Get(), static_cast<DWORD>(longest.count())) !=
                            WAIT_OBJECT_0) {
            return std::nullopt;
        }
        return std::chrono::duration_cast<milliseconds>(steady_clock::now() - begin);
    }

    bool Serves(int role) const override { return IsServed(kEndpoints[role]); }
    bool HasDataFolder() const override { return fs::is_directory(folders_.data); }
    std::string RemoveDataFolder(milliseconds longest) override {
        return RemoveFolder(folders_.data, longest);
    }

private:
    void Register() {
        service_ = ServiceHandle(
            CreateServiceW(manager_.Get(), kNames[role_], kNames[role_], SERVICE_ALL_ACCESS,
                           SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL,
                           program_.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr));
        if (!service_) {
            const DWORD error = GetLastError();
            throw Refusal(error == ERROR_SERVICE_EXISTS
                              ? Name() + " is registered already; \"sc delete " + Name() +
                                    "\" removes it if no host needs it"
                              : Name() + " cannot be registered, error " + std::to_string(error));
        }
    }

    // A service that is deleted goes when the last of its handles is closed.
    bool ServiceIsGone() const {
        const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(kUntilFree.count());
        while (ServiceHandle(OpenServiceW(manager_.Get(), kNames[role_], SERVICE_QUERY_STATUS))) {
            if (GetTickCount64() > end) {
                return false;
            }
            Sleep(kBetweenLooks);
        }
        return true;
    }

    // Asks the service manager to start the service.
    // @return the error, or 0.
    DWORD AskForStart(const StartArguments& arguments) const {
        const std::wstring role = std::to_wstring(arguments.role);
        const std::wstring install = program_.parent_path().wstring();
        const wchar_t* own[] = {install.c_str(), folders_.data.c_str(), role.c_str()};
        return StartServiceW(service_.Get(), arguments.given ? 3 : 0,
                             arguments.given ? own : nullptr)
                   ? 0
                   : GetLastError();
    }

    std::string Name() const { return PlenxSupport::ToUtf8(kNames[role_]); }

    SERVICE_STATUS_PROCESS Status() const {
        SERVICE_STATUS_PROCESS status{};
        DWORD needed = 0;
        QueryServiceStatusEx(service_.Get(), SC_STATUS_PROCESS_INFO,
                             reinterpret_cast<LPBYTE>(&status), sizeof status, &needed);
        return status;
    }

    Watched StopWithin(milliseconds whenInterrupted) {
        const auto begin = steady_clock::now();
        Watched watched;
        watched.patience = kStopPatience;
        SERVICE_STATUS reply{};
        if (!ControlService(service_.Get(), SERVICE_CONTROL_STOP, &reply)) {
            watched.error = GetLastError();
            return watched;
        }
        Watch(watched, begin, whenInterrupted,
              [](ServiceState state) { return state == ServiceState::kStopped; });
        return watched;
    }

    // Looks until the state is right, or until the library would give up. After an interruption,
    // the program has only the time `whenInterrupted`, counted from `begin`.
    template <class Right>
    void Watch(Watched& watched, steady_clock::time_point begin, milliseconds whenInterrupted,
               Right isRight) {
        auto progress = begin;
        std::uint32_t checkPoint = 0;
        while (true) {
            const SERVICE_STATUS_PROCESS status = Status();
            KeepTheProcess(status.dwProcessId);
            const StatusReport report = ReportOf(status, begin);
            if (watched.reports.empty() || !SaySame(watched.Last(), report)) {
                watched.reports.push_back(report);
            }
            const auto now = steady_clock::now();
            watched.took = std::chrono::duration_cast<milliseconds>(now - begin);
            if (isRight(report.state)) {
                return;
            }
            if (report.checkPoint > checkPoint) {
                checkPoint = report.checkPoint;
                progress = now;
            }
            if (now - progress > milliseconds(watched.patience) ||
                (interruption_.IsRaised() && now - begin >= whenInterrupted)) {
                watched.gaveUp = true;
                return;
            }
            Sleep(kBetweenLooks);
        }
    }

    void KeepTheProcess(DWORD id) {
        if (id != 0 && id != processId_) {
            process_ = Handle(OpenProcess(PROCESS_TERMINATE | PROCESS_QUERY_LIMITED_INFORMATION |
                                              PROCESS_QUERY_INFORMATION | SYNCHRONIZE,
                                          FALSE, id));
            processId_ = id;
        }
    }

    // @return whether no process is left.
    bool EndTheProcess() {
        bool ended = true;
        KeepTheProcess(Status().dwProcessId);
        if (process_) {
            TerminateProcess(process_.Get(), 0);
            ended = WaitForSingleObject(process_.Get(), kEndOfProcess) == WAIT_OBJECT_0;
            process_.Reset();
        }
        processId_ = 0;
        return ended;
    }

    bool StatusBecomesStopped() const {
        const ULONGLONG end = GetTickCount64() + kUntilStopped;
        while (Status().dwCurrentState != SERVICE_STOPPED) {
            if (GetTickCount64() > end) {
                return false;
            }
            Sleep(kBetweenLooks);
        }
        return true;
    }

    const Interruption& interruption_;
    const int role_;
    const fs::path program_;
    const Folders folders_;
    const ServiceHandle manager_;
    ServiceHandle service_;
    Handle process_;
    DWORD processId_ = 0;
};

}  // namespace

std::unique_ptr<Launcher> MakeService(const Way& way, const Interruption& interruption) {
    return std::make_unique<ServiceLauncher>(way, interruption);
}

}  // namespace PlenxJudge
