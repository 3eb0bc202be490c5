// The handles of the listeners. A handle is the number of a slot and the slot's generation, cast to
// a pointer. A slot gets a new generation with each use, and is retired when it has had all of
// them. So the value of a handle is never used again, and the table recognises a handle that was
// closed or made up.

#ifndef PLENXSDK_C_HANDLE_TABLE_H
#define PLENXSDK_C_HANDLE_TABLE_H

#include <cstdint>
#include <memory>
#include <vector>

#include "listener.h"
#include "lock.h"

namespace PlenxC {

/// Any thread may call these functions.
class HandleTable {
public:
    /// Adds a listener and returns its handle. It may throw, and then nothing has changed.
    void* Add(std::shared_ptr<Listener> listener);

    /// Returns the listener of the handle, or null when it has none. The listener lives at least
    /// until the caller releases it.
    std::shared_ptr<Listener> Find(const void* handle) noexcept;

    /// Does the same, and makes the handle invalid from now on.
    std::shared_ptr<Listener> Remove(const void* handle) noexcept;

private:
    struct Slot {
        std::uint32_t generation = 1;  // of its present use, or of its next one
        std::shared_ptr<Listener> listener;
    };

    Slot* SlotOf(const void* handle) noexcept;

    Mutex mutex_;
    std::vector<Slot> slots_;
};

}  // namespace PlenxC

#endif  // PLENXSDK_C_HANDLE_TABLE_H
