// One call of a platform function, from its entry to its return. Every fake function begins
// by making one: it keeps the platform locked, takes the call down, and lets it fail when a
// fault has been set for it.

#ifndef PLENXSDK_FAKES_PLATFORM_PLATFORM_CALL_H
#define PLENXSDK_FAKES_PLATFORM_PLATFORM_CALL_H

#include <windows.h>

#include <initializer_list>
#include <mutex>
#include <string>

#include "platform/fake_platform.h"
#include "platform/fake_scope.h"

class PlatformCall {
public:
    explicit PlatformCall(const char* function)
        : function_(function), lock_(FakePlatform::Get().Mutex()) {}

    FakePlatform& Platform() const { return FakePlatform::Get(); }

    void Record(std::initializer_list<std::string> arguments) const;

    /// The error that this call is to fail with, or 0.
    DWORD Fault() const { return Platform().Faults().Take(function_); }

    /// Runs the action, which returns an error or 0, unless a fault was set. After a failure
    /// the last error is set.
    template <class Action>
    bool Run(Action action) const {
        DWORD error = Fault();
        if (error == 0) {
            error = action();
        }
        if (error != 0) {
            SetLastError(error);
        }
        return error == 0;
    }

    /// Ends a call that closes a handle. A success may leave any last error behind; this makes
    /// sure that nobody reads an older one after it.
    void Succeed() const { SetLastError(ERROR_SUCCESS); }

    /// Stops the process: a handle was used that is not open. Real systems answer with an
    /// error at best; for a test it is never anything but a mistake of the caller.
    [[noreturn]] void RejectHandle(const void* handle) const;

private:
    const FakeScope scope_;
    const char* const function_;
    const std::lock_guard<std::recursive_mutex> lock_;
};

#endif  // PLENXSDK_FAKES_PLATFORM_PLATFORM_CALL_H
