// Row 15: plenx_start beside the same call of the class, on a fake machine. An observer that does
// not return keeps the worker busy.

#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/fake_platform.h"
#include "plenxsdk/plenx.h"
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

class Class {
public:
    Class() {
        static const bool initialised = (InitInFolderOfItsOwn(), true);
        benchmark::DoNotOptimize(initialised);
        Manager().RegisterPLENXServiceObserver(&observer_);
    }
    ~Class() { Manager().UnregisterPLENXServiceObserver(&observer_); }
    Class(const Class&) = delete;
    Class& operator=(const Class&) = delete;

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
        // Nobody is in the observer, or somebody waits there and has looked at its gate before.
        observer_.gate = &gate;
        Manager().Stop(kPcService, "group");
        gate.WaitUntilEntered();
    }

    BlockingObserver observer_;
    Gate busy_;
};

// Both receive a pointer and a length for each text, which is what a caller in another language
// has.
class Ours : public Class {
public:
    static int Start(std::uint32_t svcType, const std::string& first, const std::string& second) {
        return plenx_start(svcType, first.data(), first.size(), second.data(), second.size());
    }
};

class ClassOfTexts : public Class {
public:
    static int Start(std::uint32_t svcType, const std::string& first, const std::string& second) {
        return Manager().Start(static_cast<ServiceType>(svcType),
                               std::string(first.data(), first.size()),
                               std::string(second.data(), second.size()));
    }
};

template <class Contender>
int Register(const std::string& contender) {
    benchmark::RegisterBenchmark(("15 plenx_start/" + contender).c_str(), StartWhileBusy<Contender>)
        ->Iterations(kEnqueued);
    return 0;
}

[[maybe_unused]] const int ours = Register<Ours>("ours");
[[maybe_unused]] const int theClass = Register<ClassOfTexts>("the class");

}  // namespace
}  // namespace bench
