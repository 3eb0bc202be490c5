#include "system/recording_observer.h"

#include <algorithm>
#include <utility>

#include "support/wait.h"

namespace PlenxTest {

void RecordingObserver::Behave(Behaviour behaviour) {
    const std::lock_guard<std::mutex> lock(mutex_);
    behaviour_ = std::move(behaviour);
}

template <class Condition>
std::vector<std::string> RecordingObserver::Texts(Condition condition) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::vector<std::string> texts;
    for (const Call& call : calls_) {
        if (condition(call)) {
            texts.push_back(call.text);
        }
    }
    return texts;
}

std::vector<std::string> RecordingObserver::Calls() const {
    return Texts([](const Call&) { return true; });
}

std::vector<std::string> RecordingObserver::CallsOn(DWORD thread) const {
    return Texts([=](const Call& call) { return call.thread == thread; });
}

std::vector<std::string> RecordingObserver::CallsNotOn(DWORD thread) const {
    return Texts([=](const Call& call) { return call.thread != thread; });
}

bool RecordingObserver::WaitFor(const std::string& call, int times, DWORD milliseconds) const {
    return PlenxTest::WaitFor(
        [&] {
            const std::vector<std::string> calls = Calls();
            return std::count(calls.begin(), calls.end(), call) >= times;
        },
        milliseconds);
}

int RecordingObserver::Take(const std::string& call) {
    Behaviour behaviour;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        calls_.push_back({call, GetCurrentThreadId()});
        behaviour = behaviour_;
    }
    return behaviour ? behaviour(call) : 0;
}

}  // namespace PlenxTest
