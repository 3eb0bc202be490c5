// A worker that runs out of memory.

#include <gtest/gtest.h>

#include <future>
#include <optional>

#include "../counted_allocations.h"
#include "common/thread_pool.h"

namespace {

// The queue gives its memory back when the last one of many jobs is taken.
TEST(ThreadPoolMemory, NoneForAnEmptyQueue_RunsTheLastJobAllTheSame) {
    DistributedFs::ThreadPool pool(1);
    std::promise<void> allQueued;
    std::optional<FailingAllocation> failing;
    int ran = 0;
    pool.Enqueue([&] {
        allQueued.get_future().wait();
        failing.emplace(1);
    });
    for (int i = 0; i != 1100; ++i) {
        pool.Enqueue([&ran] { ++ran; });
    }
    std::future<bool> failed = pool.Enqueue([&failing] { return failing->End(); });
    allQueued.set_value();
    EXPECT_TRUE(failed.get());
    EXPECT_EQ(ran, 1100);
}

}  // namespace
