#include "handle_table.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace PlenxC {
namespace {

constexpr std::uint32_t kResting = UINT32_MAX;  // every generation was used
constexpr unsigned kSlotBits = 32;

static_assert(sizeof(void*) == sizeof(std::uint64_t), "a slot and a generation fit into a pointer");

}  // namespace

void* HandleTable::Add(std::shared_ptr<Listener> listener) {
    const std::lock_guard<Mutex> lock(mutex_);
    auto slot = std::find_if(slots_.begin(), slots_.end(), [](const Slot& each) {
        return !each.listener && each.generation != kResting;
    });
    if (slot == slots_.end()) {
        slot = slots_.insert(slots_.end(), Slot());
    }
    slot->listener = std::move(listener);
    const auto number = static_cast<std::uint64_t>(slot - slots_.begin());
    const std::uint64_t handle = static_cast<std::uint64_t>(slot->generation) << kSlotBits | number;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): nobody follows this pointer.
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(handle));
}

std::shared_ptr<Listener> HandleTable::Find(const void* handle) noexcept {
    const std::lock_guard<Mutex> lock(mutex_);
    const Slot* const slot = SlotOf(handle);
    return slot != nullptr ? slot->listener : nullptr;
}

std::shared_ptr<Listener> HandleTable::Remove(const void* handle) noexcept {
    const std::lock_guard<Mutex> lock(mutex_);
    Slot* const slot = SlotOf(handle);
    if (slot == nullptr) {
        return nullptr;
    }
    ++slot->generation;
    return std::move(slot->listener);
}

HandleTable::Slot* HandleTable::SlotOf(const void* handle) noexcept {
    const std::uint64_t value = reinterpret_cast<std::uintptr_t>(handle);
    const auto number = static_cast<std::uint32_t>(value);
    const auto generation = static_cast<std::uint32_t>(value >> kSlotBits);
    if (number >= slots_.size()) {
        return nullptr;
    }
    Slot& slot = slots_[number];
    return slot.generation == generation && slot.listener ? &slot : nullptr;
}

}  // namespace PlenxC
