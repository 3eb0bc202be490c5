// Stops all busy threads at a place where they have nothing under way, and lets them go on.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_REST_GATE_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_REST_GATE_H

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace PlenxSoak {

class RestGate {
public:
    explicit RestGate(int threads) : threads_(threads) {}

    /// A busy thread calls this between two rounds. It waits while the gate is closed.
    /// @return false when the run is over and the thread must end.
    bool Pass() {
        std::unique_lock<std::mutex> lock(mutex_);
        ++waiting_;
        changed_.notify_all();
        changed_.wait(lock, [this] { return !closed_ || over_; });
        --waiting_;
        return !over_;
    }

    /// Returns once all threads wait. @return false when one of them has not come in time.
    bool Close(std::chrono::milliseconds limit) {
        std::unique_lock<std::mutex> lock(mutex_);
        closed_ = true;
        return changed_.wait_for(lock, limit, [this] { return waiting_ == threads_; });
    }
    void Open() {
        const std::lock_guard<std::mutex> lock(mutex_);
        closed_ = false;
        changed_.notify_all();
    }
    void EndAll() {
        const std::lock_guard<std::mutex> lock(mutex_);
        over_ = true;
        changed_.notify_all();
    }

private:
    const int threads_;
    std::mutex mutex_;
    std::condition_variable changed_;
    int waiting_ = 0;
    bool closed_ = true;  // the threads wait until everything is ready
    bool over_ = false;
};

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_REST_GATE_H
