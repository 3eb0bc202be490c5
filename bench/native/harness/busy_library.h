// The library on a fake machine, kept busy by an observer that does not return.

#ifndef PLENXSDK_BENCH_HARNESS_BUSY_LIBRARY_H
#define PLENXSDK_BENCH_HARNESS_BUSY_LIBRARY_H

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "harness/gate.h"
#include "platform/fake_platform.h"
#include "plenxsdk/plenx_manager.h"
#include "rpc/fake_rpc.h"

namespace bench {

inline DistributedFs::PLENXManager& Manager() {
    return DistributedFs::PLENXManager::GetInstance();
}

// Passes the gate when it hears of the outcome of a stop of the PC service.
class BlockingObserver : public DistributedFs::PLENXServiceObserver {
public:
    Gate* gate = nullptr;

    int NotifyStatus(DistributedFs::ServiceType svcType, const std::string&, unsigned int,
                     bool) override {
        if (svcType == DistributedFs::kPcService) {
            gate->Pass();
        }
        return 0;
    }
    int SendLocalMessage(DistributedFs::PLENXMessageType, unsigned int,
                         const std::string&) override {
        return 0;
    }
    int NotifyConnect(DistributedFs::ServiceType, const std::string&) override { return 0; }
    int NotifyDisconnect(DistributedFs::ServiceType, const std::string&) override { return 0; }
    int NotifyReconnect(DistributedFs::ServiceType, const std::string&) override { return 0; }
    int QueryLinkStatus(DistributedFs::ServiceType, const std::string&, unsigned int,
                        std::int32_t&) override {
        return 0;
    }
    int NotifyError(int) override { return 0; }
    int NotifyDiskName(const std::string&) override { return 0; }
};

// Init writes icon files into the current folder.
inline void InitInFolderOfItsOwn() {
    const std::filesystem::path before = std::filesystem::current_path();
    std::string folder = std::filesystem::temp_directory_path() / "plenx-bench-XXXXXX";
    if (mkdtemp(folder.data()) == nullptr) {
        std::abort();
    }
    std::filesystem::current_path(folder);
    FakePlatform::Get().Files().AddFolder(L"C:\\App");
    FakePlatform::Get().Files().AddFolder(L"C:\\Data");
    Manager().Init("C:\\App", "C:\\Data", "third", true);
    FakeRpc::Get().WaitUntilListening();
    std::filesystem::current_path(before);
    std::filesystem::remove_all(folder);
}

/// The library with a busy worker, from Occupy to Release.
class BusyLibrary {
public:
    BusyLibrary() {
        [[maybe_unused]] static const bool initialised = (InitInFolderOfItsOwn(), true);
        Manager().RegisterPLENXServiceObserver(&observer_);
    }
    ~BusyLibrary() { Manager().UnregisterPLENXServiceObserver(&observer_); }
    BusyLibrary(const BusyLibrary&) = delete;
    BusyLibrary& operator=(const BusyLibrary&) = delete;

    void Occupy() { StopAt(busy_); }
    /// Returns when all jobs have been run, so that the next round begins with an empty queue.
    void Release() {
        busy_.Open();
        Gate last;
        StopAt(last);
        last.Open();
    }

private:
    void StopAt(Gate& gate) {
        // The observer is not running, or it waits at a gate that it has already read from here.
        observer_.gate = &gate;
        Manager().Stop(DistributedFs::kPcService, "group");
        gate.WaitUntilEntered();
    }

    BlockingObserver observer_;
    Gate busy_;
};

}  // namespace bench

#endif  // PLENXSDK_BENCH_HARNESS_BUSY_LIBRARY_H
