// An event of a queue: one block with the struct that the host sees and its text behind.

#ifndef PLENXSDK_C_EVENT_H
#define PLENXSDK_C_EVENT_H

#include "plenxsdk/plenx.h"

namespace PlenxC {

struct Event {
    Event* next = nullptr;  // in a queue
    plenx_event shown{};

    /// A copy of the notification and its text; null when there is no memory for it.
    static Event* CopyOf(const plenx_event& notification) noexcept;

    /// Takes back what CopyOf has given.
    static void Free(Event* event) noexcept;

    /// The event that the host knows by that address.
    static Event* Behind(const plenx_event* shown) noexcept;
};

}  // namespace PlenxC

#endif  // PLENXSDK_C_EVENT_H
