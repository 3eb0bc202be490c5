// How the observers react: their answers, their delays, and whether they throw. Commands set it,
// and observers read it on the library's threads.

#ifndef PLENXKIT_HOST_BEHAVIOUR_H
#define PLENXKIT_HOST_BEHAVIOUR_H

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>

namespace PlenxHost {

struct Reaction {
    int answer = 0;
    std::optional<std::int32_t> linkStatus;  ///< When empty, the status stays as it comes.
    std::chrono::milliseconds delay{0};
    bool throws = false;  ///< It counts for one notification.
};

class Behaviour {
public:
    /// Changes the reaction: change(reaction).
    template <class Change>
    void Set(Change change) {
        const std::lock_guard<std::mutex> lock(mutex_);
        change(reaction_);
    }

    /// The reaction to the notification that has just come.
    Reaction Next();
    void Wait(std::chrono::milliseconds delay);
    /// Ends all delays, because the run is at its end.
    void EndDelays();

private:
    std::mutex mutex_;
    std::condition_variable ended_;
    Reaction reaction_;
    bool noDelays_ = false;
};

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_BEHAVIOUR_H
