#include "fan_out.h"

#include <algorithm>

namespace PlenxC {
namespace {

plenx_event Plain(std::uint32_t kind) {
    plenx_event event{};
    event.size = sizeof(event);
    event.kind = kind;
    event.text = "";
    return event;
}

// The event refers to the text and does not copy it.
plenx_event About(std::uint32_t kind, const std::string& text) {
    plenx_event event = Plain(kind);
    event.text = text.c_str();
    event.text_length = text.size();
    return event;
}

plenx_event About(std::uint32_t kind, DistributedFs::ServiceType service,
                  const std::string& group) {
    plenx_event event = About(kind, group);
    event.service = service;
    return event;
}

}  // namespace

void FanOut::Add(const std::shared_ptr<Listener>& listener) {
    RegisterOnce();
    const std::lock_guard<Mutex> lock(mutex_);
    entries_.emplace_back(last_ + 1, listener);
    ++last_;
}

void FanOut::Remove(const Listener& listener) noexcept {
    std::shared_ptr<Listener> removed;  // destroyed after the lock is released
    const std::lock_guard<Mutex> lock(mutex_);
    const auto place = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
        return entry.second.get() == &listener;
    });
    if (place != entries_.end()) {
        removed = std::move(place->second);
        entries_.erase(place);
    }
}

int FanOut::SendLocalMessage(DistributedFs::PLENXMessageType type, unsigned int length,
                             const std::string& message) {
    plenx_event event = About(PLENX_EVENT_MESSAGE, message);
    event.type = type;
    event.msg_len = length;
    return Tell(event);
}

int FanOut::NotifyConnect(DistributedFs::ServiceType service, const std::string& group) {
    plenx_event event = About(PLENX_EVENT_CONNECT, service, group);
    return Tell(event);
}

int FanOut::NotifyDisconnect(DistributedFs::ServiceType service, const std::string& group) {
    plenx_event event = About(PLENX_EVENT_DISCONNECT, service, group);
    return Tell(event);
}

int FanOut::NotifyReconnect(DistributedFs::ServiceType service, const std::string& group) {
    plenx_event event = About(PLENX_EVENT_RECONNECT, service, group);
    return Tell(event);
}

int FanOut::QueryLinkStatus(DistributedFs::ServiceType service, const std::string& group,
                            unsigned int link, std::int32_t& status) {
    plenx_event event = About(PLENX_EVENT_LINK_QUERY, service, group);
    event.type = static_cast<std::int32_t>(link);
    event.value = status;
    const int code = Tell(event);
    status = event.value;
    return code;
}

int FanOut::NotifyStatus(DistributedFs::ServiceType service, const std::string& group,
                         unsigned int kind, bool value) {
    plenx_event event = About(PLENX_EVENT_STATUS, service, group);
    event.type = static_cast<std::int32_t>(kind);
    event.value = value ? 1 : 0;
    return Tell(event);
}

int FanOut::NotifyError(int code) {
    plenx_event event = Plain(PLENX_EVENT_ERROR);
    event.value = code;
    return Tell(event);
}

int FanOut::NotifyDiskName(const std::string& name) {
    plenx_event event = About(PLENX_EVENT_DISK_NAME, name);
    return Tell(event);
}

void FanOut::RegisterOnce() {
    const std::lock_guard<Mutex> lock(registration_);
    if (!registered_) {
        DistributedFs::PLENXManager::GetInstance().RegisterPLENXServiceObserver(this);
        registered_ = true;
    }
}

// Returns the first listener with a higher number and sets number to its own; returns null when
// there is no such listener.
std::shared_ptr<Listener> FanOut::After(std::uint64_t& number) noexcept {
    const std::lock_guard<Mutex> lock(mutex_);
    const auto next = std::find_if(entries_.begin(), entries_.end(),
                                   [&](const Entry& entry) { return entry.first > number; });
    if (next == entries_.end()) {
        return nullptr;
    }
    number = next->first;
    return next->second;
}

// Returns the first code other than 0.
int FanOut::Tell(plenx_event& notification) {
    int first = 0;
    std::uint64_t number = 0;
    while (const std::shared_ptr<Listener> listener = After(number)) {
        const int code = listener->Take(notification);
        first = first != 0 ? first : code;
    }
    return first;
}

}  // namespace PlenxC
