// An observer that records its notifications and answers as a test tells it.
//
// It is thread-safe. It counts how many notifications ran at the same time.

#ifndef UNIT_FACADE_RECORDING_OBSERVER_H
#define UNIT_FACADE_RECORDING_OBSERVER_H

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "plenxsdk/plenx_manager.h"

class RecordingObserver : public DistributedFs::PLENXServiceObserver {
public:
    /// Every notification returns this.
    int code = 0;
    /// QueryLinkStatus writes this, or nothing when it is not set.
    std::optional<std::int32_t> linkStatus;
    /// This runs inside every notification, before it returns. It may throw.
    std::function<void(const std::string& event)> hook;

    /// Returns lines such as "NotifyStatus(1, group, 0, true)".
    std::vector<std::string> Events() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        return events_;
    }

    bool WaitFor(const std::string& event, std::size_t times = 1) const {
        std::unique_lock<std::mutex> lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(20), [&] {
            const auto count = std::count(events_.begin(), events_.end(), event);
            return static_cast<std::size_t>(count) >= times;
        });
    }

    std::size_t MostAtOnce() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        return mostAtOnce_;
    }

    int SendLocalMessage(DistributedFs::PLENXMessageType msgType, unsigned int msgLen,
                         const std::string& message) override {
        return Take("SendLocalMessage(" + std::to_string(msgType) + ", " + std::to_string(msgLen) +
                    ", " + message + ")");
    }
    int NotifyConnect(DistributedFs::ServiceType svcType, const std::string& first) override {
        return Take("NotifyConnect(" + std::to_string(svcType) + ", " + first + ")");
    }
    int NotifyDisconnect(DistributedFs::ServiceType svcType, const std::string& first) override {
        return Take("NotifyDisconnect(" + std::to_string(svcType) + ", " + first + ")");
    }
    int NotifyReconnect(DistributedFs::ServiceType svcType, const std::string& first) override {
        return Take("NotifyReconnect(" + std::to_string(svcType) + ", " + first + ")");
    }
    int QueryLinkStatus(DistributedFs::ServiceType svcType, const std::string& first,
                        unsigned int linkType, std::int32_t& status) override {
        const std::int32_t before = status;
        if (linkStatus) {
            status = *linkStatus;
        }
        return Take("QueryLinkStatus(" + std::to_string(svcType) + ", " + first + ", " +
                    std::to_string(linkType) + ", " + std::to_string(before) + ")");
    }
    int NotifyStatus(DistributedFs::ServiceType svcType, const std::string& first,
                     unsigned int sttsType, bool value) override {
        return Take("NotifyStatus(" + std::to_string(svcType) + ", " + first + ", " +
                    std::to_string(sttsType) + ", " + (value ? "true" : "false") + ")");
    }
    int NotifyError(int errCode) override {
        return Take("NotifyError(" + std::to_string(errCode) + ")");
    }
    int NotifyDiskName(const std::string& diskName) override {
        return Take("NotifyDiskName(" + diskName + ")");
    }

private:
    int Take(const std::string& event) {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            mostAtOnce_ = std::max(mostAtOnce_, ++now_);
            events_.push_back(event);
        }
        changed_.notify_all();
        struct End {
            RecordingObserver& observer;
            ~End() {
                const std::lock_guard<std::mutex> lock(observer.mutex_);
                --observer.now_;
            }
        } const end{*this};
        if (hook) {
            hook(event);
        }
        return code;
    }

    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::vector<std::string> events_;
    std::size_t now_ = 0;
    std::size_t mostAtOnce_ = 0;
};

#endif  // UNIT_FACADE_RECORDING_OBSERVER_H
