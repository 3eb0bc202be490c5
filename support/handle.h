// The owners of Windows handles.

#ifndef PLENXSUPPORT_HANDLE_H
#define PLENXSUPPORT_HANDLE_H

#include <windows.h>

#include <utility>

namespace PlenxSupport {

/// Null and INVALID_HANDLE_VALUE both mean that there is no handle. Close(handle) closes it.
template <class Raw, class Close>
class HandleOwner {
public:
    explicit HandleOwner(Raw handle = nullptr) noexcept
        : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
    HandleOwner(HandleOwner&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    HandleOwner& operator=(HandleOwner&& other) noexcept {
        HandleOwner old(std::exchange(handle_, std::exchange(other.handle_, nullptr)));
        return *this;
    }
    ~HandleOwner() { Reset(); }

    Raw Get() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != nullptr; }
    /// Closes it now.
    void Reset() noexcept {
        if (handle_) {
            Close()(std::exchange(handle_, nullptr));
        }
    }

private:
    Raw handle_;
};

struct HandleCloser {
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
using Handle = HandleOwner<HANDLE, HandleCloser>;

struct ServiceHandleCloser {
    void operator()(SC_HANDLE handle) const noexcept { CloseServiceHandle(handle); }
};
using ServiceHandle = HandleOwner<SC_HANDLE, ServiceHandleCloser>;

struct ModuleCloser {
    void operator()(HMODULE module) const noexcept { FreeLibrary(module); }
};
using Module = HandleOwner<HMODULE, ModuleCloser>;

/// Returns an event that stays set. Every process that names it gets the same one.
inline Handle MakeEvent(const wchar_t* name = nullptr) {
    return Handle(CreateEventW(nullptr, TRUE, FALSE, name));
}

inline bool IsSet(const Handle& event) {
    return WaitForSingleObject(event.Get(), 0) == WAIT_OBJECT_0;
}

}  // namespace PlenxSupport

#endif  // PLENXSUPPORT_HANDLE_H
