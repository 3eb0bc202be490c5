#include "endings/ending_hosts.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <initializer_list>
#include <thread>

#include "endings/counting_observer.h"
#include "endings/host_steps.h"
#include "endings/loaded_library.h"
#include "support/install_folder.h"

namespace PlenxTest {
namespace {

CountingObserver& Observer() {
    return CountingObserver::Get();
}

// Reads the service's state from its log. A query of the Service Control Manager would disturb the
// worker, because Wine confuses two threads of a process that ask at once (error 6).
bool PcServiceComesToSay(const std::string& data, std::initializer_list<const char*> oneOf) {
    const auto file = std::filesystem::path(data) / "plenx" / "pc" / "service.log";
    return WaitFor(
        [&] {
            const std::string log = ReadFile(file);
            return std::any_of(oneOf.begin(), oneOf.end(), [&](const char* text) {
                return log.find(text) != std::string::npos;
            });
        },
        10000);
}

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
        return kNotReached;  // unloading would remove the worker's code
    }
    return WaitForEngine(library) ? 13 : kNotReached;
}

// The engine answers before the worker has quite left its job, and nothing outside shows when it
// has.
int Idle(const std::string& install, const std::string& data) {
    constexpr DWORD kUntilItIsIdle = 50;
    Library library;
    library.Init(install, data);
    const bool answers = WaitForEngine(library);
    Sleep(kUntilItIsIdle);
    return answers ? 14 : kNotReached;
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
    return PcServiceComesToSay(data, {" pc runs"}) ? 16 : kNotReached;
}

int ExitInsideObserver(const std::string& install, const std::string& data) {
    Library library;
    Observer().exitInside = true;
    library.Register(&Observer());
    library.Init(install, data);
    library.Start(DistributedFs::kPcService);
    WaitForSingleObject(GetCurrentProcess(), 20000);
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

// The service takes its time to start, so the worker polls its state.
int WaitingForAStart(const std::string& install, const std::string& data) {
    Library library;
    library.Init(install, data);
    library.Start(DistributedFs::kPcService);
    return PcServiceComesToSay(data, {" pc starts, process"}) ? 19 : kNotReached;
}

// The service takes its time to stop, or never does.
int WaitingForAStop(const std::string& install, const std::string& data) {
    Library library;
    library.Register(&Observer());
    library.Init(install, data);
    library.Start(DistributedFs::kPcService);
    library.Stop(DistributedFs::kPcService);
    return PcServiceComesToSay(data, {" pc stops", " pc never leaves stop pending"}) ? 20
                                                                                     : kNotReached;
}

// The service has received a request and does not answer it.
int WaitingForAnAnswer(const std::string& install, const std::string& data) {
    Library library;
    library.Register(&Observer());
    library.Init(install, data);
    library.Start(DistributedFs::kPcService);
    if (!WaitFor([] { return Observer().started.load(); }, 10000)) {
        return kNotReached;
    }
    library.RemoteDeviceOnline(DistributedFs::kPcService);
    return PcServiceComesToSay(data, {" pc received DeviceOnline"}) ? 21 : kNotReached;
}

// The worker, or a thread of the RPC runtime, is in an observer and holds the observers' lock.
int ObserverStays(std::atomic<bool>& where, const std::string& install, const std::string& data) {
    Library library;
    where = true;
    library.Register(&Observer());
    library.Init(install, data);
    library.Start(DistributedFs::kPcService);
    return WaitFor([] { return Observer().stays.load(); }, 10000) ? 22 : kNotReached;
}

int WorkerStaysInObserver(const std::string& install, const std::string& data) {
    return ObserverStays(Observer().stayInStatus, install, data);
}

int RpcThreadStaysInObserver(const std::string& install, const std::string& data) {
    return ObserverStays(Observer().stayInConnect, install, data);
}

int FreeOnAnotherThread(const std::string& install, const std::string& data) {
    Library library;
    library.Init(install, data);
    std::thread([&] { library.Free(); }).join();
    if (GetModuleHandleW(L"plenxsdk.dll") == nullptr) {
        return kNotReached;
    }
    return WaitForEngine(library) ? 23 : kNotReached;
}

// Threads are inside the library's functions, at any place, when another thread exits.
int ExitWhileOthersCall(const std::string& install, const std::string& data) {
    Library library;
    library.Init(install, data);
    if (!WaitForEngine(library)) {
        return kNotReached;
    }
    std::atomic<int> rounds{0};
    for (int i = 0; i != 3; ++i) {
        std::thread([&] {
            CountingObserver mine;
            for (;;) {
                library.Register(&mine);
                library.Rename("name");
                library.NotRunning(DistributedFs::kPcService);
                library.Unregister(&mine);
                ++rounds;
            }
        }).detach();
    }
    // The threads use what this function owns, so it must not return.
    ExitProcess(WaitFor([&] { return rounds >= 10; }, 10000) ? 24 : kNotReached);
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
    {"waiting-for-a-start", 19, WaitingForAStart},
    {"waiting-for-a-stop", 20, WaitingForAStop},
    {"waiting-for-an-answer", 21, WaitingForAnAnswer},
    {"worker-stays-in-observer", 22, WorkerStaysInObserver},
    {"rpc-thread-stays-in-observer", 22, RpcThreadStaysInObserver},
    {"free-on-another-thread", 23, FreeOnAnotherThread},
    {"exit-while-others-call", 24, ExitWhileOthersCall},
};

}  // namespace

const HostMode* FindHostMode(const std::string& name) {
    for (const HostMode& mode : kModes) {
        if (name == mode.name) {
            return &mode;
        }
    }
    return FindLateCallHost(name);
}

}  // namespace PlenxTest
