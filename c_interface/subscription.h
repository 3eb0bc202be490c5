// A subscription calls the functions of one observer.

#ifndef PLENXSDK_C_SUBSCRIPTION_H
#define PLENXSDK_C_SUBSCRIPTION_H

#include "listener.h"
#include "lock.h"

namespace PlenxC {

/// Returns true while a function of an observer runs on the calling thread.
bool IsInsideObserver() noexcept;
/// Throws a refusal in that case, because the call would wait for ever.
void RefuseInsideObserver();

class Subscription final : public Listener {
public:
    static constexpr Kind kKind = Kind::kSubscription;

    explicit Subscription(const plenx_observer& observer) : Listener(kKind), observer_(observer) {}

    std::int32_t Take(plenx_event& notification) override;

    /// Waits until no function is running. Afterwards none will be called.
    void Close();

private:
    std::int32_t Call(plenx_event& notification) const;

    const plenx_observer observer_;
    Mutex calls_;  // held while a function runs
    bool closed_ = false;
};

}  // namespace PlenxC

#endif  // PLENXSDK_C_SUBSCRIPTION_H
