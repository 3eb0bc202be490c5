#include "facade/lock_watch.h"

#include <dlfcn.h>
#include <pthread.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace {

using MutexFunction = int (*)(pthread_mutex_t*);

constexpr std::size_t kMostNames = 8;
constexpr std::size_t kMostHeld = 16;

// The lock function runs inside allocators and before main, so everything that it uses is plain and
// of fixed size.
struct Named {
    std::atomic<const void*> mutex{nullptr};
    std::atomic<std::size_t> count{0};
    std::array<std::atomic<bool>, kMostNames> lockedUnderIt{};
};
std::array<Named, kMostNames> named;
std::array<std::string, kMostNames> names;
std::size_t namesUsed = 0;

// The thread that names a mutex looks for it in this range.
thread_local const void* searchBegin = nullptr;
thread_local const void* searchEnd = nullptr;
thread_local const void* searchFound = nullptr;

thread_local std::array<std::size_t, kMostHeld> held;
thread_local std::size_t heldCount = 0;

std::size_t IndexOf(const void* mutex) {
    for (std::size_t i = 0; i != kMostNames; ++i) {
        if (named[i].mutex.load(std::memory_order_relaxed) == mutex) {
            return i;
        }
    }
    return kMostNames;
}

void TakeDownLock(const void* mutex) {
    if (searchFound == nullptr && mutex >= searchBegin && mutex < searchEnd) {
        searchFound = mutex;
    }
    const std::size_t index = IndexOf(mutex);
    if (index == kMostNames) {
        return;
    }
    ++named[index].count;
    for (std::size_t i = 0; i != heldCount; ++i) {
        named[held[i]].lockedUnderIt[index] = true;
    }
    if (heldCount != kMostHeld) {
        held[heldCount++] = index;
    }
}

void TakeDownUnlock(const void* mutex) {
    const std::size_t index = IndexOf(mutex);
    auto* const end = held.data() + heldCount;
    auto* const found = std::find(held.data(), end, index);
    if (found != end) {
        std::copy(found + 1, end, found);
        --heldCount;
    }
}

MutexFunction Original(const char* name) {
    return reinterpret_cast<MutexFunction>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" int pthread_mutex_lock(pthread_mutex_t* mutex) {
    static const MutexFunction original = Original("pthread_mutex_lock");
    const int result = original(mutex);
    if (result == 0) {
        TakeDownLock(mutex);
    }
    return result;
}

extern "C" int pthread_mutex_unlock(pthread_mutex_t* mutex) {
    static const MutexFunction original = Original("pthread_mutex_unlock");
    TakeDownUnlock(mutex);
    return original(mutex);
}

namespace LockWatch {

void Name(const std::string& name, const void* object, std::size_t size,
          const std::function<void()>& action) {
    searchBegin = object;
    searchEnd = static_cast<const std::byte*>(object) + size;
    searchFound = nullptr;
    action();
    const void* const found = std::exchange(searchFound, nullptr);
    searchBegin = searchEnd = nullptr;
    names.at(namesUsed) = name;
    named.at(namesUsed).mutex = found;
    ++namesUsed;
}

std::set<std::string> Nestings() {
    std::set<std::string> nestings;
    for (std::size_t outer = 0; outer != namesUsed; ++outer) {
        for (std::size_t inner = 0; inner != namesUsed; ++inner) {
            if (named[outer].lockedUnderIt[inner]) {
                nestings.insert(names[outer] + " > " + names[inner]);
            }
        }
    }
    return nestings;
}

std::string Held() {
    std::string text;
    for (std::size_t i = 0; i != heldCount; ++i) {
        text += (text.empty() ? "" : " > ") + names.at(held.at(i));
    }
    return text;
}

std::size_t Count(const std::string& name) {
    const auto found = std::find(names.begin(), names.begin() + namesUsed, name);
    return named.at(static_cast<std::size_t>(found - names.begin())).count;
}

}  // namespace LockWatch
