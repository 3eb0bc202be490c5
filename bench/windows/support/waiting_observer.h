// An observer that waits for outcomes.

#ifndef PLENXBENCH_WINDOWS_SUPPORT_WAITING_OBSERVER_H
#define PLENXBENCH_WINDOWS_SUPPORT_WAITING_OBSERVER_H

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <tuple>

#include "plenxsdk/plenx_manager.h"

namespace PlenxBench {

class WaitingObserver : public DistributedFs::PLENXServiceObserver {
public:
    /// @throws std::runtime_error when that status does not come.
    void WaitFor(unsigned service, unsigned kind, bool value) {
        std::unique_lock<std::mutex> lock(mutex_);
        const bool came = changed_.wait_for(lock, std::chrono::seconds(60), [&] {
            return outcomes_.count({service, kind, value}) != 0;
        });
        if (!came) {
            throw std::runtime_error("an outcome did not come");
        }
    }

private:
    int NotifyStatus(DistributedFs::ServiceType service, const std::string&, unsigned int kind,
                     bool value) override {
        const std::lock_guard<std::mutex> lock(mutex_);
        outcomes_.insert({service, kind, value});
        changed_.notify_all();
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

    std::mutex mutex_;
    std::condition_variable changed_;
    std::set<std::tuple<unsigned, unsigned, bool>> outcomes_;
};

}  // namespace PlenxBench

#endif  // PLENXBENCH_WINDOWS_SUPPORT_WAITING_OBSERVER_H
