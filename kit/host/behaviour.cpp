#include "host/behaviour.h"

namespace PlenxHost {

Reaction Behaviour::Next() {
    const std::lock_guard<std::mutex> lock(mutex_);
    const Reaction now = reaction_;
    reaction_.throws = false;
    return now;
}

void Behaviour::Wait(std::chrono::milliseconds delay) {
    const auto deadline = std::chrono::steady_clock::now() + delay;
    std::unique_lock<std::mutex> lock(mutex_);
    ended_.wait_until(lock, deadline, [&] { return noDelays_; });
}

void Behaviour::EndDelays() {
    const std::lock_guard<std::mutex> lock(mutex_);
    noDelays_ = true;
    ended_.notify_all();
}

}  // namespace PlenxHost
