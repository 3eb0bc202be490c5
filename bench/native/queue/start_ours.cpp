// Measures PLENXManager on a fake machine. An observer that does not return keeps the worker busy.

#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/fake_platform.h"
#include "plenxsdk/plenx_manager.h"
#include "queue/start_work.h"
#include "rpc/fake_rpc.h"

namespace bench {
namespace {

using namespace DistributedFs;

PLENXManager& Manager() {
    return PLENXManager::GetInstance();
}

// The outcome of a stop of the PC service passes the gate.
class BlockingObserver : public PLENXServiceObserver {
public:
    Gate* gate = nullptr;

    int NotifyStatus(ServiceType svcType, const std::string&, unsigned int, bool) override {
        if (svcType == kPcService) {
            gate->Pass();
        }
        return 0;
    }
    int SendLocalMessage(PLENXMessageType, unsigned int, const std::string&) override { return 0; }
    int NotifyConnect(ServiceType, const std::string&) override { return 0; }
    int NotifyDisconnect(ServiceType, const std::string&) override { return 0; }
    int NotifyReconnect(ServiceType, const std::string&) override { return 0; }
    int QueryLinkStatus(ServiceType, const std::string&, unsigned int, std::int32_t&) override {
        return 0;
    }
    int NotifyError(int) override { return 0; }
    int NotifyDiskName(const std::string&) override { return 0; }
};

// Init writes icon files into the current folder.
void InitInFolderOfItsOwn() {
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

class Ours {
public:
    Ours() {
        static const bool initialised = (InitInFolderOfItsOwn(), true);
        benchmark::DoNotOptimize(initialised);
        Manager().RegisterPLENXServiceObserver(&observer_);
    }
    ~Ours() { Manager().UnregisterPLENXServiceObserver(&observer_); }
    Ours(const Ours&) = delete;
    Ours& operator=(const Ours&) = delete;

    void Occupy() { StopAt(busy_); }
    /// Returns when all jobs have been run, so that the next round begins with an empty queue.
    void Release() {
        busy_.Open();
        Gate last;
        StopAt(last);
        last.Open();
    }
    int Start(std::uint32_t svcType, const std::string& first, const std::string& second) {
        return Manager().Start(static_cast<ServiceType>(svcType), first, second);
    }

private:
    void StopAt(Gate& gate) {
        // Nobody is in the observer, or somebody waits there and has looked at its gate before.
        observer_.gate = &gate;
        Manager().Stop(kPcService, "group");
        gate.WaitUntilEntered();
    }

    BlockingObserver observer_;
    Gate busy_;
};

[[maybe_unused]] const int registered = RegisterStart<Ours>("ours");

}  // namespace
}  // namespace bench
