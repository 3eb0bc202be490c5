// A listener receives the notifications. It is a queue or a subscription.

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

    /// Takes a notification, whose text is valid during the call only. It may change the value of a
    /// link query, which is the answer to it. Calls never overlap. It returns 0 when it has handled
    /// the notification.
    virtual std::int32_t Take(plenx_event& notification) = 0;

    const Kind kind;
};

}  // namespace PlenxC

#endif  // PLENXSDK_C_LISTENER_H
