// The open handles of one kind. No number is given out twice in a process, whatever the kind, so a
// handle that was closed or is of another kind is always recognised.

#ifndef PLENXSDK_FAKES_PLATFORM_HANDLE_TABLE_H
#define PLENXSDK_FAKES_PLATFORM_HANDLE_TABLE_H

#include <cstdint>
#include <map>
#include <utility>

inline std::uintptr_t lastHandleNumber = 0x100;

/// The caller must hold the platform's lock.
template <class Object>
class HandleTable {
public:
    std::uintptr_t Open(Object object) {
        lastHandleNumber += 4;
        open_.emplace(lastHandleNumber, std::move(object));
        return lastHandleNumber;
    }

    /// Returns null when the handle is not open.
    Object* Find(std::uintptr_t handle) {
        const auto found = open_.find(handle);
        return found == open_.end() ? nullptr : &found->second;
    }

    bool Close(std::uintptr_t handle) { return open_.erase(handle) == 1; }
    void CloseAll() { open_.clear(); }

    const std::map<std::uintptr_t, Object>& All() const { return open_; }

private:
    std::map<std::uintptr_t, Object> open_;
};

#endif  // PLENXSDK_FAKES_PLATFORM_HANDLE_TABLE_H
