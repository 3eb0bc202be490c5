#include "host/run_limit.h"

#include <utility>

#include "host/exit_code.h"
#include "host/platform.h"

namespace PlenxHost {
namespace {

using Clock = std::chrono::steady_clock;

// The time for the run to end by itself after it was told to end.
constexpr std::chrono::seconds kGrace(2);

}  // namespace

RunLimit::RunLimit(std::chrono::milliseconds limit, std::function<void()> onExpiry)
    : onExpiry_(std::move(onExpiry)) {
    if (limit.count() > 0) {
        thread_ = std::thread(&RunLimit::Watch, this, Clock::now() + limit);
    }
}

RunLimit::~RunLimit() {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        over_ = true;
        changed_.notify_all();
    }
    if (thread_.joinable()) {
        thread_.join();
    }
}

bool RunLimit::Expired() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return expired_;
}

void RunLimit::Watch(Clock::time_point deadline) {
    if (OverBy(deadline)) {
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        expired_ = true;
    }
    onExpiry_();
    if (!OverBy(Clock::now() + kGrace)) {
        EndProcess(kTimedOut);
    }
}

bool RunLimit::OverBy(Clock::time_point time) {
    std::unique_lock<std::mutex> lock(mutex_);
    return changed_.wait_until(lock, time, [&] { return over_; });
}

}  // namespace PlenxHost
