// The Service Control Manager of the fake machine.
//
// A service follows a script after it was started or told to stop: what it reports, and how
// many milliseconds later. Scripts are set by name, also before the service is registered.
// Without one a service needs 15 ms to start or stop, a driver no time at all.

#ifndef PLENXSDK_FAKES_PLATFORM_FAKE_SCM_H
#define PLENXSDK_FAKES_PLATFORM_FAKE_SCM_H

#include <windows.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/fake_clock.h"
#include "platform/fake_processes.h"
#include "platform/handle_table.h"

constexpr DWORD kItsOwnProcess = 0xFFFFFFFF;

/// What a service reports from a moment on.
struct StatusAt {
    DWORD afterMs;
    DWORD state;
    DWORD checkPoint = 0;
    DWORD waitHint = 0;
    DWORD processId = kItsOwnProcess;
};
using StatusScript = std::vector<StatusAt>;

/// How a service was registered. A null text of CreateServiceW is empty here; the record of
/// calls tells the two apart.
struct FakeServiceConfig {
    std::wstring name;
    std::wstring displayName;
    DWORD type = SERVICE_WIN32_OWN_PROCESS;
    DWORD startType = SERVICE_DEMAND_START;
    DWORD errorControl = SERVICE_ERROR_NORMAL;
    std::wstring binaryPath;
};

struct FakeServiceView {
    FakeServiceConfig config;
    SERVICE_STATUS_PROCESS status;
    bool markedForDelete;
    std::vector<std::wstring> arguments;  // of the last start
    unsigned starts;
    unsigned stopRequests;  // that were accepted
};

class FakeScm {
public:
    FakeScm(std::recursive_mutex& mutex, FakeClock& clock, FakeProcesses& processes)
        : mutex_(mutex), clock_(clock), processes_(processes) {}

    void Reset();

    /// Registers a service, stopped.
    void AddService(const std::wstring& name, DWORD type = SERVICE_WIN32_OWN_PROCESS);
    /// From now on the registered service reports this; states other than stopped have a
    /// process.
    void SetStatus(const std::wstring& name, DWORD state, DWORD checkPoint = 0, DWORD waitHint = 0);
    /// From now on the registered service follows the script.
    void RunScript(const std::wstring& name, StatusScript script);
    /// Starting fails with the error; 0: it succeeds again.
    void RefuseStart(const std::wstring& name, DWORD error);
    /// What happens after a start. Before its first entry and without any, the service is
    /// start pending.
    void ScriptStart(const std::wstring& name, StatusScript script);
    /// A request to stop is refused with the error; 0: it is accepted again.
    void RefuseStop(const std::wstring& name, DWORD error);
    /// What happens after a request to stop. An empty script: the request is ignored.
    void ScriptStop(const std::wstring& name, StatusScript script);
    /// Whether a service whose process ends unexpectedly becomes stopped. True, as on
    /// Windows; Wine's never notices.
    void NoticeDeadProcesses(bool notice);

    std::optional<FakeServiceView> Find(const std::wstring& name) const;
    /// As they were registered, sorted.
    std::vector<std::wstring> Names() const;
    std::vector<std::string> OpenHandles() const;

    /// Lets every service do what is due by now; a query of a service does that for itself.
    void CatchUp();

    // For the fake functions.
    struct Service;
    struct Handle {
        std::shared_ptr<Service> service;  // null: the manager
        DWORD access;
    };
    HandleTable<Handle>& Handles() { return handles_; }
    /// The name of the handle's service, or "manager".
    static std::string NameOf(const Handle& handle);
    DWORD OpenManager(DWORD access, std::uintptr_t& handle);
    DWORD Open(const Handle& manager, const std::wstring& name, DWORD access,
               std::uintptr_t& handle);
    DWORD Create(const Handle& manager, const FakeServiceConfig& config, DWORD access,
                 std::uintptr_t& handle);
    DWORD Start(const Handle& handle, std::vector<std::wstring> arguments);
    DWORD Control(const Handle& handle, DWORD control, SERVICE_STATUS& status);
    DWORD Query(const Handle& handle, SERVICE_STATUS_PROCESS& status);
    DWORD Delete(const Handle& handle);
    void Close(std::uintptr_t handle);

private:
    struct Behaviour {
        std::optional<StatusScript> start;
        std::optional<StatusScript> stop;
        DWORD startError = 0;
        DWORD stopError = 0;
    };

    std::shared_ptr<Service> FindNow(const std::wstring& name);
    Service& Registered(const std::wstring& name);
    const Behaviour& BehaviourOf(const Service& service);
    void Follow(Service& service, StatusScript script);
    void Report(Service& service, const StatusAt& step);
    void EnsureProcess(Service& service);
    void Update(Service& service);
    void DropDeleted();
    bool HasHandle(const Service& service) const;

    std::recursive_mutex& mutex_;
    FakeClock& clock_;
    FakeProcesses& processes_;
    std::map<std::wstring, std::shared_ptr<Service>> services_;  // by folded name
    std::map<std::wstring, Behaviour> behaviours_;               // by folded name
    HandleTable<Handle> handles_;
    bool noticeDeadProcesses_ = true;
};

#endif  // PLENXSDK_FAKES_PLATFORM_FAKE_SCM_H
