#include "host/prompt_state.h"

#include <algorithm>

#include "host/arguments.h"
#include "host/script_parser.h"
#include "host/text.h"
#include "plenxsdk/plenx_manager.h"

namespace PlenxHost {
namespace {

constexpr std::size_t kLongestGroup = 20;

std::string NameOfService(std::int64_t service) {
    constexpr const char* kNames[] = {"office", "pc", "phone"};
    return service >= 0 && service < 3 ? kNames[service] : std::to_string(service);
}

std::string ShortGroup(const std::string& group) {
    return Printable(group.size() <= kLongestGroup ? group
                                                   : group.substr(0, kLongestGroup) + "...");
}

}  // namespace

void PromptState::Saw(const CommandReport& report) {
    const bool starts = report.name == "start";
    if (report.name == "init") {
        initialised_ = initialised_ || !report.outcome.held;
    }
    // The library drops a call before init, so no notification will come.
    if (!initialised_ || report.outcome.number != 0 || (!starts && report.name != "stop")) {
        return;
    }
    const std::vector<Word> words = SplitWords(report.text).words;
    const std::uint32_t service = ServiceTypeOf(words[1]);
    const std::string group = TextOf(words[2]);
    const std::int64_t kind = starts ? DistributedFs::kStatusStart : DistributedFs::kStatusStop;
    if (service == DistributedFs::kCombinedService) {
        Await({DistributedFs::kPcService, group, kind});
        Await({DistributedFs::kOfficeService, group, kind});
    } else if (service < DistributedFs::kCombinedService) {
        Await({service, group, kind});
    }
}

void PromptState::Saw(const NotificationReport& report) {
    const Notification& notification = report.notification;
    // The library tells each observer, but only one of them counts.
    if (notification.name != "NotifyStatus" || notification.observer != "main") {
        return;
    }
    const auto service = std::get<std::int64_t>(notification.fields[0].value);
    const auto kind = std::get<std::int64_t>(notification.fields[2].value);
    if (service < DistributedFs::kCombinedService && kind <= DistributedFs::kStatusStop) {
        Change({service, std::get<std::string>(notification.fields[1].value), kind}, -1);
    }
}

void PromptState::Change(const Outcome& outcome, int by) {
    int& count = awaited_[outcome];
    count = std::max(count + by, -1);
    if (count == 0) {
        awaited_.erase(outcome);
    }
}

std::string PromptState::Prompt() const {
    int pending = 0;
    std::string what;
    for (const auto& [outcome, count] : awaited_) {
        if (count > 0) {
            const auto& [service, group, kind] = outcome;
            pending += count;
            what = std::string(kind == DistributedFs::kStatusStart ? "start " : "stop ") +
                   NameOfService(service) + " " + ShortGroup(group);
        }
    }
    switch (pending) {
    case 0:
        return "plenx> ";
    case 1:
        return "plenx (" + what + ")> ";
    default:
        return "plenx (" + std::to_string(pending) + " pending)> ";
    }
}

}  // namespace PlenxHost
