// A ThreadPool has a fixed number of workers that run queued jobs first in, first out.
//
// Any thread may enqueue. Jobs run without the pool's lock. Destroying the pool waits for the jobs
// that are running and discards the others; their futures then report a broken promise.

#ifndef PLENXSDK_COMMON_THREAD_POOL_H
#define PLENXSDK_COMMON_THREAD_POOL_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <memory_resource>
#include <mutex>
#include <thread>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "common/slim_lock.h"

namespace DistributedFs {

class ThreadPool {
public:
    /// Starts threadCount workers. With 0 workers the pool accepts jobs and never runs them.
    /// @throws std::system_error when a thread cannot be started.
    explicit ThreadPool(unsigned threadCount);

    /// @throws std::system_error when a worker cannot be joined, for example because this runs on
    ///         that worker; the worker then ends by itself.
    ~ThreadPool() noexcept(false);

    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;

    /// Queues a call of function with decayed copies of the arguments. The future holds
    /// its result or exception; dropping the future does not wait.
    /// @throws std::runtime_error "thread pool has stopped" once destruction has begun.
    template <class Function, class... Arguments>
    auto Enqueue(Function&& function, Arguments&&... arguments) {
        using Bound = Job<std::decay_t<Function>, std::decay_t<Arguments>...>;
        auto job = std::make_shared<Bound>(std::forward<Function>(function),
                                           std::forward<Arguments>(arguments)...);
        auto future = job->GetFuture();
        Append(Task(std::move(job)));
        return future;
    }

    /// Returns true when every job that was queued has run to its end. It takes no lock, so it also
    /// works while the process is ending.
    bool IsIdle() const noexcept {
        const std::uint64_t finished = state_->finished;  // first: it never overtakes enqueued
        return finished == state_->enqueued;
    }

private:
    // A packaged task and the call that it makes. The call is built in its final place, so neither
    // the function nor an argument is moved after it has been copied.
    template <class Function, class... Arguments>
    class Job {
    public:
        using Result = std::invoke_result_t<Function&, Arguments&...>;

        template <class... Given>
        explicit Job(Given&&... given)
            : call_(std::forward<Given>(given)...), task_([this] { return Call(); }) {}
        Job(const Job&) = delete;
        Job& operator=(const Job&) = delete;

        std::future<Result> GetFuture() { return task_.get_future(); }
        void operator()() { task_(); }

    private:
        Result Call() {
            return std::apply(
                [](Function& function, Arguments&... arguments) -> Result {
                    return std::invoke(function, arguments...);
                },
                call_);
        }

        std::tuple<Function, Arguments...> call_;
        std::packaged_task<Result()> task_;
    };

    // A shared pointer to any callable without arguments and result. Unlike std::function it needs
    // no allocation for that, and it cannot be copied.
    class Task {
    public:
        Task() noexcept = default;
        template <class Callable>
        explicit Task(std::shared_ptr<Callable> callable) noexcept
            : callable_(std::move(callable)),
              run_([](void* target) { (*static_cast<Callable*>(target))(); }) {}
        Task(Task&&) noexcept = default;
        Task& operator=(Task&&) noexcept = default;

        /// @throws std::bad_function_call when there is nothing to run.
        void operator()() const {
            if (!callable_) {
                throw std::bad_function_call();
            }
            run_(callable_.get());
        }

    private:
        std::shared_ptr<void> callable_;
        void (*run_)(void*) = nullptr;
    };

    // The waiting tasks. The queue keeps its memory for later tasks.
    struct Queue {
        std::pmr::unsynchronized_pool_resource memory;
        std::pmr::deque<Task> tasks{&memory};
        std::size_t longest = 0;  // the most tasks that it ever held
    };

    // The workers share this, so that one that could not be joined never touches freed memory.
    struct State {
        std::atomic<bool> stop{false};
        SlimMutex queueMutex;
        SlimCondition condition;
        std::unique_ptr<Queue> queue = std::make_unique<Queue>();
        std::atomic<std::uint64_t> enqueued{0};  // only changes under queueMutex
        std::atomic<std::uint64_t> finished{0};
    };

    static void Work(const std::shared_ptr<State>& state);
    static void GiveBackMemory(State& state, std::unique_lock<SlimMutex>& lock);
    void Append(Task task);
    void WakeAllToStop();

    const std::shared_ptr<State> state_ = std::make_shared<State>();
    std::vector<std::thread> workers;
};

}  // namespace DistributedFs

#endif  // PLENXSDK_COMMON_THREAD_POOL_H
