// The open handles of one kind. A number is never given out twice in a process, whatever the
// kind, so that a handle that was closed or belongs elsewhere is always known as such.

#ifndef PLENXSDK_FAKES_PLATFORM_HANDLE_TABLE_H
#define PLENXSDK_FAKES_PLATFORM_HANDLE_TABLE_H

#include <cstdint>
#include <map>
#include <utility>

inline std::uintptr_t lastHandleNumber = 0x100;

/// To be used under the platform's lock.
template <class Object>
class HandleTable {
public:
    std::uintptr_t Open(Object object) {
        lastHandleNumber += 4;
        open_.emplace(lastHandleNumber, std::move(object));
        return lastHandleNumber;
    }

    /// Null when the handle is not open.
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
