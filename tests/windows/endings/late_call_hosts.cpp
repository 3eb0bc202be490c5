// Hosts with a DLL of their own that calls the library while it is detached. Each has a thread that
// has stopped somewhere in the library and holds the locks of that place.

#include <windows.h>

#include <atomic>
#include <sstream>
#include <string>
#include <thread>

#include "endings/counting_observer.h"
#include "endings/ending_hosts.h"
#include "endings/host_steps.h"
#include "endings/loaded_library.h"
#include "log_helper.h"
#include "support/exported_names.h"
#include "support/imports.h"

namespace PlenxTest {
namespace {

constexpr int kExitCode = 25;

enum class Detached { kBeforeTheLibrary, kAfterTheLibrary };

std::atomic<bool> stays{false};

void StayHere() {
    stays = true;
    Sleep(INFINITE);  // until the process ends
}

bool OneStays() {
    return WaitFor([] { return stays || CountingObserver::Get().stays; });
}

// The thread stops in a member function of another library, which the library imports; its first
// argument is its object.
int StayInFileManager(void*) {
    StayHere();
    return 0;
}

const wchar_t* stayAtLine = nullptr;
using Log = void (*)(void*, LOG_MESSAGE_LEVEL, const std::wostringstream&);
Log ownLog = nullptr;

void LogOrStay(void* logger, LOG_MESSAGE_LEVEL level, const std::wostringstream& line) {
    ownLog(logger, level, line);
    if (line.str().find(stayAtLine) != std::wstring::npos) {
        StayHere();
    }
}

bool Redirect(const char* function, void* other, Log* own = nullptr) {
    void* const former = RedirectImport(GetModuleHandleW(L"plenxsdk.dll"), function, other);
    if (own != nullptr) {
        *own = reinterpret_cast<Log>(former);
    }
    return former != nullptr;
}

// A thread writes the line while it holds the lock of the place where it is.
bool StayAtLine(const wchar_t* text) {
    stayAtLine = text;
    return Redirect(ExportedNames::kLog, reinterpret_cast<void*>(LogOrStay), &ownLog);
}

bool WorkerInNotification(const Library& library) {
    CountingObserver::Get().stayInStatus = true;
    library.Start(DistributedFs::kOfficeService);
    return OneStays();
}

bool RpcThreadInNotification(const Library& library) {
    CountingObserver::Get().stayInConnect = true;
    library.Start(DistributedFs::kPcService);
    return OneStays();
}

bool WorkerInCompanion(const Library& library) {
    if (!Redirect(ExportedNames::kStartOfFileManager, reinterpret_cast<void*>(StayInFileManager))) {
        return false;
    }
    library.Start(DistributedFs::kOfficeService);
    return OneStays();
}

bool HostThreadInQueueing(const Library& library) {
    if (!StayAtLine(L"device name changed is pushed into thread pool")) {
        return false;
    }
    std::thread([&library] { library.Rename("name"); }).detach();
    return OneStays();
}

bool WorkerInEngine(const Library& library) {
    if (!StayAtLine(L"plenx manager set config svcType:1 cfgType:1")) {
        return false;
    }
    library.SetStringConfig(DistributedFs::kPcService, DistributedFs::kLocaleConfig, "de_DE");
    return OneStays();
}

bool LoadLateCaller() {
    return LoadLibraryW(L"endings_late_caller.dll") != nullptr;
}

// The system first detaches the DLL that was loaded last.
template <bool (*stop)(const Library&), Detached lateCaller>
int Run(const std::string& install, const std::string& data) {
    if (lateCaller == Detached::kAfterTheLibrary && !LoadLateCaller()) {
        return kNotReached;
    }
    Library library;
    if (lateCaller == Detached::kBeforeTheLibrary && !LoadLateCaller()) {
        return kNotReached;
    }
    library.Register(&CountingObserver::Get());
    library.Init(install, data);
    if (!WaitForEngine(library) || !stop(library)) {
        return kNotReached;
    }
    ExitProcess(kExitCode);  // the thread may still use what is on this stack
}

template <bool (*stop)(const Library&)>
constexpr HostMode Before(const char* name) {
    return {name, kExitCode, Run<stop, Detached::kBeforeTheLibrary>};
}

template <bool (*stop)(const Library&)>
constexpr HostMode After(const char* name) {
    return {name, kExitCode, Run<stop, Detached::kAfterTheLibrary>};
}

constexpr HostMode kModes[] = {
    Before<WorkerInNotification>("late-before,worker-in-notification"),
    Before<RpcThreadInNotification>("late-before,rpc-thread-in-notification"),
    Before<WorkerInCompanion>("late-before,worker-in-companion"),
    Before<HostThreadInQueueing>("late-before,host-thread-in-queueing"),
    Before<WorkerInEngine>("late-before,worker-in-engine"),
    After<WorkerInNotification>("late-after,worker-in-notification"),
    After<RpcThreadInNotification>("late-after,rpc-thread-in-notification"),
    After<WorkerInCompanion>("late-after,worker-in-companion"),
    After<HostThreadInQueueing>("late-after,host-thread-in-queueing"),
    After<WorkerInEngine>("late-after,worker-in-engine"),
};

}  // namespace

const HostMode* FindLateCallHost(const std::string& name) {
    for (const HostMode& mode : kModes) {
        if (name == mode.name) {
            return &mode;
        }
    }
    return nullptr;
}

}  // namespace PlenxTest
