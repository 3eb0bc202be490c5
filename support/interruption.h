// An interruption means that somebody wants the program to end, by Ctrl-C, by Ctrl-Break or by
// closing the console. A program that has something to remove first checks for it in each of its
// waits, removes everything, and ends.

#ifndef PLENXSUPPORT_INTERRUPTION_H
#define PLENXSUPPORT_INTERRUPTION_H

#include <chrono>
#include <condition_variable>
#include <mutex>

#ifdef _WIN32
#include "support/handle.h"
#endif

namespace PlenxSupport {

/// Any thread may call it. Once raised, it stays raised.
class Interruption {
public:
    void Raise();
    bool IsRaised() const;
    /// Waits for that long, or until it is raised. @return whether it is raised.
    bool WaitFor(std::chrono::milliseconds longest) const;
#ifdef _WIN32
    /// The event is set once the interruption is raised. It is for code that also waits for other
    /// handles.
    HANDLE Event() const { return event_.Get(); }
#endif

private:
    mutable std::mutex mutex_;
    mutable std::condition_variable raised_;
    bool isRaised_ = false;
#ifdef _WIN32
    const Handle event_ = MakeEvent();
#endif
};

/// It is never destroyed, because the thread that hears of an interruption may outlive everything
/// else.
Interruption& InterruptionOfThisProcess();

}  // namespace PlenxSupport

#endif  // PLENXSUPPORT_INTERRUPTION_H
