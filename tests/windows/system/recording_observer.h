// An observer that writes down every call as a line of text and then behaves as a test tells it.
// Calls come from any thread.

#ifndef PLENXSDK_TESTS_WINDOWS_SYSTEM_RECORDING_OBSERVER_H
#define PLENXSDK_TESTS_WINDOWS_SYSTEM_RECORDING_OBSERVER_H

#include <windows.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "support/text_observer.h"

namespace PlenxTest {

class RecordingObserver : public TextObserver {
public:
    /// Runs after the observer has written the call down. Its result is the observer's. It may
    /// throw.
    using Behaviour = std::function<int(const std::string& call)>;
    void Behave(Behaviour behaviour);

    std::atomic<std::int32_t> linkStatus{0};

    /// Return all calls so far, those of one thread, and those of all others.
    std::vector<std::string> Calls() const;
    std::vector<std::string> CallsOn(DWORD thread) const;
    std::vector<std::string> CallsNotOn(DWORD thread) const;

    /// Waits until the call has come at least that often. @return false when it has not.
    bool WaitFor(const std::string& call, int times = 1, DWORD milliseconds = 15000) const;

private:
    struct Call {
        std::string text;
        DWORD thread;
    };

    int Take(const std::string& call) override;
    std::int32_t AnswerLink(unsigned int) override { return linkStatus; }

    template <class Condition>
    std::vector<std::string> Texts(Condition condition) const;

    mutable std::mutex mutex_;
    std::vector<Call> calls_;
    Behaviour behaviour_;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_SYSTEM_RECORDING_OBSERVER_H
