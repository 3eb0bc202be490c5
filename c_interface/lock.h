// Mutex and Condition. On Windows they use the system's own locks, which wake a thread several
// times faster than those of the C++ run time. These locks also need no destruction, which at the
// end of the process would wait for threads that are gone. Elsewhere they are the standard ones.

#ifndef PLENXSDK_C_LOCK_H
#define PLENXSDK_C_LOCK_H

#ifdef _WIN32
#include <windows.h>
#else
#include <chrono>
#include <condition_variable>
#endif
#include <cstdint>
#include <mutex>

namespace PlenxC {

constexpr std::uint32_t kForEver = UINT32_MAX;

#ifdef _WIN32

static_assert(kForEver == INFINITE);

/// A mutex that a thread must not lock twice.
class Mutex {
public:
    Mutex() = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void lock() noexcept { AcquireSRWLockExclusive(&lock_); }
    void unlock() noexcept { ReleaseSRWLockExclusive(&lock_); }

private:
    friend class Condition;
    SRWLOCK lock_ = SRWLOCK_INIT;
};

class Condition {
public:
    Condition() = default;
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;

    void WakeOne() noexcept { WakeConditionVariable(&variable_); }
    void WakeAll() noexcept { WakeAllConditionVariable(&variable_); }

    /// Returns when the condition holds or the time is up.
    template <class Holds>
    void Wait(std::unique_lock<Mutex>& lock, std::uint32_t milliseconds, Holds holds) {
        const ULONGLONG start = milliseconds == kForEver ? 0 : GetTickCount64();
        DWORD left = milliseconds;
        while (!holds() && left != 0) {
            SleepConditionVariableSRW(&variable_, &lock.mutex()->lock_, left, 0);
            if (milliseconds != kForEver) {
                const ULONGLONG passed = GetTickCount64() - start;
                left = passed < milliseconds ? static_cast<DWORD>(milliseconds - passed) : 0;
            }
        }
    }

private:
    CONDITION_VARIABLE variable_ = CONDITION_VARIABLE_INIT;
};

#else

using Mutex = std::mutex;

class Condition {
public:
    void WakeOne() noexcept { variable_.notify_one(); }
    void WakeAll() noexcept { variable_.notify_all(); }

    template <class Holds>
    void Wait(std::unique_lock<Mutex>& lock, std::uint32_t milliseconds, Holds holds) {
        if (milliseconds == kForEver) {
            variable_.wait(lock, holds);
        } else if (milliseconds != 0) {
            variable_.wait_for(lock, std::chrono::milliseconds(milliseconds), holds);
        }
    }

private:
    std::condition_variable variable_;
};

#endif

}  // namespace PlenxC

#endif  // PLENXSDK_C_LOCK_H
