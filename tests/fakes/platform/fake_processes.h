// The processes of the fake machine.

#ifndef PLENXSDK_FAKES_PLATFORM_FAKE_PROCESSES_H
#define PLENXSDK_FAKES_PLATFORM_FAKE_PROCESSES_H

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/fake_clock.h"
#include "platform/handle_table.h"

struct FakeProcess {
    std::uint32_t id = 0;
    std::uint64_t creationTime =
        0;  // in units of 100 ns, like a FILETIME; no two processes share one
    bool running = true;
    bool terminated = false;  // by TerminateProcess
    std::uint32_t exitCode = 0;
    std::uint32_t openError = 0;  // when not 0, OpenProcess fails with it
};

class FakeProcesses {
public:
    FakeProcesses(std::recursive_mutex& mutex, FakeClock& clock) : mutex_(mutex), clock_(clock) {}

    void Reset();

    /// Starts a process with the id, or with one that was never used before when the id is 0. An id
    /// may be used again once its process has ended.
    std::uint32_t Start(std::uint32_t id = 0);
    /// Lets the process end by itself.
    void End(std::uint32_t id);
    /// From now on OpenProcess fails with the error for this process.
    void RefuseOpen(std::uint32_t id, std::uint32_t error);

    bool IsRunning(std::uint32_t id) const;
    /// Returns the ids of the processes that TerminateProcess has ended, in order.
    std::vector<std::uint32_t> Terminated() const;

    // For the fakes.
    using ProcessPointer = std::shared_ptr<FakeProcess>;
    struct Handle {
        ProcessPointer process;
        std::uint32_t access;
    };
    ProcessPointer FindRunning(std::uint32_t id) const;
    HandleTable<Handle>& Handles() { return handles_; }
    void Terminate(FakeProcess& process, std::uint32_t exitCode);
    std::vector<std::string> OpenHandles() const;

private:
    std::recursive_mutex& mutex_;
    FakeClock& clock_;
    std::map<std::uint32_t, ProcessPointer> running_;
    HandleTable<Handle> handles_;
    std::vector<std::uint32_t> terminated_;
    std::uint32_t lastId_ = 0;
    std::uint64_t lastCreationTime_ = 0;
};

#endif  // PLENXSDK_FAKES_PLATFORM_FAKE_PROCESSES_H
