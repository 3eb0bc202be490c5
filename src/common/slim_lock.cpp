#include "common/slim_lock.h"

#ifdef _WIN32

#include <windows.h>

namespace DistributedFs {
namespace {

// The header avoids windows.h and its macros. Both locks are one pointer that is null at first.
static_assert(sizeof(SRWLOCK) == sizeof(void*) && sizeof(CONDITION_VARIABLE) == sizeof(void*));

SRWLOCK* Lock(void*& lock) noexcept {
    return reinterpret_cast<SRWLOCK*>(&lock);
}

CONDITION_VARIABLE* Variable(void*& condition) noexcept {
    return reinterpret_cast<CONDITION_VARIABLE*>(&condition);
}

}  // namespace

void SlimMutex::lock() noexcept {
    AcquireSRWLockExclusive(Lock(lock_));
}

void SlimMutex::unlock() noexcept {
    ReleaseSRWLockExclusive(Lock(lock_));
}

void SlimCondition::notify_one() noexcept {
    WakeConditionVariable(Variable(condition_));
}

void SlimCondition::notify_all() noexcept {
    WakeAllConditionVariable(Variable(condition_));
}

void SlimCondition::Sleep(SlimMutex& mutex) noexcept {
    SleepConditionVariableSRW(Variable(condition_), Lock(mutex.lock_), INFINITE, 0);
}

}  // namespace DistributedFs

#endif
