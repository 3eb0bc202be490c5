// Tests threads that cannot be started, and threads that cannot be joined.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
#include <system_error>
#include <vector>

#include "../failing_threads.h"
#include "common/thread_pool.h"
#include "wait_until.h"

using DistributedFs::ThreadPool;
using testing::ElementsAre;
using testing::SizeIs;

namespace {

class ThreadPoolStart : public testing::TestWithParam<int> {};

TEST_P(ThreadPoolStart, FailureOfAThreadRaisesSystemErrorAndEndsThoseThatRunAlready) {
    const int good = GetParam();
    FailingThreads::SetStartsLeft(good);
    EXPECT_THROW(ThreadPool pool(4), std::system_error);
    EXPECT_THAT(FailingThreads::Started(), SizeIs(good));
    EXPECT_EQ(FailingThreads::Ended(), good);
}

INSTANTIATE_TEST_SUITE_P(NthThread, ThreadPoolStart, testing::Values(0, 1, 2, 3));

TEST(ThreadPoolStart, AllThreadsAreStartedByTheConstructor) {
    ThreadPool pool(4);
    EXPECT_THAT(FailingThreads::Started(), SizeIs(4));
}

// Matches a join of the thread that gave this result.
auto JoinOf(pthread_t thread, int result) {
    return testing::AllOf(testing::Field(&FailingThreads::Join::thread, thread),
                          testing::Field(&FailingThreads::Join::result, result));
}

TEST(ThreadPoolEnd, JoinsTheWorkersInTheirOrderAndRaisesTheFirstErrorAfterTheLast) {
    auto* const pool = new ThreadPool(3);
    const std::vector<pthread_t> workers = FailingThreads::Started();
    ASSERT_THAT(workers, SizeIs(3));
    FailingThreads::RefuseJoins({EINVAL, ESRCH});
    try {
        delete pool;
        ADD_FAILURE() << "no error was raised";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::invalid_argument);
    }
    EXPECT_THAT(
        FailingThreads::Joins(),
        ElementsAre(JoinOf(workers[0], EINVAL), JoinOf(workers[1], ESRCH), JoinOf(workers[2], 0)));
    // The two that were not joined end by themselves.
    EXPECT_TRUE(WaitUntil([] { return FailingThreads::Ended() == 3; }));
}

}  // namespace
