// Tests many threads at once: threads read, call, open and close while notifications come.

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "c_fixture.h"
#include "common/wait_until.h"

namespace {

constexpr int kThreads = 10;
constexpr int kRounds = 200;

void RunOnThreads(int count, const std::function<void(int)>& work) {
    std::vector<std::thread> threads;
    threads.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i != count; ++i) {
        threads.emplace_back(work, i);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST(Threads, TenReadersOfOneQueueGetEachEventOnce) {
    const OpenQueue queue(100000);
    std::atomic<int> taken{0};
    std::atomic<std::int64_t> sum{0};
    std::thread service([&] {
        for (int i = 1; i <= kThreads * kRounds; ++i) {
            CallManager(15, MessageOf({Int32Arg(i)}));
        }
        while (taken != kThreads * kRounds) {
            std::this_thread::yield();
        }
        plenx_queue_cancel(queue.Get());
    });
    RunOnThreads(kThreads, [&](int) {
        const plenx_event* event = nullptr;
        while (plenx_queue_next(queue.Get(), UINT32_MAX, &event) == 0) {
            ASSERT_NE(event, nullptr);
            EXPECT_EQ(event->lost, 0U);
            sum += event->value;
            ++taken;
            plenx_event_free(event);
        }
    });
    service.join();
    constexpr std::int64_t kLast = std::int64_t{kThreads} * kRounds;
    EXPECT_EQ(sum, kLast * (kLast + 1) / 2);
}

class ThreadsOfAHost : public ReadyFacade {};

TEST_F(ThreadsOfAHost, TenReadersAndTenCallersGetAlong) {
    const OpenQueue queue(50);
    std::atomic<int> calling{kThreads};
    RunOnThreads(2 * kThreads, [&](int number) {
        if (number % 2 == 0) {
            const plenx_event* event = nullptr;
            while (calling != 0) {
                EXPECT_EQ(plenx_queue_next(queue.Get(), 5, &event), 0);
                plenx_event_free(event);
            }
            return;
        }
        for (int i = 0; i != kRounds / 10; ++i) {
            EXPECT_EQ(plenx_start(7, PLENX_TEXT("g"), PLENX_TEXT("a")), 0);
            EXPECT_EQ(plenx_queue_set_link_status(queue.Get(), 1, PLENX_TEXT("g"),
                                                  static_cast<std::uint32_t>(number), i),
                      0);
            CallManager(13, MessageOf({StringArg("g_1"), Int32Arg(number)}));
            Connect("g");
            EXPECT_EQ(plenx_get_int64(1, 5, nullptr), PLENX_E_ARGUMENT);
            EXPECT_EQ(LastError(), "plenx_get_int64: value is null");
        }
        --calling;
    });
    WaitForJobs();
}

struct Calls {
    std::atomic<bool> allowed{true};
    std::atomic<int> count{0};
};

std::int32_t CountCall(void* user, std::uint32_t, const char*, std::size_t) {
    auto& calls = *static_cast<Calls*>(user);
    EXPECT_TRUE(calls.allowed) << "called after plenx_unobserve";
    ++calls.count;
    return 0;
}

TEST(Threads, NothingIsCalledAfterUnobserveHoweverBusyItIs) {
    std::atomic<bool> running{true};
    std::thread service([&] {
        while (running) {
            Connect("g");
        }
    });
    RunOnThreads(4, [](int) {
        for (int i = 0; i != kRounds; ++i) {
            Calls calls;
            plenx_observer observer{};
            observer.size = sizeof(observer);
            observer.user = &calls;
            observer.notify_connect = CountCall;
            plenx_subscription* subscription = nullptr;
            ASSERT_EQ(plenx_observe(&observer, &subscription), 0);
            std::this_thread::yield();
            // The other rounds may end before the first call.
            const bool called = i % 2 != 0 || WaitUntil([&] { return calls.count != 0; });
            ASSERT_EQ(plenx_unobserve(subscription), 0);
            calls.allowed = false;
            ASSERT_TRUE(called);
        }
    });
    running = false;
    service.join();
}

TEST(Threads, QueuesAreClosedUnderTheirReadersAndNotifications) {
    std::atomic<bool> running{true};
    std::thread service([&] {
        while (running) {
            Connect("g");
        }
    });
    RunOnThreads(3, [](int) {
        for (int i = 0; i != kRounds / 4; ++i) {
            plenx_queue* queue = nullptr;
            ASSERT_EQ(plenx_queue_open(3, &queue), 0);
            const auto read = [&] {
                const plenx_event* event = nullptr;
                plenx_result result = 0;
                while ((result = plenx_queue_next(queue, UINT32_MAX, &event)) == 0) {
                    plenx_event_free(event);
                }
                EXPECT_EQ(result, PLENX_E_HANDLE);
            };
            std::thread first(read);
            std::thread second(read);
            std::this_thread::yield();
            ASSERT_EQ(plenx_queue_close(queue), 0);
            first.join();
            second.join();
        }
    });
    running = false;
    service.join();
}

TEST(Threads, OneHandleIsClosedByOneOfMany) {
    for (int i = 0; i != kRounds / 4; ++i) {
        plenx_queue* queue = nullptr;
        ASSERT_EQ(plenx_queue_open(3, &queue), 0);
        std::atomic<int> closed{0};
        RunOnThreads(4, [&](int) {
            const plenx_result result = plenx_queue_close(queue);
            closed += result == 0 ? 1 : 0;
            EXPECT_TRUE(result == 0 || result == PLENX_E_HANDLE);
        });
        EXPECT_EQ(closed, 1);
    }
}

}  // namespace
