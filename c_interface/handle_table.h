// The handles of the listeners. A handle is a slot and the slot's generation, cast to a pointer; a
// slot gets a new generation with each use, and rests when it has had all of them. So a handle is
// never used again, and one that was closed or made up is told apart from all others.

#ifndef PLENXSDK_C_HANDLE_TABLE_H
#define PLENXSDK_C_HANDLE_TABLE_H

#include <cstdint>
#include <memory>
#include <vector>

#include "listener.h"
#include "lock.h"

namespace PlenxC {

/// Any thread may call.
class HandleTable {
public:
    /// May throw; then nothing has happened.
    void* Add(std::shared_ptr<Listener> listener);

    /// Null when the handle stands for none. What comes out lives until the caller lets go of it.
    std::shared_ptr<Listener> Find(const void* handle) noexcept;

    /// The same, and the handle is worth nothing from now on.
    std::shared_ptr<Listener> Remove(const void* handle) noexcept;

private:
    struct Slot {
        std::uint32_t generation = 1;  // of its present or next use
        std::shared_ptr<Listener> listener;
    };

    Slot* SlotOf(const void* handle) noexcept;

    Mutex mutex_;
    std::vector<Slot> slots_;
};

}  // namespace PlenxC

#endif  // PLENXSDK_C_HANDLE_TABLE_H
