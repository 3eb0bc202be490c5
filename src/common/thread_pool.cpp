#include "common/thread_pool.h"

#include <exception>
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
    state_->tasks.clear();  // no other worker is left, and nobody appends now
    if (firstFailure) {
        std::rethrow_exception(firstFailure);
    }
}

void ThreadPool::WakeAllToStop() {
    state_->stop = true;
    // A worker that has tested the condition but does not sleep yet still holds the mutex. Locking
    // it once makes sure that no worker misses the wake-up.
    {
        const std::lock_guard<std::mutex> lock(state_->queueMutex);
    }
    state_->condition.notify_all();
}

void ThreadPool::Append(std::shared_ptr<AnyJob> job) {
    {
        const std::lock_guard<std::mutex> lock(state_->queueMutex);
        if (state_->stop) {
            throw std::runtime_error("thread pool has stopped");
        }
        state_->tasks.push_back(std::move(job));
        ++state_->enqueued;
    }
    state_->condition.notify_one();
}

void ThreadPool::Work(const std::shared_ptr<State>& state) {
    while (!state->stop) {
        std::unique_lock<std::mutex> lock(state->queueMutex);
        state->condition.wait(lock, [&] { return state->stop || !state->tasks.empty(); });
        if (state->stop) {
            return;
        }
        std::shared_ptr<AnyJob> job = std::move(state->tasks.front());
        state->tasks.pop_front();
        if (state->tasks.empty()) {
            state->tasks.shrink_to_fit();  // else a deque keeps the table of its peak size
        }
        lock.unlock();
        job->Run();
        // Unless somebody holds the future, what the job owns is released before the job counts as
        // done.
        job.reset();
        ++state->finished;
    }
}

}  // namespace DistributedFs
