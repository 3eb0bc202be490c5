#include "common/thread_pool.h"

#include <algorithm>
#include <exception>
#include <new>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace DistributedFs {

ThreadPool::ThreadPool(unsigned threadCount) {
    workers.reserve(threadCount);
    try {
        for (unsigned i = 0; i != threadCount; ++i) {
            workers.emplace_back(&ThreadPool::Work, state_);
        }
    } catch (...) {
        // The vector's destructor must not find joinable threads.
        WakeAllToStop();
        for (std::thread& worker : workers) {
            worker.join();
        }
        throw;
    }
}

ThreadPool::~ThreadPool() noexcept(false) {
    WakeAllToStop();
    std::exception_ptr firstFailure;
    for (std::thread& worker : workers) {
        try {
            worker.join();
        } catch (const std::system_error&) {
            if (!firstFailure) {
                firstFailure = std::current_exception();
            }
            worker.detach();
        }
    }
    state_->queue->tasks.clear();  // no other worker is left, and nobody appends now
    if (firstFailure) {
        std::rethrow_exception(firstFailure);
    }
}

void ThreadPool::WakeAllToStop() {
    state_->stop = true;
    // A worker that has tested the condition but does not sleep yet still holds the mutex. Locking
    // it once makes sure that no worker misses the wake-up.
    {
        const std::lock_guard<SlimMutex> lock(state_->queueMutex);
    }
    state_->condition.notify_all();
}

void ThreadPool::Append(Task task) {
    {
        const std::lock_guard<SlimMutex> lock(state_->queueMutex);
        if (state_->stop) {
            throw std::runtime_error("thread pool has stopped");
        }
        Queue& queue = *state_->queue;
        queue.tasks.push_back(std::move(task));
        queue.longest = std::max(queue.longest, queue.tasks.size());
        state_->enqueued.store(state_->enqueued.load(std::memory_order_relaxed) + 1,
                               std::memory_order_release);
    }
    state_->condition.notify_one();
}

// An emptied queue keeps memory for the most tasks that it ever held. A worker frees it when there
// is nothing else to do, and without the lock, because that may take long.
void ThreadPool::GiveBackMemory(State& state, std::unique_lock<SlimMutex>& lock) {
    constexpr std::size_t kLong = 1024;
    if (state.queue->longest <= kLong) {
        return;
    }
    try {
        auto emptied = std::make_unique<Queue>();  // even an empty one allocates
        emptied.swap(state.queue);
        lock.unlock();
        emptied.reset();
        lock.lock();
    } catch (const std::bad_alloc&) {
        // The worker tries again when the queue is empty the next time.
    }
}

void ThreadPool::Work(const std::shared_ptr<State>& state) {
    std::uint64_t ended = 0;  // jobs that `finished` does not count yet
    while (!state->stop) {
        Task task;
        {
            std::unique_lock<SlimMutex> lock(state->queueMutex);
            if (state->queue->tasks.empty()) {
                GiveBackMemory(*state, lock);
            }
            state->finished += std::exchange(ended, 0);
            state->condition.wait(lock,
                                  [&] { return state->stop || !state->queue->tasks.empty(); });
            if (state->stop) {
                return;
            }
            task = std::move(state->queue->tasks.front());
            state->queue->tasks.pop_front();
        }
        task();
        task = Task();  // releases what the job owns before the job counts as done
        ++ended;
    }
}

}  // namespace DistributedFs
