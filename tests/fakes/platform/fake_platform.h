// The fake platform implements in memory the functions of Windows that the product calls, for
// tests on Linux. The product calls the functions by their Windows names; a test prepares and
// inspects the one object here.
//
//     FakePlatform& platform = FakePlatform::Get();
//     platform.Files().AddFolder(L"C:\\App");
//     platform.Scm().AddService(L"PlenxPcSvc");
//     platform.Faults().FailCall("QueryServiceStatusEx", 2, ERROR_ACCESS_DENIED);
//
// Everything here and every fake function may be called from any thread. The object outlives all
// others of the process; Reset makes it an empty machine again.

#ifndef PLENXSDK_FAKES_PLATFORM_FAKE_PLATFORM_H
#define PLENXSDK_FAKES_PLATFORM_FAKE_PLATFORM_H

#include <atomic>
#include <initializer_list>
#include <mutex>
#include <string>
#include <vector>

#include "platform/fake_clock.h"
#include "platform/fake_faults.h"
#include "platform/fake_files.h"
#include "platform/fake_processes.h"
#include "platform/fake_scm.h"
#include "platform/fake_shell.h"

class FakePlatform {
public:
    static FakePlatform& Get();

    FakePlatform(const FakePlatform&) = delete;
    FakePlatform& operator=(const FakePlatform&) = delete;

    /// Makes the machine empty: a drive C: without files, no services, no processes. It forgets
    /// handles that are still open; using one afterwards stops the test process.
    void Reset();

    FakeScm& Scm() { return scm_; }
    FakeFiles& Files() { return files_; }
    FakeProcesses& Processes() { return processes_; }
    FakeClock& Clock() { return clock_; }
    FakeShell& Shell() { return shell_; }
    FakeFaults& Faults() { return faults_; }

    /// Adds a platform call, "Function(arguments)", to the list of all calls in their order. Other
    /// fakes may add their calls to the same list.
    void Record(const std::string& line);
    std::vector<std::string> Calls() const;
    /// Returns the calls of these functions only.
    std::vector<std::string> CallsOf(std::initializer_list<const char*> functions) const;
    /// Returns all calls except those of these functions.
    std::vector<std::string> CallsWithout(std::initializer_list<const char*> functions) const;
    void ForgetCalls();

    /// Returns the handles that are open now: "manager", "service PlenxPcSvc", "process 1000",
    /// "listing C:\x".
    std::vector<std::string> OpenHandles() const;

    void CountPin();
    unsigned PinCount() const;

    /// From now on the process is ending, as if the system had told the module's entry point so.
    /// This takes no lock, so a thread that stays inside a fake blocks neither this nor the
    /// question.
    void EndProcess();
    bool ProcessEnds() const;

    /// For the fakes.
    std::recursive_mutex& Mutex() { return mutex_; }

private:
    FakePlatform();
    ~FakePlatform() = default;

    mutable std::recursive_mutex mutex_;
    FakeFaults faults_{mutex_};
    FakeClock clock_{mutex_};
    FakeShell shell_{mutex_};
    FakeFiles files_{mutex_};
    FakeProcesses processes_{mutex_, clock_};
    FakeScm scm_{mutex_, clock_, processes_};
    std::vector<std::string> calls_;
    unsigned pinCount_ = 0;
    std::atomic<bool> processEnds_{false};
};

#endif  // PLENXSDK_FAKES_PLATFORM_FAKE_PLATFORM_H
