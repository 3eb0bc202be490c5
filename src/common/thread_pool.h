// ThreadPool: a fixed number of workers that run queued jobs first in, first out.
//
// Any thread may enqueue. Jobs run without the pool's lock. Destroying the pool waits
// for the jobs that are running and discards the others unrun; their futures then report
// a broken promise.

#ifndef PLENXSDK_COMMON_THREAD_POOL_H
#define PLENXSDK_COMMON_THREAD_POOL_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <future>
#include <memory>
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
    /// Starts threadCount workers; with 0 jobs are accepted and never run.
    /// @throws std::system_error when a thread cannot be started.
    explicit ThreadPool(unsigned threadCount);

    /// @throws std::system_error when a worker cannot be joined, above all when this
    ///         runs on a worker; that worker then ends by itself.
    ~ThreadPool() noexcept(false);

    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;

    /// Queues a call of function with decayed copies of the arguments. The future holds
    /// its result or exception; dropping the future does not wait.
    /// @throws std::runtime_error "thread pool has stopped" once destruction has begun.
    template <class Function, class... Arguments>
    auto Enqueue(Function&& function, Arguments&&... arguments) {
        using Stored = std::tuple<std::decay_t<Function>, std::decay_t<Arguments>...>;
        auto call = [stored = Stored(std::forward<Function>(function),
                                     std::forward<Arguments>(arguments)...)]() mutable {
            return std::apply(
                [](auto& storedFunction, auto&... storedArguments) {
                    return std::invoke(storedFunction, storedArguments...);
                },
                stored);
        };
        using Result = std::invoke_result_t<decltype(call)&>;
        auto task = std::make_shared<std::packaged_task<Result()>>(std::move(call));
        auto future = task->get_future();
        Append(Task(std::move(task)));
        return future;
    }

    /// True when every job that was queued has been run to its end. Takes no lock, so it
    /// also answers while the process is ending.
    bool IsIdle() const noexcept {
        const std::uint64_t finished = state_->finished;  // first: it never overtakes the other
        return finished == state_->enqueued;
    }

private:
    // Any callable without arguments and result, by its shared pointer. Unlike std::function it
    // needs no allocation for that, and cannot be copied.
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

    // Shared with the workers, so that one that could not be joined never touches freed
    // memory.
    struct State {
        std::atomic<bool> stop{false};
        SlimMutex queueMutex;
        SlimCondition condition;
        std::deque<Task> tasks;
        std::size_t longest = 0;                 // tasks, since its memory was last given back
        std::atomic<std::uint64_t> enqueued{0};  // changed under queueMutex only
        std::atomic<std::uint64_t> finished{0};
    };

    static void Work(const std::shared_ptr<State>& state);
    static void GiveBackMemory(State& state);
    void Append(Task task);
    void WakeAllToStop();

    const std::shared_ptr<State> state_ = std::make_shared<State>();
    std::vector<std::thread> workers;
};

}  // namespace DistributedFs

#endif  // PLENXSDK_COMMON_THREAD_POOL_H
