// An observer that counts notifications and can stay in one on request.

#ifndef PLENXSDK_TESTS_WINDOWS_ENDINGS_COUNTING_OBSERVER_H
#define PLENXSDK_TESTS_WINDOWS_ENDINGS_COUNTING_OBSERVER_H

#include <windows.h>

#include <atomic>
#include <cstdlib>
#include <string>

#include "support/text_observer.h"

namespace PlenxTest {

class CountingObserver : public TextObserver {
public:
    std::atomic<int> calls{0};
    std::atomic<bool> started{false};
    std::atomic<bool> exitInside{false};
    std::atomic<bool> stayInStatus{false};
    std::atomic<bool> stayInConnect{false};
    std::atomic<bool> stays{false};

    int NotifyConnect(DistributedFs::ServiceType service, const std::string& group) override {
        StayIf(stayInConnect);
        return TextObserver::NotifyConnect(service, group);
    }
    int NotifyStatus(DistributedFs::ServiceType service, const std::string& group,
                     unsigned int kind, bool value) override {
        if (kind == DistributedFs::kStatusStart) {
            started = true;
            if (exitInside) {
                std::exit(17);
            }
            StayIf(stayInStatus);
        }
        return TextObserver::NotifyStatus(service, group, kind, value);
    }

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
    int Take(const std::string&) override {
        ++calls;
        return 0;
    }
    std::int32_t AnswerLink(unsigned int) override { return 0; }
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_ENDINGS_COUNTING_OBSERVER_H
