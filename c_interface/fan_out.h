// The layer registers this one observer with the library. It passes every notification on to all
// listeners, in the order in which they were opened.
//
// It holds no lock of its own while a listener takes a notification. So a slow listener does not
// stop others from being opened and closed.

#ifndef PLENXSDK_C_FAN_OUT_H
#define PLENXSDK_C_FAN_OUT_H

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "listener.h"
#include "lock.h"
#include "plenxsdk/plenx_manager.h"

namespace PlenxC {

/// Any thread may call Add and Remove. The library calls the other functions, one at a time.
class FanOut final : public DistributedFs::PLENXServiceObserver {
public:
    /// The first call registers this observer with the library, and so waits for a notification
    /// that is being delivered. It may throw, and then nothing has changed.
    void Add(const std::shared_ptr<Listener>& listener);
    void Remove(const Listener& listener) noexcept;

    int SendLocalMessage(DistributedFs::PLENXMessageType type, unsigned int length,
                         const std::string& message) override;
    int NotifyConnect(DistributedFs::ServiceType service, const std::string& group) override;
    int NotifyDisconnect(DistributedFs::ServiceType service, const std::string& group) override;
    int NotifyReconnect(DistributedFs::ServiceType service, const std::string& group) override;
    int QueryLinkStatus(DistributedFs::ServiceType service, const std::string& group,
                        unsigned int link, std::int32_t& status) override;
    int NotifyStatus(DistributedFs::ServiceType service, const std::string& group,
                     unsigned int kind, bool value) override;
    int NotifyError(int code) override;
    int NotifyDiskName(const std::string& name) override;

private:
    // The numbers rise in the order in which the listeners were opened.
    using Entry = std::pair<std::uint64_t, std::shared_ptr<Listener>>;

    void RegisterOnce();
    std::shared_ptr<Listener> After(std::uint64_t& number) noexcept;
    int Tell(plenx_event& notification);

    Mutex registration_;  // locked before the library's own locks
    bool registered_ = false;
    Mutex mutex_;  // guards the members below; held for moments only
    std::vector<Entry> entries_;
    std::uint64_t last_ = 0;
};

}  // namespace PlenxC

#endif  // PLENXSDK_C_FAN_OUT_H
