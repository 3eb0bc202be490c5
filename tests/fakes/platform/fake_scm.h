// The Service Control Manager of the fake machine.
//
// After a service was started or told to stop, it follows a script, which says what it reports
// and how many milliseconds later. A test sets scripts by name, even before the service is
// registered. Without a script, a service needs 15 ms to start or stop and a driver no time.

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

/// The report of a service from a certain moment on.
struct StatusAt {
    DWORD afterMs;
    DWORD state;
    DWORD checkPoint = 0;
    DWORD waitHint = 0;
    DWORD processId = kItsOwnProcess;
};
using StatusScript = std::vector<StatusAt>;

/// The registration of a service. A null text given to CreateServiceW is empty here; only the
/// record of calls shows the difference.
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
    std::vector<std::wstring> arguments;  // those of the last start
    unsigned starts;
    unsigned stopRequests;  // counts accepted requests only
};

class FakeScm {
public:
    FakeScm(std::recursive_mutex& mutex, FakeClock& clock, FakeProcesses& processes)
        : mutex_(mutex), clock_(clock), processes_(processes) {}

    void Reset();

    /// Registers a service, which is stopped.
    void AddService(const std::wstring& name, DWORD type = SERVICE_WIN32_OWN_PROCESS);
    /// From now on the registered service reports this. It has a process in every state but
    /// stopped.
    void SetStatus(const std::wstring& name, DWORD state, DWORD checkPoint = 0, DWORD waitHint = 0);
    /// From now on the registered service follows the script.
    void RunScript(const std::wstring& name, StatusScript script);
    /// Starting fails with the error; with 0 it succeeds again.
    void RefuseStart(const std::wstring& name, DWORD error);
    /// Sets the script for a start. The service is start pending before the first entry, and for
    /// ever when there is none.
    void ScriptStart(const std::wstring& name, StatusScript script);
    /// The service refuses a request to stop with the error; with 0 it accepts requests again.
    void RefuseStop(const std::wstring& name, DWORD error);
    /// Sets the script for a request to stop. With an empty script the service ignores the request.
    void ScriptStop(const std::wstring& name, StatusScript script);
    /// Sets whether a service becomes stopped when its process ends unexpectedly. The default is
    /// true, as on Windows; Wine never notices.
    void NoticeDeadProcesses(bool notice);

    std::optional<FakeServiceView> Find(const std::wstring& name) const;
    /// Returns the registered names, sorted.
    std::vector<std::wstring> Names() const;
    std::vector<std::string> OpenHandles() const;

    /// Lets every service take the steps of its script that are due by now. A query does that for
    /// its own service.
    void CatchUp();

    // For the fake functions.
    struct Service;
    struct Handle {
        std::shared_ptr<Service> service;  // null for the manager
        DWORD access;
    };
    HandleTable<Handle>& Handles() { return handles_; }
    /// Returns the name of the handle's service, or "manager".
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
