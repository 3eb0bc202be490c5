#include "endings/ending_hosts.h"

#include <windows.h>

#include <atomic>
#include <cstdlib>
#include <stdexcept>

#include "plenxsdk/plenx_manager.h"
#include "support/service_state.h"

namespace PlenxTest {
namespace {

using DistributedFs::PLENXManager;
using DistributedFs::PLENXServiceObserver;
using DistributedFs::ServiceType;

// The DLL loaded by hand: members are called through their exported names.
class Library {
public:
    Library() : module_(LoadLibraryW(L"plenxsdk.dll")) {
        if (module_ == nullptr) {
            throw std::runtime_error("plenxsdk.dll cannot be loaded");
        }
    }

    void Free() { FreeLibrary(module_); }

    PLENXManager& Manager() const {
        return *Function<PLENXManager* (*)()>("_ZN13DistributedFs12PLENXManager11GetInstanceEv")();
    }
    void Init(const std::string& install, const std::string& data) const {
        using Call =
            void (*)(PLENXManager*, const std::string&, const std::string&, std::string, bool);
        Function<Call>(
            "_ZN13DistributedFs12PLENXManager4InitERKNSt7__cxx1112basic_stringIcSt11"
            "char_traitsIcESaIcEEES8_S6_b")(&Manager(), install, data, "third", true);
    }
    void Start(ServiceType service) const {
        using Call = int (*)(PLENXManager*, ServiceType, const std::string&, const std::string&);
        Function<Call>(
            "_ZN13DistributedFs12PLENXManager5StartENS_11ServiceTypeERKNSt7__cxx1112"
            "basic_stringIcSt11char_traitsIcESaIcEEES9_")(&Manager(), service, "group", "argument");
    }
    void Rename(const std::string& name) const {
        using Call = int (*)(PLENXManager*, const std::string&);
        Function<Call>(
            "_ZN13DistributedFs12PLENXManager17DeviceNameChangedERKNSt7__cxx1112basic_"
            "stringIcSt11char_traitsIcESaIcEEE")(&Manager(), name);
    }
    std::int64_t NotRunning(ServiceType service) const {
        using Call = std::int64_t (*)(PLENXManager*, ServiceType, DistributedFs::ConfigType);
        return Function<Call>(
            "_ZN13DistributedFs12PLENXManager14GetInt64ConfigENS_11ServiceTypeENS"
            "_10ConfigTypeE")(&Manager(), service, DistributedFs::kServiceNotRunningConfig);
    }
    void Register(PLENXServiceObserver* observer) const {
        using Call = void (*)(PLENXManager*, PLENXServiceObserver*);
        Function<Call>(
            "_ZN13DistributedFs12PLENXManager28RegisterPLENXServiceObserverEPNS_20PLENX"
            "ServiceObserverE")(&Manager(), observer);
    }

private:
    template <class Call>
    Call Function(const char* name) const {
        const FARPROC function = GetProcAddress(module_, name);
        if (function == nullptr) {
            throw std::runtime_error(std::string("not exported: ") + name);
        }
        return reinterpret_cast<Call>(reinterpret_cast<void*>(function));
    }

    HMODULE module_;
};

class CountingObserver : public PLENXServiceObserver {
public:
    std::atomic<int> calls{0};
    std::atomic<bool> started{false};
    std::atomic<bool> exitInside{false};

