// A ThreadPool has a fixed number of workers that run queued jobs first in, first out.
//
// Any thread may enqueue. Jobs run without the pool's lock. Destroying the pool waits for the jobs
// that are running and discards the others; their futures then report a broken promise.

#ifndef PLENXSDK_COMMON_THREAD_POOL_H
#define PLENXSDK_COMMON_THREAD_POOL_H

#include <atomic>
#include <condition_variable>
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
        using Call = std::tuple<std::decay_t<Function>, std::decay_t<Arguments>...>;
        using Result = std::invoke_result_t<std::decay_t<Function>&, std::decay_t<Arguments>&...>;
        auto job = std::make_shared<Job<Result>>(
            [call = Call(std::forward<Function>(function),
                         std::forward<Arguments>(arguments)...)]() mutable -> Result {
                return std::apply([](auto&... parts) -> Result { return std::invoke(parts...); },
                                  call);
            });
        auto future = job->task.get_future();
        Append(std::move(job));
        return future;
    }

    /// Returns true when every job that was queued has run to its end. It takes no lock, so it also
    /// works while the process is ending.
    bool IsIdle() const noexcept {
        const std::uint64_t finished = state_->finished;  // read first: it never overtakes enqueued
        return finished == state_->enqueued;
    }

private:
    class AnyJob {  // a queued call
    public:
        virtual ~AnyJob() = default;
        virtual void Run() = 0;
    };

    template <class Result>
    class Job : public AnyJob {
    public:
        template <class Call>
        // NOLINTNEXTLINE(bugprone-forwarding-reference-overload): only the pool makes jobs.
        explicit Job(Call&& call) : task(std::forward<Call>(call)) {}
        void Run() override { task(); }

        std::packaged_task<Result()> task;
    };

    // The workers share this, so that one that could not be joined never touches freed memory.
    struct State {
        std::atomic<bool> stop{false};
        std::mutex queueMutex;
        std::condition_variable condition;
        std::deque<std::shared_ptr<AnyJob>> tasks;
        std::atomic<std::uint64_t> enqueued{0};
        std::atomic<std::uint64_t> finished{0};
    };

    static void Work(const std::shared_ptr<State>& state);
    void Append(std::shared_ptr<AnyJob> job);
    void WakeAllToStop();

    const std::shared_ptr<State> state_ = std::make_shared<State>();
    std::vector<std::thread> workers;
};

}  // namespace DistributedFs

#endif  // PLENXSDK_COMMON_THREAD_POOL_H
