// A time limit for the whole run. When the time is over, the run is told to end. If the run does
// not end, because it waits in the library or for input, the process is ended.

#ifndef PLENXKIT_HOST_RUN_LIMIT_H
#define PLENXKIT_HOST_RUN_LIMIT_H

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace PlenxHost {

class RunLimit {
public:
    /// onExpiry is called on a thread of its own. With 0 there is no limit.
    RunLimit(std::chrono::milliseconds limit, std::function<void()> onExpiry);
    ~RunLimit();
    RunLimit(const RunLimit&) = delete;
    RunLimit& operator=(const RunLimit&) = delete;

    bool Expired() const;

private:
    void Watch(std::chrono::steady_clock::time_point deadline);
    /// @return whether the run is over by then
    bool OverBy(std::chrono::steady_clock::time_point time);

    const std::function<void()> onExpiry_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    bool over_ = false;
    bool expired_ = false;
    std::thread thread_;
};

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_RUN_LIMIT_H