    int SendLocalMessage(DistributedFs::PLENXMessageType, unsigned int,
                         const std::string&) override {
        return Count();
    }
    int NotifyConnect(ServiceType, const std::string&) override { return Count(); }
    int NotifyDisconnect(ServiceType, const std::string&) override { return Count(); }
    int NotifyReconnect(ServiceType, const std::string&) override { return Count(); }
    int QueryLinkStatus(ServiceType, const std::string&, unsigned int, std::int32_t&) override {
        return Count();
    }
    int NotifyStatus(ServiceType, const std::string&, unsigned int kind, bool) override {
        if (kind == DistributedFs::kStatusStart) {
            started = true;
            if (exitInside) {
                std::exit(17);
            }
        }
        return Count();
    }
    int NotifyError(int) override { return Count(); }
    int NotifyDiskName(const std::string&) override { return Count(); }

private:
    int Count() {
        ++calls;
        return 0;
    }
};

CountingObserver& Observer() {
    static CountingObserver observer;
    return observer;
}

template <class Condition>
bool WaitFor(Condition condition, DWORD milliseconds) {
    const DWORD start = GetTickCount();
    while (!condition()) {
        if (GetTickCount() - start > milliseconds) {
            return false;
        }
        Sleep(5);
    }
    return true;
}

// GetInt64Config waits for the first Init; before the worker has taken it up, the answer is 0.
bool WaitForEngine(const Library& library) {
    return WaitFor([&] { return library.NotRunning(DistributedFs::kPcService) == 1; }, 10000);
}

constexpr int kNotReached = 99;

int UseNothing(const std::string&, const std::string&) {
    Library library;
    library.Manager();
    return 11;
}

int LoadAndFree(const std::string&, const std::string&) {
    for (int i = 0; i != 5; ++i) {
        Library library;
        library.Manager();
        library.Free();
        if (GetModuleHandleW(L"plenxsdk.dll") != nullptr) {
            return kNotReached;
        }
    }
    return 12;
}

int InitAndFree(const std::string& install, const std::string& data) {
    Library library;
    library.Init(install, data);
    library.Free();
    if (GetModuleHandleW(L"plenxsdk.dll") == nullptr) {
        return kNotReached;  // the worker's code would be gone
    }
    return WaitForEngine(library) ? 13 : kNotReached;
}

int Idle(const std::string& install, const std::string& data) {
    Library library;
    library.Init(install, data);
    return WaitForEngine(library) ? 14 : kNotReached;
}

int ReturnAtOnce(const std::string& install, const std::string& data) {
    Library library;
    library.Init(install, data);
    return 15;
}

// With a service that never answers, the worker sleeps between pings.
int BusyWithQueue(const std::string& install, const std::string& data) {
    Library library;
    library.Init(install, data);
    if (!WaitForEngine(library)) {
        return kNotReached;
    }
    library.Start(DistributedFs::kPcService);
    for (int i = 0; i != 1000; ++i) {
        library.Rename("name");
    }
    // A service that is still starting takes no stop request and would rightly be left behind.
    return WaitFor([] { return StateOf(L"PlenxPcSvc") == SERVICE_RUNNING; }, 10000) ? 16
                                                                                    : kNotReached;
}

int ExitInsideObserver(const std::string& install, const std::string& data) {
    Library library;
    Observer().exitInside = true;
    library.Register(&Observer());
    library.Init(install, data);
    library.Start(DistributedFs::kPcService);
    Sleep(20000);
    return kNotReached;
}

// A started service keeps calling while this process ends.
int CallsArriving(const std::string& install, const std::string& data) {
    Library library;
    library.Register(&Observer());
    library.Init(install, data);
    library.Start(DistributedFs::kPcService);
    return WaitFor([] { return Observer().started && Observer().calls > 1; }, 10000) ? 18
                                                                                     : kNotReached;
}

constexpr HostMode kModes[] = {
    {"use-nothing", 11, UseNothing},
    {"load-and-free", 12, LoadAndFree},
    {"init-and-free", 13, InitAndFree},
    {"idle", 14, Idle},
    {"return-at-once", 15, ReturnAtOnce},
    {"busy-with-queue", 16, BusyWithQueue},
    {"exit-inside-observer", 17, ExitInsideObserver},
    {"calls-arriving", 18, CallsArriving},
};

}  // namespace

const HostMode* FindHostMode(const std::string& name) {
    for (const HostMode& mode : kModes) {
        if (name == mode.name) {
            return &mode;
        }
    }
    return nullptr;
}

}  // namespace PlenxTest
