#include "platform/fake_processes.h"

#include <windows.h>

#include <algorithm>
#include <cstdlib>

#include "platform/call_text.h"
#include "platform/platform_call.h"

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

constexpr std::uint32_t kFirstId = 1000;
constexpr std::uint64_t kFirstCreationTime = 132'000'000'000'000'000;
constexpr std::uint64_t kTicksPerMillisecond = 10'000;

FakeProcesses::Handle& Known(const PlatformCall& call, HANDLE handle) {
    FakeProcesses::Handle* const found =
        call.Platform().Processes().Handles().Find(reinterpret_cast<std::uintptr_t>(handle));
    if (found == nullptr) {
        call.RejectHandle(handle);
    }
    return *found;
}

}  // namespace

void FakeProcesses::Reset() {
    const Lock lock(mutex_);
    running_.clear();
    handles_.CloseAll();
    terminated_.clear();
    lastId_ = kFirstId - 4;
    lastCreationTime_ = 0;
}

std::uint32_t FakeProcesses::Start(std::uint32_t id) {
    const Lock lock(mutex_);
    if (id == 0) {
        id = lastId_ + 4;
    }
    lastId_ = std::max(lastId_, id);
    if (running_.count(id) != 0) {
        std::abort();  // a mistake of the test: two processes cannot share an id
    }
    auto process = std::make_shared<FakeProcess>();
    process->id = id;
    lastCreationTime_ =
        std::max(kFirstCreationTime + clock_.Now() * kTicksPerMillisecond, lastCreationTime_ + 1);
    process->creationTime = lastCreationTime_;
    running_[id] = std::move(process);
    return id;
}

void FakeProcesses::End(std::uint32_t id) {
    const Lock lock(mutex_);
    const auto found = running_.find(id);
    if (found != running_.end()) {
        found->second->running = false;
        running_.erase(found);
    }
}

void FakeProcesses::RefuseOpen(std::uint32_t id, std::uint32_t error) {
    const Lock lock(mutex_);
    running_.at(id)->openError = error;
}

bool FakeProcesses::IsRunning(std::uint32_t id) const {
    const Lock lock(mutex_);
    return running_.count(id) != 0;
}

std::vector<std::uint32_t> FakeProcesses::Terminated() const {
    const Lock lock(mutex_);
    return terminated_;
}

FakeProcesses::ProcessPointer FakeProcesses::FindRunning(std::uint32_t id) const {
    const Lock lock(mutex_);
    const auto found = running_.find(id);
    return found == running_.end() ? nullptr : found->second;
}

void FakeProcesses::Terminate(FakeProcess& process, std::uint32_t exitCode) {
    const Lock lock(mutex_);
    process.terminated = true;
    process.exitCode = exitCode;
    terminated_.push_back(process.id);
    End(process.id);
}

std::vector<std::string> FakeProcesses::OpenHandles() const {
    const Lock lock(mutex_);
    std::vector<std::string> open;
    for (const auto& [number, handle] : handles_.All()) {
        open.push_back("process " + std::to_string(handle.process->id));
    }
    return open;
}

HANDLE OpenProcess(DWORD access, BOOL inheritHandle, DWORD processId) {
    const PlatformCall call("OpenProcess");
    call.Record({Hex(access), std::to_string(inheritHandle), std::to_string(processId)});
    FakeProcesses& processes = call.Platform().Processes();
    std::uintptr_t handle = 0;
    call.Run([&]() -> DWORD {
        call.Platform().Scm().CatchUp();  // a service that has stopped by now loses its process
        const FakeProcesses::ProcessPointer process = processes.FindRunning(processId);
        if (!process) {
            return ERROR_INVALID_PARAMETER;
        }
        if (process->openError != 0) {
            return process->openError;
        }
        handle = processes.Handles().Open({process, access});
        return 0;
    });
    return reinterpret_cast<HANDLE>(handle);
}

BOOL TerminateProcess(HANDLE process, UINT exitCode) {
    const PlatformCall call("TerminateProcess");
    const FakeProcesses::Handle handle = Known(call, process);
    call.Record({std::to_string(handle.process->id), std::to_string(exitCode)});
    return call.Run([&]() -> DWORD {
        if ((handle.access & PROCESS_TERMINATE) == 0 || !handle.process->running) {
            return ERROR_ACCESS_DENIED;
        }
        call.Platform().Processes().Terminate(*handle.process, exitCode);
        return 0;
    });
}

BOOL GetProcessTimes(HANDLE process, LPFILETIME creation, LPFILETIME exit, LPFILETIME kernel,
                     LPFILETIME user) {
    const PlatformCall call("GetProcessTimes");
    const FakeProcesses::Handle handle = Known(call, process);
    call.Record({std::to_string(handle.process->id)});
    return call.Run([&]() -> DWORD {
        const DWORD either = PROCESS_QUERY_INFORMATION | PROCESS_QUERY_LIMITED_INFORMATION;
        if ((handle.access & either) == 0) {
            return ERROR_ACCESS_DENIED;
        }
        const std::uint64_t time = handle.process->creationTime;
        *creation = {static_cast<DWORD>(time), static_cast<DWORD>(time >> 32)};
        *exit = *kernel = *user = {0, 0};
        return 0;
    });
}

BOOL CloseHandle(HANDLE handle) {
    const PlatformCall call("CloseHandle");
    call.Record({"process " + std::to_string(Known(call, handle).process->id)});
    call.Platform().Processes().Handles().Close(reinterpret_cast<std::uintptr_t>(handle));
    call.Succeed();
    return TRUE;
}
