// The one owner of a Windows handle.

#ifndef PLENXSERVICE_HANDLE_H
#define PLENXSERVICE_HANDLE_H

#include <windows.h>

#include <utility>

namespace PlenxService {

class Handle {
public:
    /// Null and INVALID_HANDLE_VALUE both mean none.
    explicit Handle(HANDLE handle = nullptr) noexcept
        : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
    Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Handle() {
        if (handle_) {
            CloseHandle(handle_);
        }
    }

    HANDLE Get() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != nullptr; }

private:
    HANDLE handle_;
};

/// An event that stays set.
inline Handle MakeEvent() {
    return Handle(CreateEventW(nullptr, TRUE, FALSE, nullptr));
}

inline bool IsSet(const Handle& event) {
    return WaitForSingleObject(event.Get(), 0) == WAIT_OBJECT_0;
}

}  // namespace PlenxService

#endif  // PLENXSERVICE_HANDLE_H
