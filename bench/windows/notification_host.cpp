// The library's half of row 11. It serves "Manager" for one observer that does nothing.

#include <windows.h>

#include <rpc.h>

#include <thread>

#include "plenxsdk/plenx_manager.h"
#include "rpc/rpc_manager.h"
#include "support/server_process.h"

namespace PlenxBench {
namespace {

using namespace DistributedFs;

constexpr int kTries = 1000;

class NothingObserver : public PLENXServiceObserver {
    int SendLocalMessage(PLENXMessageType, unsigned int, const std::string&) override { return 0; }
    int NotifyConnect(ServiceType, const std::string&) override { return 0; }
    int NotifyDisconnect(ServiceType, const std::string&) override { return 0; }
    int NotifyReconnect(ServiceType, const std::string&) override { return 0; }
    int QueryLinkStatus(ServiceType, const std::string&, unsigned int, std::int32_t&) override {
        return 0;
    }
    int NotifyStatus(ServiceType, const std::string&, unsigned int, bool) override { return 0; }
    int NotifyError(int) override { return 0; }
    int NotifyDiskName(const std::string&) override { return 0; }
};

bool Listens() {
    for (int i = 0; i != kTries; ++i) {
        if (RpcMgmtIsServerListening(nullptr) == RPC_S_OK) {
            return true;
        }
        Sleep(10);
    }
    return false;
}

}  // namespace
}  // namespace PlenxBench

int main(int argc, char** argv) {
    using namespace PlenxBench;
    NothingObserver observer;
    PLENXManager::GetInstance().RegisterPLENXServiceObserver(&observer);
    std::thread([] { RpcManager::GetInstance().Start(); }).detach();
    if (argc >= 2 && Listens()) {
        ServerLife(argv[argc - 1]).ServeUntilStopped();
    }
    ExitProcess(0);  // the thread listens for ever
}
