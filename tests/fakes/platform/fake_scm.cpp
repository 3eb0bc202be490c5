#include "platform/fake_scm.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "platform/call_text.h"

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

constexpr DWORD kDriverTypes = SERVICE_KERNEL_DRIVER | SERVICE_FILE_SYSTEM_DRIVER;
constexpr DWORD kNeverStarted = 1077;
constexpr DWORD kFirstWaitHint = 2000;  // the manager states this until the service reports

// It is never destroyed, because the engine still stops its services when the process ends.
const StatusScript& kDefaultStart =
    *new StatusScript{{0, SERVICE_START_PENDING, 0, kFirstWaitHint}, {15, SERVICE_RUNNING}};
const StatusScript& kDefaultStop =
    *new StatusScript{{0, SERVICE_STOP_PENDING, 0, kFirstWaitHint}, {15, SERVICE_STOPPED}};
const StatusScript& kDriverStart = *new StatusScript{{0, SERVICE_RUNNING}};
const StatusScript& kDriverStop = *new StatusScript{{0, SERVICE_STOPPED}};

}  // namespace

struct FakeScm::Service {
    FakeServiceConfig config;
    SERVICE_STATUS_PROCESS status = {};
    FakeProcesses::ProcessPointer process;
    StatusScript script;
    std::size_t scriptPosition = 0;
    std::uint64_t scriptStart = 0;
    bool markedForDelete = false;
    std::vector<std::wstring> arguments;
    unsigned starts = 0;
    unsigned stopRequests = 0;

    bool IsDriver() const { return (config.type & kDriverTypes) != 0; }
    bool IsStopped() const { return status.dwCurrentState == SERVICE_STOPPED; }
};

void FakeScm::Reset() {
    const Lock lock(mutex_);
    services_.clear();
    behaviours_.clear();
    handles_.CloseAll();
    noticeDeadProcesses_ = true;
}

void FakeScm::AddService(const std::wstring& name, DWORD type) {
    const Lock lock(mutex_);
    auto service = std::make_shared<Service>();
    service->config.name = name;
    service->config.displayName = name;
    service->config.type = type;
    service->status.dwServiceType = type;
    service->status.dwCurrentState = SERVICE_STOPPED;
    service->status.dwWin32ExitCode = kNeverStarted;
    services_[Folded(name)] = std::move(service);
}

void FakeScm::SetStatus(const std::wstring& name, DWORD state, DWORD checkPoint, DWORD waitHint) {
    RunScript(name, {{0, state, checkPoint, waitHint}});
}

void FakeScm::RunScript(const std::wstring& name, StatusScript script) {
    const Lock lock(mutex_);
    Service& service = Registered(name);
    const bool runs = !script.empty() && script.front().state != SERVICE_STOPPED;
    if (runs) {
        EnsureProcess(service);
    }
    Follow(service, std::move(script));
}

void FakeScm::RefuseStart(const std::wstring& name, DWORD error) {
    const Lock lock(mutex_);
    behaviours_[Folded(name)].startError = error;
}

void FakeScm::ScriptStart(const std::wstring& name, StatusScript script) {
    const Lock lock(mutex_);
    behaviours_[Folded(name)].start = std::move(script);
}

void FakeScm::RefuseStop(const std::wstring& name, DWORD error) {
    const Lock lock(mutex_);
    behaviours_[Folded(name)].stopError = error;
}

void FakeScm::ScriptStop(const std::wstring& name, StatusScript script) {
    const Lock lock(mutex_);
    behaviours_[Folded(name)].stop = std::move(script);
}

void FakeScm::NoticeDeadProcesses(bool notice) {
    const Lock lock(mutex_);
    noticeDeadProcesses_ = notice;
}

std::optional<FakeServiceView> FakeScm::Find(const std::wstring& name) const {
    const Lock lock(mutex_);
    const auto service =
        const_cast<FakeScm*>(this)->FindNow(name);  // this only catches up with the clock
    if (!service) {
        return std::nullopt;
    }
    return FakeServiceView{service->config,    service->status, service->markedForDelete,
                           service->arguments, service->starts, service->stopRequests};
}

std::vector<std::wstring> FakeScm::Names() const {
    const Lock lock(mutex_);
    std::vector<std::wstring> names;
    names.reserve(services_.size());
    for (const auto& [key, service] : services_) {
        names.push_back(service->config.name);
    }
    return names;
}

