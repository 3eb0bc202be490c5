// The layer's one observer of the library. It tells every notification to all listeners, in the
// order in which they were opened.
//
// No lock of its own is held while a listener takes a notification, so that a slow one does not
// keep others from being opened and closed.

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

/// Any thread may call Add and Remove; the library calls the rest, one at a time.
class FanOut final : public DistributedFs::PLENXServiceObserver {
public:
    /// Registers with the library, the first time. Waits for a notification that is being delivered
    /// then. All of it may throw; then nothing has happened.
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
    // The number tells the order of opening, ascending.
    using Entry = std::pair<std::uint64_t, std::shared_ptr<Listener>>;

    void RegisterOnce();
    std::shared_ptr<Listener> After(std::uint64_t& number) noexcept;
    int Tell(plenx_event& notification);

    Mutex registration_;  // before the library's own locks
    bool registered_ = false;
    Mutex mutex_;  // guards what follows, for moments only
    std::vector<Entry> entries_;
    std::uint64_t last_ = 0;
};

}  // namespace PlenxC

#endif  // PLENXSDK_C_FAN_OUT_H
