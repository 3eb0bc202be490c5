#include "common/thread_pool.h"

#include <algorithm>
#include <exception>
#include <new>
#include <stdexcept>
#include <system_error>

namespace DistributedFs {

ThreadPool::ThreadPool(unsigned threadCount) {
    workers.reserve(threadCount);
    try {
        for (unsigned i = 0; i != threadCount; ++i) {
            workers.emplace_back(&ThreadPool::Work, state_);
        }
    } catch (...) {
        // Joinable threads must not meet the vector's destructor.
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
    std::deque<Task> discarded;
    {
        const std::lock_guard<SlimMutex> lock(state_->queueMutex);
        discarded.swap(state_->tasks);
    }
    discarded.clear();
    if (firstFailure) {
        std::rethrow_exception(firstFailure);
    }
}

void ThreadPool::WakeAllToStop() {
    state_->stop = true;
    // A worker that has tested the condition but is not asleep yet still holds the mutex;
    // passing through it once makes sure that no worker misses the wake-up.
    { const std::lock_guard<SlimMutex> lock(state_->queueMutex); }
    state_->condition.notify_all();
}

void ThreadPool::Append(Task task) {
    {
        const std::lock_guard<SlimMutex> lock(state_->queueMutex);
        if (state_->stop) {
            throw std::runtime_error("thread pool has stopped");
        }
        state_->tasks.push_back(std::move(task));
        state_->longest = std::max(state_->longest, state_->tasks.size());
        state_->enqueued.store(state_->enqueued.load(std::memory_order_relaxed) + 1,
                               std::memory_order_release);
    }
    state_->condition.notify_one();
}

// An emptied queue keeps the table of its blocks, as long as the queue ever was.
void ThreadPool::GiveBackMemory(State& state) {
    constexpr std::size_t kLong = 1024;
    if (!state.tasks.empty() || state.longest <= kLong) {
        return;
    }
    try {
        std::deque<Task>().swap(state.tasks);  // an empty one has memory as well
        state.longest = 0;
    } catch (const std::bad_alloc&) {
        // Tried again when the queue is empty the next time.
    }
}

void ThreadPool::Work(const std::shared_ptr<State>& state) {
    while (!state->stop) {
        Task task;
        {
            std::unique_lock<SlimMutex> lock(state->queueMutex);
            state->condition.wait(lock, [&] { return state->stop || !state->tasks.empty(); });
            if (state->stop) {
                return;
            }
            task = std::move(state->tasks.front());
            state->tasks.pop_front();
            GiveBackMemory(*state);
        }
        task();
        task = Task();  // what the job owns is released before the job counts as done
        ++state->finished;
    }
}

}  // namespace DistributedFs
