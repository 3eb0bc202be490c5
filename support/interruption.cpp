#include "support/interruption.h"

namespace PlenxSupport {

void Interruption::Raise() {
    const std::lock_guard<std::mutex> lock(mutex_);
    isRaised_ = true;
    raised_.notify_all();
#ifdef _WIN32
    SetEvent(event_.Get());
#endif
}

bool Interruption::IsRaised() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return isRaised_;
}

bool Interruption::WaitFor(std::chrono::milliseconds longest) const {
    std::unique_lock<std::mutex> lock(mutex_);
    return raised_.wait_for(lock, longest, [this] { return isRaised_; });
}

Interruption& InterruptionOfThisProcess() {
    static auto& interruption = *new Interruption;
    return interruption;
}

}  // namespace PlenxSupport
