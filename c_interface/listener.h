// One who hears the notifications: a queue or a subscription.

#ifndef PLENXSDK_C_LISTENER_H
#define PLENXSDK_C_LISTENER_H

#include <cstdint>

#include "plenxsdk/plenx.h"

namespace PlenxC {

class Listener {
public:
    enum class Kind { kQueue, kSubscription };

    explicit Listener(Kind kind) : kind(kind) {}
    virtual ~Listener() = default;
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    /// Takes a notification; its text is valid during the call. Of a link query it may change the
    /// value, which is the answer. Never called twice at once. Gives 0 when it was handled.
    virtual std::int32_t Take(plenx_event& notification) = 0;

    const Kind kind;
};

}  // namespace PlenxC

#endif  // PLENXSDK_C_LISTENER_H
