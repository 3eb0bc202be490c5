#include "system/recording_observer.h"

#include <algorithm>
#include <utility>

#include "system/wait.h"

namespace PlenxTest {

using DistributedFs::PLENXMessageType;
using DistributedFs::ServiceType;

namespace {

std::string Text(const std::string& text) {
    return text;
}

template <class Number>
std::string Text(Number number) {
    return std::to_string(number);
}

template <class... Rest>
std::string CallText(const char* name, const Rest&... arguments) {
    std::string list;
    ((list += (list.empty() ? "" : ", ") + Text(arguments)), ...);
    return name + ("(" + list + ")");
}

}  // namespace

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

int RecordingObserver::SendLocalMessage(PLENXMessageType type, unsigned int length,
                                        const std::string& message) {
    return Take(CallText("SendLocalMessage", type, length, message));
}

int RecordingObserver::NotifyConnect(ServiceType service, const std::string& group) {
    return Take(CallText("NotifyConnect", service, group));
}

int RecordingObserver::NotifyDisconnect(ServiceType service, const std::string& group) {
    return Take(CallText("NotifyDisconnect", service, group));
}

int RecordingObserver::NotifyReconnect(ServiceType service, const std::string& group) {
    return Take(CallText("NotifyReconnect", service, group));
}

int RecordingObserver::QueryLinkStatus(ServiceType service, const std::string& group,
                                       unsigned int linkType, std::int32_t& status) {
    status = linkStatus;
    return Take(CallText("QueryLinkStatus", service, group, linkType));
}

int RecordingObserver::NotifyStatus(ServiceType service, const std::string& group,
                                    unsigned int kind, bool value) {
    return Take(CallText("NotifyStatus", service, group, kind, value));
}

int RecordingObserver::NotifyError(int code) {
    return Take(CallText("NotifyError", code));
}

int RecordingObserver::NotifyDiskName(const std::string& name) {
    return Take(CallText("NotifyDiskName", name));
}

}  // namespace PlenxTest
