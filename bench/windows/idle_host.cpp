// The host of row 14: starts both services and does nothing until it is stopped.

#include <cstdio>
#include <exception>
#include <string>

#include "plenxsdk/plenx_manager.h"
#include "support/install_folder.h"
#include "support/server_process.h"
#include "support/waiting_observer.h"

namespace PlenxBench {
namespace {

using namespace DistributedFs;

void Run(const std::string& name) {
    static WaitingObserver observer;  // until the process ends
    const PlenxTest::InstallFolder folder(L"plenx-bench-idle");
    PLENXManager& manager = PLENXManager::GetInstance();
    manager.RegisterPLENXServiceObserver(&observer);
    manager.Init(folder.Install(), folder.Data(), "third", true);
    manager.Start(kPcService, "group", "argument");
    manager.Start(kPhoneService, "group", "argument");
    observer.WaitFor(kPcService, kStatusStart, true);
    observer.WaitFor(kPhoneService, kStatusStart, true);

    ServerLife(name).ServeUntilStopped();

    manager.Stop(kPcService, "group");
    manager.Stop(kPhoneService, "group");
    observer.WaitFor(kPcService, kStatusStop, false);
    observer.WaitFor(kPhoneService, kStatusStop, false);
}

}  // namespace
}  // namespace PlenxBench

int main(int argc, char** argv) try {
    PlenxBench::Run(argv[argc - 1]);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "idle_host: %s\n", error.what());
    return 1;
}
