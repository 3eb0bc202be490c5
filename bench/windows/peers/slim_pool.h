// A pool of one worker on the system's own slim lock and condition variable: the same queue, the
// same packaged tasks, the same steps as the library's pool, and nothing besides.

#ifndef PLENXBENCH_WINDOWS_PEERS_SLIM_POOL_H
#define PLENXBENCH_WINDOWS_PEERS_SLIM_POOL_H

#include <windows.h>

#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <utility>

namespace PlenxBench {

class SlimPool {
public:
    SlimPool() : worker_(&SlimPool::Work, this) {}
    ~SlimPool() {
        Change([this] { stop_ = true; });
        worker_.join();
    }
    SlimPool(const SlimPool&) = delete;
    SlimPool& operator=(const SlimPool&) = delete;

    template <class Function>
    auto Enqueue(Function function) {
        using Result = std::invoke_result_t<Function&>;
        auto task = std::make_shared<std::packaged_task<Result()>>(std::move(function));
        auto future = task->get_future();
        Change([&] { tasks_.push_back([task = std::move(task)] { (*task)(); }); });
        return future;
    }

private:
    template <class Step>
    void Change(Step step) {
        AcquireSRWLockExclusive(&lock_);
        step();
        ReleaseSRWLockExclusive(&lock_);
        WakeConditionVariable(&changed_);
    }

    void Work() {
        while (true) {
            AcquireSRWLockExclusive(&lock_);
            while (!stop_ && tasks_.empty()) {
                SleepConditionVariableSRW(&changed_, &lock_, INFINITE, 0);
            }
            if (stop_) {
                ReleaseSRWLockExclusive(&lock_);
                return;
            }
            std::function<void()> task = std::move(tasks_.front());
            tasks_.pop_front();
            ReleaseSRWLockExclusive(&lock_);
            task();
        }
    }

    SRWLOCK lock_ = SRWLOCK_INIT;
    CONDITION_VARIABLE changed_ = CONDITION_VARIABLE_INIT;
    std::deque<std::function<void()>> tasks_;
    bool stop_ = false;
    std::thread worker_;  // last: it uses all of the above
};

}  // namespace PlenxBench

#endif  // PLENXBENCH_WINDOWS_PEERS_SLIM_POOL_H