std::vector<std::string> FakeScm::OpenHandles() const {
    const Lock lock(mutex_);
    std::vector<std::string> open;
    for (const auto& [number, handle] : handles_.All()) {
        open.push_back(handle.service ? "service " + NameOf(handle) : "manager");
    }
    return open;
}

std::string FakeScm::NameOf(const Handle& handle) {
    return handle.service ? Narrow(handle.service->config.name) : "manager";
}

DWORD FakeScm::OpenManager(DWORD access, std::uintptr_t& handle) {
    handle = handles_.Open({nullptr, access});
    return 0;
}

DWORD FakeScm::Open(const Handle& manager, const std::wstring& name, DWORD access,
                    std::uintptr_t& handle) {
    if ((manager.access & SC_MANAGER_CONNECT) == 0) {
        return ERROR_ACCESS_DENIED;
    }
    auto service = FindNow(name);
    if (!service) {
        return ERROR_SERVICE_DOES_NOT_EXIST;
    }
    handle = handles_.Open({std::move(service), access});
    return 0;
}

DWORD FakeScm::Create(const Handle& manager, const FakeServiceConfig& config, DWORD access,
                      std::uintptr_t& handle) {
    if ((manager.access & SC_MANAGER_CREATE_SERVICE) == 0) {
        return ERROR_ACCESS_DENIED;
    }
    if (const auto present = FindNow(config.name)) {
        return present->markedForDelete ? ERROR_SERVICE_MARKED_FOR_DELETE : ERROR_SERVICE_EXISTS;
    }
    AddService(config.name, config.type);
    Service& service = Registered(config.name);
    service.config = config;
    handle = handles_.Open({services_[Folded(config.name)], access});
    return 0;
}

DWORD FakeScm::Start(const Handle& handle, std::vector<std::wstring> arguments) {
    Service& service = *handle.service;
    if ((handle.access & SERVICE_START) == 0) {
        return ERROR_ACCESS_DENIED;
    }
    Update(service);
    if (service.markedForDelete) {
        return ERROR_SERVICE_MARKED_FOR_DELETE;
    }
    if (service.config.startType == SERVICE_DISABLED) {
        return ERROR_SERVICE_DISABLED;
    }
    if (!service.IsStopped()) {
        return ERROR_SERVICE_ALREADY_RUNNING;
    }
    const Behaviour& behaviour = BehaviourOf(service);
    if (behaviour.startError != 0) {
        return behaviour.startError;
    }
    ++service.starts;
    service.arguments = std::move(arguments);
    EnsureProcess(service);
    Report(service, {0, SERVICE_START_PENDING, 0, kFirstWaitHint});
    const StatusScript& usual = service.IsDriver() ? kDriverStart : kDefaultStart;
    Follow(service, behaviour.start.value_or(usual));
    return 0;
}

DWORD FakeScm::Control(const Handle& handle, DWORD control, SERVICE_STATUS& status) {
    Service& service = *handle.service;
    const DWORD needed = control == SERVICE_CONTROL_STOP          ? SERVICE_STOP
                         : control == SERVICE_CONTROL_INTERROGATE ? SERVICE_INTERROGATE
                                                                  : SERVICE_PAUSE_CONTINUE;
    if ((handle.access & needed) == 0) {
        return ERROR_ACCESS_DENIED;
    }
    Update(service);
    const Behaviour& behaviour = BehaviourOf(service);
    DWORD error = 0;
    if (service.IsStopped()) {
        error = ERROR_SERVICE_NOT_ACTIVE;
    } else if (service.status.dwCurrentState == SERVICE_STOP_PENDING ||
               service.status.dwCurrentState == SERVICE_START_PENDING) {
        error = ERROR_SERVICE_CANNOT_ACCEPT_CTRL;
    } else if (control == SERVICE_CONTROL_STOP) {
        error = behaviour.stopError;
    } else if (control != SERVICE_CONTROL_INTERROGATE) {
        error = ERROR_INVALID_SERVICE_CONTROL;
    }
    if (error == 0 && control == SERVICE_CONTROL_STOP) {
        ++service.stopRequests;
        const StatusScript script =
            behaviour.stop.value_or(service.IsDriver() ? kDriverStop : kDefaultStop);
        if (!script.empty()) {
            Follow(service, script);
        }
    }
    const SERVICE_STATUS_PROCESS& now = service.status;
    status = {now.dwServiceType,
              now.dwCurrentState,
              now.dwControlsAccepted,
              now.dwWin32ExitCode,
              now.dwServiceSpecificExitCode,
              now.dwCheckPoint,
              now.dwWaitHint};
    return error;
}

