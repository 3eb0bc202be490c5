// Owners for the handles of the service code. Each closing function and each invalid value is named
// only here.

#ifndef PLENXSDK_SERVICE_HANDLES_H
#define PLENXSDK_SERVICE_HANDLES_H

#include <windows.h>

#include <io.h>

#include <cstdint>
#include <utility>

namespace DistributedFs {

template <class Traits>
class UniqueHandle {
public:
    using Handle = typename Traits::Handle;

    explicit UniqueHandle(Handle handle = Traits::Invalid()) noexcept : handle_(handle) {}
    ~UniqueHandle() { Close(); }
    UniqueHandle(UniqueHandle&& other) noexcept
        : handle_(std::exchange(other.handle_, Traits::Invalid())) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        if (this != &other) {
            Close();
            handle_ = std::exchange(other.handle_, Traits::Invalid());
        }
        return *this;
    }

    explicit operator bool() const noexcept { return handle_ != Traits::Invalid(); }
    Handle Get() const noexcept { return handle_; }

private:
    void Close() noexcept {
        if (handle_ != Traits::Invalid()) {
            Traits::Close(handle_);
        }
    }

    Handle handle_;
};

struct ServiceHandleTraits {
    using Handle = SC_HANDLE;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle handle) noexcept { CloseServiceHandle(handle); }
};
using ServiceHandle = UniqueHandle<ServiceHandleTraits>;  // a service, or the manager

struct ProcessHandleTraits {
    using Handle = HANDLE;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle handle) noexcept { CloseHandle(handle); }
};
using ProcessHandle = UniqueHandle<ProcessHandleTraits>;

struct ListingHandleTraits {
    using Handle = std::intptr_t;
    static Handle Invalid() noexcept { return -1; }
    static void Close(Handle handle) noexcept { _findclose(handle); }
};
using ListingHandle = UniqueHandle<ListingHandleTraits>;

}  // namespace DistributedFs

#endif  // PLENXSDK_SERVICE_HANDLES_H
