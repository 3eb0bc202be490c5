// Tests a thread that cannot be started. The pthread_create of this program fails on demand.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <deque>
#include <system_error>

#include "common/thread_pool.h"

namespace {

std::atomic<int> startsLeft{-1};  // all succeed when it is negative
std::atomic<int> started{0};
std::atomic<int> ended{0};

struct Run {
    void* (*function)(void*);
    void* argument;
};
std::deque<Run> runs;  // they stay where they are

void* RunAndCount(void* argument) {
    const Run& run = *static_cast<const Run*>(argument);
    void* const result = run.function(run.argument);
    ++ended;
    return result;
}

}  // namespace

using Create = int(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);

// A sanitizer that is linked into the program must learn of each thread, and this is its own name
// for the function that this program replaces.
extern "C" __attribute__((weak)) Create __interceptor_pthread_create;  // NOLINT(*-identifier*)

extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                              void* (*run)(void*), void* argument) noexcept {
    static Create* const real = __interceptor_pthread_create != nullptr
                                    ? __interceptor_pthread_create
                                    : reinterpret_cast<Create*>(dlsym(RTLD_NEXT, "pthread_create"));
    if (startsLeft == 0) {
        return EAGAIN;
    }
    if (startsLeft > 0) {
        --startsLeft;
    }
    ++started;
    return real(thread, attributes, RunAndCount, &runs.emplace_back(Run{run, argument}));
}

namespace {

class ThreadPoolStart : public testing::TestWithParam<int> {};

TEST_P(ThreadPoolStart, FailureOfAThreadRaisesSystemErrorAndEndsThoseThatRunAlready) {
    startsLeft = GetParam();
    started = 0;
    ended = 0;
    EXPECT_THROW(DistributedFs::ThreadPool pool(4), std::system_error);
    startsLeft = -1;
    EXPECT_EQ(started, GetParam());
    EXPECT_EQ(ended, GetParam());
}

INSTANTIATE_TEST_SUITE_P(NthThread, ThreadPoolStart, testing::Values(0, 1, 2, 3));

TEST(ThreadPoolStart, AllThreadsAreStartedByTheConstructor) {
    started = 0;
    DistributedFs::ThreadPool pool(4);
    EXPECT_EQ(started, 4);
}

}  // namespace