DWORD FakeScm::Query(const Handle& handle, SERVICE_STATUS_PROCESS& status) {
    if ((handle.access & SERVICE_QUERY_STATUS) == 0) {
        return ERROR_ACCESS_DENIED;
    }
    Update(*handle.service);
    status = handle.service->status;
    return 0;
}

DWORD FakeScm::Delete(const Handle& handle) {
    if ((handle.access & DELETE) == 0) {
        return ERROR_ACCESS_DENIED;
    }
    if (handle.service->markedForDelete) {
        return ERROR_SERVICE_MARKED_FOR_DELETE;
    }
    handle.service->markedForDelete = true;  // it disappears once it is stopped and nobody holds it
    return 0;
}

void FakeScm::Close(std::uintptr_t handle) {
    handles_.Close(handle);
    DropDeleted();
}

void FakeScm::CatchUp() {
    const Lock lock(mutex_);
    for (const auto& [key, service] : services_) {
        Update(*service);
    }
}

std::shared_ptr<FakeScm::Service> FakeScm::FindNow(const std::wstring& name) {
    DropDeleted();
    const auto found = services_.find(Folded(name));
    if (found == services_.end()) {
        return nullptr;
    }
    Update(*found->second);
    return found->second;
}

FakeScm::Service& FakeScm::Registered(const std::wstring& name) {
    const auto found = services_.find(Folded(name));
    if (found == services_.end()) {
        std::abort();  // a mistake of the test: there is no such service
    }
    return *found->second;
}

const FakeScm::Behaviour& FakeScm::BehaviourOf(const Service& service) {
    return behaviours_[Folded(service.config.name)];
}

void FakeScm::Follow(Service& service, StatusScript script) {
    service.script = std::move(script);
    service.scriptPosition = 0;
    service.scriptStart = clock_.Now();
    Update(service);
}

void FakeScm::Report(Service& service, const StatusAt& step) {
    const bool stopped = step.state == SERVICE_STOPPED;
    const bool pending = step.state == SERVICE_START_PENDING || step.state == SERVICE_STOP_PENDING;
    if (stopped && service.process) {
        processes_.End(service.process->id);
        service.process = nullptr;
    }
    service.status.dwCurrentState = step.state;
    service.status.dwControlsAccepted = stopped || pending ? 0 : SERVICE_ACCEPT_STOP;
    service.status.dwWin32ExitCode = 0;
    service.status.dwCheckPoint = step.checkPoint;
    service.status.dwWaitHint = step.waitHint;
    const DWORD own = service.process ? service.process->id : 0;
    service.status.dwProcessId = step.processId == kItsOwnProcess ? own : step.processId;
}

void FakeScm::EnsureProcess(Service& service) {
    const bool alive = service.process && service.process->running;
    if (!service.IsDriver() && !alive) {
        service.process = processes_.FindRunning(processes_.Start());
    }
}

// Brings the service up to date with the clock.
void FakeScm::Update(Service& service) {
    const std::uint64_t elapsed = clock_.Now() - service.scriptStart;
    while (service.scriptPosition != service.script.size() &&
           service.script[service.scriptPosition].afterMs <= elapsed) {
        Report(service, service.script[service.scriptPosition]);
        ++service.scriptPosition;
    }
    const bool died = service.process && !service.process->running;
    if (died && noticeDeadProcesses_ && !service.IsStopped()) {
        service.script.clear();
        service.scriptPosition = 0;
        Report(service, {0, SERVICE_STOPPED});
        service.status.dwWin32ExitCode = ERROR_PROCESS_ABORTED;
    }
}

void FakeScm::DropDeleted() {
    for (auto i = services_.begin(); i != services_.end();) {
        Update(*i->second);
        const bool gone =
            i->second->markedForDelete && i->second->IsStopped() && !HasHandle(*i->second);
        i = gone ? services_.erase(i) : std::next(i);
    }
}

bool FakeScm::HasHandle(const Service& service) const {
    const auto& open = handles_.All();
    return std::any_of(open.begin(), open.end(),
                       [&](const auto& entry) { return entry.second.service.get() == &service; });
}
