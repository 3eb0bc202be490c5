#include "subscription.h"

#include "result.h"
#include "thread_state.h"

namespace PlenxC {
namespace {

class InsideObserver {
public:
    InsideObserver() noexcept { ++PlenxThreadStateOfCaller()->callbacks; }
    ~InsideObserver() { --PlenxThreadStateOfCaller()->callbacks; }
    InsideObserver(const InsideObserver&) = delete;
    InsideObserver& operator=(const InsideObserver&) = delete;
};

// Calls the function if it is wanted.
template <class Function, class... Arguments>
std::int32_t CallIf(Function function, void* user, Arguments... arguments) {
    return function != nullptr ? function(user, arguments...) : 0;
}

}  // namespace

bool IsInsideObserver() noexcept {
    return PlenxThreadStateOfCaller()->callbacks != 0;
}

void RefuseInsideObserver() {
    if (IsInsideObserver()) {
        throw Refusal{PLENX_E_DEADLOCK, "the call",
                      "was made inside a function of an observer, where it would wait for ever"};
    }
}

std::int32_t Subscription::Take(plenx_event& notification) {
    const std::lock_guard<Mutex> lock(calls_);
    if (closed_) {
        return 0;
    }
    const InsideObserver inside;
    return Call(notification);
}

void Subscription::Close() {
    const std::lock_guard<Mutex> lock(calls_);
    closed_ = true;
}

std::int32_t Subscription::Call(plenx_event& event) const {
    const plenx_observer& to = observer_;
    switch (event.kind) {
    case PLENX_EVENT_MESSAGE:
        return CallIf(to.send_local_message, to.user, event.type, event.msg_len, event.text,
                      event.text_length);
    case PLENX_EVENT_CONNECT:
        return CallIf(to.notify_connect, to.user, event.service, event.text, event.text_length);
    case PLENX_EVENT_DISCONNECT:
        return CallIf(to.notify_disconnect, to.user, event.service, event.text, event.text_length);
    case PLENX_EVENT_RECONNECT:
        return CallIf(to.notify_reconnect, to.user, event.service, event.text, event.text_length);
    case PLENX_EVENT_LINK_QUERY:
        return CallIf(to.query_link_status, to.user, event.service, event.text, event.text_length,
                      static_cast<std::uint32_t>(event.type), &event.value);
    case PLENX_EVENT_STATUS:
        return CallIf(to.notify_status, to.user, event.service, event.text, event.text_length,
                      static_cast<std::uint32_t>(event.type), event.value);
    case PLENX_EVENT_ERROR:
        return CallIf(to.notify_error, to.user, event.value);
    case PLENX_EVENT_DISK_NAME:
        return CallIf(to.notify_disk_name, to.user, event.text, event.text_length);
    default:
        return 0;
    }
}

}  // namespace PlenxC
