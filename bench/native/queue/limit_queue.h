// The least that a queue for one worker needs: a mutex, a condition variable, and a deque of
// functions that can be moved only. There is no packaged task and no future.

#ifndef PLENXSDK_BENCH_QUEUE_LIMIT_QUEUE_H
#define PLENXSDK_BENCH_QUEUE_LIMIT_QUEUE_H

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace bench {

class MoveOnlyFunction {
public:
    MoveOnlyFunction() = default;
    template <class Function>
    explicit MoveOnlyFunction(Function function)
        : held_(std::make_unique<Held<Function>>(std::move(function))) {}

    void operator()() { held_->Call(); }

private:
    struct Base {
        virtual ~Base() = default;
        virtual void Call() = 0;
    };
    template <class Function>
    struct Held : Base {
        explicit Held(Function held) : function(std::move(held)) {}
        void Call() override { function(); }
        Function function;
    };

    std::unique_ptr<Base> held_;
};

class LimitQueue {
public:
    ~LimitQueue() {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            stop_ = true;
        }
        condition_.notify_one();
        worker_.join();
    }
    template <class Function>
    void Post(Function function) {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            tasks_.push_back(MoveOnlyFunction(std::move(function)));
        }
        condition_.notify_one();
    }

private:
    void Work() {
        MoveOnlyFunction task;
        while (Take(task)) {
            task();
            task = MoveOnlyFunction();
        }
    }
    bool Take(MoveOnlyFunction& task) {
        std::unique_lock<std::mutex> lock(mutex_);
        condition_.wait(lock, [this] { return stop_ || !tasks_.empty(); });
        if (stop_) {
            return false;
        }
        task = std::move(tasks_.front());
        tasks_.pop_front();
        return true;
    }

    std::mutex mutex_;
    std::condition_variable condition_;
    std::deque<MoveOnlyFunction> tasks_;
    bool stop_ = false;
    std::thread worker_{[this] { Work(); }};
};

}  // namespace bench

#endif  // PLENXSDK_BENCH_QUEUE_LIMIT_QUEUE_H
