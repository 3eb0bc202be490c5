// An observer that counts notifications, and stays in one on request.

#ifndef PLENXSDK_TESTS_WINDOWS_ENDINGS_COUNTING_OBSERVER_H
#define PLENXSDK_TESTS_WINDOWS_ENDINGS_COUNTING_OBSERVER_H

#include <windows.h>

#include <atomic>
#include <cstdlib>
#include <string>

#include "plenxsdk/plenx_manager.h"

namespace PlenxTest {

class CountingObserver : public DistributedFs::PLENXServiceObserver {
public:
    std::atomic<int> calls{0};
    std::atomic<bool> started{false};
    std::atomic<bool> exitInside{false};
    std::atomic<bool> stayInStatus{false};
    std::atomic<bool> stayInConnect{false};
    std::atomic<bool> stays{false};

    int SendLocalMessage(DistributedFs::PLENXMessageType, unsigned int,
                         const std::string&) override {
        return Count();
    }
    int NotifyConnect(DistributedFs::ServiceType, const std::string&) override {
        StayIf(stayInConnect);
        return Count();
    }
    int NotifyDisconnect(DistributedFs::ServiceType, const std::string&) override {
        return Count();
    }
    int NotifyReconnect(DistributedFs::ServiceType, const std::string&) override { return Count(); }
    int QueryLinkStatus(DistributedFs::ServiceType, const std::string&, unsigned int,
                        std::int32_t&) override {
        return Count();
    }
    int NotifyStatus(DistributedFs::ServiceType, const std::string&, unsigned int kind,
                     bool) override {
        if (kind == DistributedFs::kStatusStart) {
            started = true;
            if (exitInside) {
                std::exit(17);
            }
            StayIf(stayInStatus);
        }
        return Count();
    }
    int NotifyError(int) override { return Count(); }
    int NotifyDiskName(const std::string&) override { return Count(); }

    /// All hosts share this one, which is never destroyed before they end.
    static CountingObserver& Get() {
        static CountingObserver observer;
        return observer;
    }

private:
    void StayIf(bool wanted) {
        if (wanted) {
            stays = true;
            Sleep(INFINITE);  // until the process ends
        }
    }
    int Count() {
        ++calls;
        return 0;
    }
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_ENDINGS_COUNTING_OBSERVER_H
