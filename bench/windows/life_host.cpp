// A host of row 13: starts both services, lets them idle, and ends. Its arguments are the install
// folder, the data folder, the name of the shared times, and, for the limit, "stop": it then stops
// and deletes the services itself before it ends.

#include <windows.h>

#include <cstdio>
#include <exception>
#include <string>

#include "life_times.h"
#include "plenxsdk/plenx_manager.h"
#include "support/clock.h"
#include "support/shared_numbers.h"
#include "support/waiting_observer.h"

namespace PlenxBench {
namespace {

using namespace DistributedFs;

constexpr DWORD kIdleMilliseconds = 200;
constexpr DWORD kStopMilliseconds = 10000;
constexpr auto kNoService = static_cast<ServiceType>(99);

// Does the least that stops a service and deletes it.
void StopBare(const wchar_t* name) {
    const SC_HANDLE manager = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    const SC_HANDLE service = OpenServiceW(manager, name, SERVICE_ALL_ACCESS);
    SERVICE_STATUS status{};
    BOOL asked = ControlService(service, SERVICE_CONTROL_STOP, &status);
    const DWORD start = GetTickCount();
    while (asked && status.dwCurrentState != SERVICE_STOPPED &&
           GetTickCount() - start < kStopMilliseconds) {
        Sleep(1);
        asked = QueryServiceStatus(service, &status);
    }
    if (status.dwCurrentState != SERVICE_STOPPED || !DeleteService(service)) {
        throw std::runtime_error("a service cannot be stopped");
    }
    CloseServiceHandle(service);
    CloseServiceHandle(manager);
}

void Run(const std::string& install, const std::string& data, bool stopsServices,
         const SharedNumbers& times) {
    // It lives until the process ends, because notifications may come until then.
    static WaitingObserver observer;
    PLENXManager& manager = PLENXManager::GetInstance();
    manager.RegisterPLENXServiceObserver(&observer);

    const std::int64_t start = Now();
    manager.Init(install, data, "third", true);
    times[kInitReturned] = Now() - start;
    // A stop of a service that does not exist only notifies that nothing is started.
    manager.Stop(kNoService, "group");
    observer.WaitFor(kCombinedService, kStatusStop, true);
    times[kEngineReady] = Now() - start;

    manager.Start(kPcService, "group", "argument");
    manager.Start(kPhoneService, "group", "argument");
    observer.WaitFor(kPcService, kStatusStart, true);
    observer.WaitFor(kPhoneService, kStatusStart, true);
    Sleep(kIdleMilliseconds);

    if (stopsServices) {
        const std::int64_t stopping = Now();
        StopBare(L"PlenxPcSvc");
        StopBare(L"PlenxPhoneSvc");
        times[kServicesStopped] = Now() - stopping;
    }
    times[kLeaving] = Now();
}

}  // namespace
}  // namespace PlenxBench

int main(int argc, char** argv) try {
    if (argc < 4) {
        return 2;
    }
    const std::string name = argv[3];
    const PlenxBench::SharedNumbers times(std::wstring(name.begin(), name.end()));
    PlenxBench::Run(argv[1], argv[2], argc > 4, times);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "life_host: %s\n", error.what());
    return 1;
}
