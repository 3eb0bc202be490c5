#include "hostile/tally_observer.h"

#include <set>
#include <utility>

#include "hostile/expectation.h"

namespace PlenxTest {

using DistributedFs::PLENXMessageType;
using DistributedFs::ServiceType;

namespace {

std::string OfGroup(const char* name, ServiceType service, const std::string& group) {
    return std::string(name) + "(" + std::to_string(service) + ", " + Shown(group);
}

int CountIn(const Tally& tally, const std::string& call) {
    const auto found = tally.find(call);
    return found == tally.end() ? 0 : found->second;
}

}  // namespace

std::string Difference(const Tally& expected, const Tally& heard) {
    constexpr int kMost = 10;
    std::set<std::string> calls;
    for (const Tally* tally : {&expected, &heard}) {
        for (const auto& entry : *tally) {
            calls.insert(entry.first);
        }
    }
    std::string text;
    int lines = 0;
    for (const std::string& call : calls) {
        const int wanted = CountIn(expected, call);
        const int came = CountIn(heard, call);
        if (wanted != came && ++lines <= kMost) {
            text += call + ": sent " + std::to_string(wanted) + " times, heard " +
                    std::to_string(came) + " times\n";
        }
    }
    return lines > kMost ? text + "and " + std::to_string(lines - kMost) + " more\n" : text;
}

Tally TallyObserver::Heard() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return heard_;
}

int TallyObserver::Times(const std::string& call) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return CountIn(heard_, call);
}

Tally TallyObserver::TakeHeard() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return std::exchange(heard_, Tally());
}

int TallyObserver::Count(const std::string& call) {
    const std::lock_guard<std::mutex> lock(mutex_);
    ++heard_[call];
    return 0;
}

int TallyObserver::SendLocalMessage(PLENXMessageType type, unsigned int length,
                                    const std::string& message) {
    return Count("SendLocalMessage(" + std::to_string(type) + ", " + std::to_string(length) + ", " +
                 Shown(message) + ")");
}

int TallyObserver::NotifyConnect(ServiceType service, const std::string& group) {
    return Count(OfGroup("NotifyConnect", service, group) + ")");
}

int TallyObserver::NotifyDisconnect(ServiceType service, const std::string& group) {
    return Count(OfGroup("NotifyDisconnect", service, group) + ")");
}

int TallyObserver::NotifyReconnect(ServiceType service, const std::string& group) {
    return Count(OfGroup("NotifyReconnect", service, group) + ")");
}

int TallyObserver::QueryLinkStatus(ServiceType service, const std::string& group,
                                   unsigned int linkType, std::int32_t& status) {
    status = LinkStatusFor(linkType);
    return Count(OfGroup("QueryLinkStatus", service, group) + ", " + std::to_string(linkType) +
                 ")");
}

int TallyObserver::NotifyStatus(ServiceType service, const std::string& group, unsigned int kind,
                                bool value) {
    return Count(OfGroup("NotifyStatus", service, group) + ", " + std::to_string(kind) +
                 (value ? ", 1)" : ", 0)"));
}

int TallyObserver::NotifyError(int code) {
    return Count("NotifyError(" + std::to_string(code) + ")");
}

int TallyObserver::NotifyDiskName(const std::string& name) {
    return Count("NotifyDiskName(" + Shown(name) + ")");
}

}  // namespace PlenxTest
