// SlimMutex and SlimCondition are the locks of a thread that waits for work.
//
// On Windows they are the system's own slim lock and condition variable. These wake a thread
// several times faster than those of the C++ run time. They also need no destruction, so nothing
// waits when a process ends with a thread asleep on them. On other systems they are the standard
// ones.

#ifndef PLENXSDK_COMMON_SLIM_LOCK_H
#define PLENXSDK_COMMON_SLIM_LOCK_H

#ifndef _WIN32
#include <condition_variable>
#endif
#include <mutex>

namespace DistributedFs {

#ifdef _WIN32

/// Works with std::lock_guard and std::unique_lock. It is not recursive.
class SlimMutex {
public:
    SlimMutex() = default;
    SlimMutex(const SlimMutex&) = delete;
    SlimMutex& operator=(const SlimMutex&) = delete;

    void lock() noexcept;
    void unlock() noexcept;

private:
    friend class SlimCondition;
    void* lock_ = nullptr;  // an SRWLOCK
};

class SlimCondition {
public:
    SlimCondition() = default;
    SlimCondition(const SlimCondition&) = delete;
    SlimCondition& operator=(const SlimCondition&) = delete;

    void notify_one() noexcept;
    void notify_all() noexcept;

    template <class Condition>
    void wait(std::unique_lock<SlimMutex>& lock, Condition condition) {
        while (!condition()) {
            Sleep(*lock.mutex());
        }
    }

private:
    void Sleep(SlimMutex& mutex) noexcept;

    void* condition_ = nullptr;  // a CONDITION_VARIABLE
};

#else

using SlimMutex = std::mutex;
using SlimCondition = std::condition_variable;

#endif

}  // namespace DistributedFs

#endif  // PLENXSDK_COMMON_SLIM_LOCK_H
