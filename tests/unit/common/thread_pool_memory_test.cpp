// Tests the memory of the queue.

#include <gtest/gtest.h>

#include <cstdint>
#include <future>
#include <optional>

#include "../counted_allocations.h"
#include "common/thread_pool.h"
#include "wait_until.h"

namespace {

using DistributedFs::ThreadPool;

constexpr int kMany = 5000;

// Queues the jobs behind one that holds the worker, so that the queue grows to their number.
template <class Job>
void QueueMany(ThreadPool& pool, Job job) {
    std::promise<void> allQueued;
    pool.Enqueue([queued = allQueued.get_future().share()] { queued.wait(); });
    for (int i = 0; i != kMany; ++i) {
        pool.Enqueue(job);
    }
    allQueued.set_value();
}

void WaitUntilIdle(const ThreadPool& pool) {
    ASSERT_TRUE(WaitUntil([&pool] { return pool.IsIdle(); }));
}

TEST(ThreadPoolMemory, OfManyJobsIsGivenBack) {
    ThreadPool pool(1);
    pool.Enqueue([] {}).wait();
    WaitUntilIdle(pool);
    const std::int64_t before = LiveBytes();
    QueueMany(pool, [] {});
    WaitUntilIdle(pool);
    EXPECT_LE(LiveBytes(), before);
}

TEST(ThreadPoolMemory, RunningOutWhileTheEmptyQueueShrinks_LeavesTheWorkerRunning) {
    ThreadPool pool(1);
    std::optional<FailingAllocation> failing;
    int ran = 0;
    QueueMany(pool, [&] {
        if (++ran == kMany - 1) {
            failing.emplace(1);  // the last job leaves the queue empty
        }
    });
    WaitUntilIdle(pool);
    EXPECT_TRUE(pool.Enqueue([&failing] { return failing->End(); }).get());
    EXPECT_EQ(ran, kMany);
}

}  // namespace
