// Each of these hosts of the plain C interface does one particular thing before it ends, or ends in
// one particular way. They load the DLL by its path.

#include "endings/ending_hosts.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "c_interface/loaded_interface.h"
#include "support/wait.h"

namespace PlenxTest {
namespace {

constexpr int kNotReached = 99;
constexpr int kReaders = 10;

class Ending : public plenx::Observer {
public:
    std::atomic<bool> exits{false};
    std::atomic<bool> stays{false};

    std::int32_t notify_status(std::uint32_t, std::string_view, std::uint32_t kind, bool) override {
        if (kind == PLENX_STATUS_START && exits) {
            std::exit(31);
        }
        if (kind == PLENX_STATUS_START) {
            stays = true;
            Sleep(INFINITE);  // until the process ends
        }
        return 0;
    }
};

bool InitAndWait(const plenx::Library& sdk, const std::string& install, const std::string& data) {
    sdk.init(install, data, "", false).or_throw();
    return WaitFor([&] { return sdk.get_int64(PLENX_PC, PLENX_KEY_NOT_RUNNING).or_throw() == 1; });
}

// These threads wait for ever. Nothing destroys them: the process ends around them. Nothing outside
// shows when a thread that is about to wait has begun to.
bool LetReadersWait(const plenx::Library& sdk) {
    constexpr DWORD kUntilTheyWait = 50;
    static std::atomic<int> aboutToWait{0};
    auto* const queue = new plenx::Queue(sdk.open_queue(100).or_throw());
    for (int i = 0; i != kReaders; ++i) {
        std::thread([queue] {
            ++aboutToWait;
            while (queue->next(UINT32_MAX).or_throw()) {
            }
        }).detach();
    }
    const bool allAreAboutTo = WaitFor([] { return aboutToWait == kReaders; });
    Sleep(kUntilTheyWait);
    return allAreAboutTo;
}

bool LetAFunctionStay(const plenx::Library& sdk) {
    auto* const ending = new Ending;
    new plenx::Subscription(sdk.observe(*ending).or_throw());
    sdk.start(PLENX_OFFICE, "group", "argument").or_throw();
    return WaitFor([&] { return ending->stays.load(); });
}

int ExitInsideAFunction(const std::string& install, const std::string& data) {
    const plenx::Library sdk = LoadInterface();
    Ending ending;
    ending.exits = true;
    const plenx::Subscription subscription = sdk.observe(ending).or_throw();
    sdk.init(install, data, "", false).or_throw();
    sdk.start(PLENX_PC, "group", "argument").or_throw();
    Sleep(20000);
    return kNotReached;
}

int FunctionStays(const std::string& install, const std::string& data) {
    const plenx::Library sdk = LoadInterface();
    return InitAndWait(sdk, install, data) && LetAFunctionStay(sdk) ? 32 : kNotReached;
}

int TenReadersWait(const std::string& install, const std::string& data) {
    const plenx::Library sdk = LoadInterface();
    return InitAndWait(sdk, install, data) && LetReadersWait(sdk) ? 33 : kNotReached;
}

// What the threads that read one queue have taken from it. Their only common lock is the queue's.
struct Taken {
    std::vector<std::atomic<int>> times = std::vector<std::atomic<int>>(10000);  // by error code
    std::atomic<std::uint64_t> lost{0};
    std::atomic<int> others{0};  // how many errors came before the last one, as it says itself

    void Count(const plenx::Event& event) {
        lost += event.lost();
        if (event.kind() != PLENX_EVENT_ERROR) {
            return;
        }
        if (event.value() < 0) {
            others = -event.value();
        } else {
            ++times.at(static_cast<std::size_t>(event.value()));
        }
    }

    bool HasEachOnce() const {
        const auto end = times.begin() + 1 + others;
        return others != 0 && lost == 0 && times.front() == 0 &&
               std::all_of(times.begin() + 1, end, [](const auto& count) { return count == 1; }) &&
               std::all_of(end, times.end(), [](const auto& count) { return count == 0; });
    }
};

int TenReadersShareAFlood(const std::string& install, const std::string& data) {
    const plenx::Library sdk = LoadInterface();
    plenx::Queue queue = sdk.open_queue(100000).or_throw();
    Taken taken;
    std::vector<std::thread> readers;
    for (int i = 0; i != kReaders; ++i) {
        readers.emplace_back([&] {
            while (auto event = queue.next(UINT32_MAX)) {
                taken.Count(*event);
            }
        });
    }
    sdk.init(install, data, "", false).or_throw();
    sdk.start(PLENX_PC, "group", "argument").or_throw();
    const bool isOver = WaitFor([&] { return taken.others != 0; });
    queue.cancel().or_throw();
    for (std::thread& reader : readers) {
        reader.join();
    }
    return isOver && taken.HasEachOnce() ? 37 : kNotReached;
}

bool LoadLateCaller() {
    return LoadLibraryW(L"c_interface_late_caller.dll") != nullptr;
}

// The system first detaches the DLL that was loaded last.
int CallLate(bool before, const std::string& install, const std::string& data) {
    if (!before && !LoadLateCaller()) {
        return kNotReached;
    }
    const plenx::Library sdk = LoadInterface();
    if (before && !LoadLateCaller()) {
        return kNotReached;
    }
    return InitAndWait(sdk, install, data) && LetReadersWait(sdk) && LetAFunctionStay(sdk)
               ? 34
               : kNotReached;
}

int CallBeforeTheInterfaceGoes(const std::string& install, const std::string& data) {
    return CallLate(true, install, data);
}

int CallAfterTheInterfaceWent(const std::string& install, const std::string& data) {
    return CallLate(false, install, data);
}

// Nothing keeps the DLLs loaded until the first call that makes them stay.
int FreeUnused(const std::string&, const std::string&) {
    const HMODULE module = LoadLibraryW(InterfacePath().c_str());
    const auto abi = reinterpret_cast<std::uint32_t (*)()>(
        reinterpret_cast<void*>(GetProcAddress(module, "plenx_abi")));
    const bool answers = abi != nullptr && abi() == PLENX_ABI;
    FreeLibrary(module);
    const bool gone = GetModuleHandleW(L"plenxsdk_c.dll") == nullptr &&
                      GetModuleHandleW(L"plenxsdk.dll") == nullptr;
    return answers && gone ? 35 : kNotReached;
}

int FreeInUse(const std::string&, const std::string&) {
    const plenx::Library sdk = LoadInterface();
    {
        const plenx::Queue queue = sdk.open_queue(1).or_throw();
    }
    const HMODULE module = GetModuleHandleW(L"plenxsdk_c.dll");
    for (int i = 0; i != 5; ++i) {
        FreeLibrary(module);
    }
    const bool there = GetModuleHandleW(L"plenxsdk_c.dll") != nullptr &&
                       GetModuleHandleW(L"plenxsdk.dll") != nullptr;
    return there && sdk.functions().abi() == PLENX_ABI ? 36 : kNotReached;
}

constexpr HostMode kModes[] = {
    {"exit-inside-a-function", 31, ExitInsideAFunction},
    {"function-stays", 32, FunctionStays},
    {"ten-readers-wait", 33, TenReadersWait},
    {"ten-readers-share-a-flood", 37, TenReadersShareAFlood},
    {"call-before-the-interface-goes", 34, CallBeforeTheInterfaceGoes},
    {"call-after-the-interface-went", 34, CallAfterTheInterfaceWent},
    {"free-unused", 35, FreeUnused},
    {"free-in-use", 36, FreeInUse},
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
