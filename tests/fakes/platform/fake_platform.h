// The fake platform: the part of Windows that the product calls, in memory, for tests on
// Linux. The product calls the functions by their Windows names; a test prepares and inspects
// the one object here.
//
//     FakePlatform& platform = FakePlatform::Get();
//     platform.Files().AddFolder(L"C:\\App");
//     platform.Scm().AddService(L"PlenxPcSvc");
//     platform.Faults().FailCall("QueryServiceStatusEx", 2, ERROR_ACCESS_DENIED);
//
// Threads: everything here and every fake function may be called from any thread. Life: the
// object outlives all others of the process; Reset takes it back to an empty machine.

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

    /// An empty machine: a drive C: without files, no services, no processes. Handles that
    /// are still open are forgotten; using one afterwards stops the test process.
    void Reset();

    FakeScm& Scm() { return scm_; }
    FakeFiles& Files() { return files_; }
    FakeProcesses& Processes() { return processes_; }
    FakeClock& Clock() { return clock_; }
    FakeShell& Shell() { return shell_; }
    FakeFaults& Faults() { return faults_; }

    /// Every platform call in its order, as "Function(arguments)". Other fakes may take down
    /// their calls in the same list.
    void Record(const std::string& line);
    std::vector<std::string> Calls() const;
    /// Only the calls of the functions.
    std::vector<std::string> CallsOf(std::initializer_list<const char*> functions) const;
    /// All calls but those of the functions.
    std::vector<std::string> CallsWithout(std::initializer_list<const char*> functions) const;
    void ForgetCalls();

    /// What is open now: "manager", "service PlenxPcSvc", "process 1000", "listing C:\x".
    std::vector<std::string> OpenHandles() const;

    void CountPin();
    unsigned PinCount() const;

    /// From now on the process is ending. A thread that stays inside a fake, and so keeps its
    /// lock, keeps nobody from setting or asking this.
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
