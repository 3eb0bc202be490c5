// One call of a platform function, from its entry to its return. Every fake function begins by
// making one. It keeps the platform locked, records the call, and makes it fail when a fault has
// been set for it.

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

    /// Returns the error that this call must fail with, or 0.
    DWORD Fault() const { return Platform().Faults().Take(function_); }

    /// Runs the action unless a fault was set. The action returns an error or 0. After a failure
    /// this sets the last error.
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

    /// Ends a call that closes a handle. On Windows a success may leave any last error behind, so
    /// this clears it: a product that reads an older error afterwards fails its test.
    void Succeed() const { SetLastError(ERROR_SUCCESS); }

    /// Stops the process because the caller used a handle that is not open. A real system returns
    /// an error at best; in a test this is always a mistake of the caller.
    [[noreturn]] void RejectHandle(const void* handle) const;

private:
    const FakeScope scope_;
    const char* const function_;
    const std::lock_guard<std::recursive_mutex> lock_;
};

#endif  // PLENXSDK_FAKES_PLATFORM_PLATFORM_CALL_H
