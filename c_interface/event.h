// An event of a queue is one block: the struct that the host sees, followed by its text.

#ifndef PLENXSDK_C_EVENT_H
#define PLENXSDK_C_EVENT_H

#include "plenxsdk/plenx.h"

namespace PlenxC {

struct Event {
    Event* next = nullptr;  // the next event in the queue
    plenx_event shown{};

    /// Returns a copy of the notification and its text, or null when there is no memory for it.
    static Event* CopyOf(const plenx_event& notification) noexcept;

    /// Frees an event that CopyOf has made.
    static void Free(Event* event) noexcept;

    /// Returns the event whose struct the host sees at that address.
    static Event* Behind(const plenx_event* shown) noexcept;
};

}  // namespace PlenxC

#endif  // PLENXSDK_C_EVENT_H
