#include "soak/observers.h"

#include <windows.h>

#include <cstdlib>
#include <stdexcept>

namespace PlenxSoak {

using namespace DistributedFs;

namespace {

constexpr std::size_t kPrefixLength = sizeof(kGroupPrefix) - 1;

bool IsOutcome(const std::string& group, unsigned kind) {
    return kind <= kStatusDeviceOffline && group.compare(0, kPrefixLength, kGroupPrefix) == 0;
}

const char* KindName(unsigned kind) {
    constexpr const char* kNames[] = {"start", "stop", "online", "offline"};
    return kNames[kind];
}

}  // namespace

int BookKeeper::Count(const std::string& notification) {
    if (inside_.fetch_add(1) != 0) {
        complaints_.Add("two notifications overlap");
    }
    tally_.Count("notifications", notification);
    inside_.fetch_sub(1);
    return 0;
}

// A line begins with the notification's name and a parenthesis.
int BookKeeper::Take(const std::string& call) {
    return Count(call.substr(0, call.find('(')));
}

int BookKeeper::NotifyStatus(ServiceType service, const std::string& group, unsigned int kind,
                             bool value) {
    if (!IsOutcome(group, kind)) {
        return Count("NotifyStatus");
    }
    tally_.Count("outcomes", std::string(KindName(kind)) + " " + std::to_string(service) + " " +
                                 (value ? "true" : "false"));
    const auto thread = std::strtoul(group.c_str() + kPrefixLength, nullptr, 10);
    if (thread >= books_.size() || !books_[thread].Take({service, group, kind})) {
        complaints_.Add("an outcome that nobody waits for: service " + std::to_string(service) +
                        ", group " + group.substr(0, 40) + ", kind " + std::to_string(kind));
    }
    return 0;
}

// A notification may make these calls, which lead to no further notifications.
int Guest::Misbehave() {
    if (hasLeft_) {
        complaints_.Add("an observer was called after it was unregistered");
    }
    PLENXManager& manager = PLENXManager::GetInstance();
    switch (dice_.Below(12)) {
    case 0:
        Sleep(static_cast<DWORD>(dice_.Below(5)));
        return 0;
    case 1:
        return -1;
    case 2:
        manager.GetInt64Config(kPhoneService, kServiceNotRunningConfig);
        return 0;
    case 3:
        manager.SetConfig(kCombinedService, kIntegerConfig0,
                          static_cast<std::int64_t>(dice_.Bits()));
        return 1;
    case 4:
        manager.GetStringConfig(kPcService, kLocaleConfig);
        return 0;
    default:
        return 0;
    }
}

int Guest::Take(const std::string&) {
    if (dice_.OneIn(16)) {
        throw std::runtime_error("a guest throws");
    }
    return Misbehave();
}

std::int32_t Guest::AnswerLink(unsigned int) {
    return static_cast<std::int32_t>(dice_.Bits());
}

// On the worker, an exception would take the rest of the job with it, outcomes included.
int Guest::NotifyStatus(ServiceType, const std::string&, unsigned int, bool) {
    return Misbehave();
}

}  // namespace PlenxSoak
