// What a scenario file or the control file says, ready to be played: how a service answers, starts
// and stops, and what it notifies when. docs/kit-scenario.md describes the files. Plain values.

#ifndef PLENXSERVICE_SCENARIO_H
#define PLENXSERVICE_SCENARIO_H

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "notification.h"
#include "values.h"

namespace PlenxService {

constexpr std::int64_t kUnlimited = std::numeric_limits<std::int64_t>::max();

/// Which service a part of the scenario is about, and in which of its runs.
struct Scope {
    std::string service;             // empty: each
    std::int64_t runs = kUnlimited;  // the first so many

    /// run: 1 for the first.
    bool Covers(std::string_view nickname, std::int64_t run) const {
        return (service.empty() || service == nickname) && run <= runs;
    }
};

enum class Moment { kStart, kRequest, kStop };

/// [start] or [stop]: of several that say the same, the first one counts.
struct LifePart {
    unsigned line = 0;  // of the table in the file, here and below
    Moment moment = Moment::kStart;
    Scope scope;
    Values values;
};

/// [[on]]: of the steps that cover a request, the first one that is not used up counts.
struct Step {
    unsigned line = 0;
    Scope scope;
    std::optional<std::int32_t> request;  // none: each
    std::int64_t skip = 0;
    std::int64_t times = kUnlimited;
    Values values;
};

/// [[notify]]
struct Schedule {
    unsigned line = 0;
    Scope scope;
    Moment moment = Moment::kStart;
    std::int32_t request = 0;  // when the moment is one
    std::int64_t after = 0;    // milliseconds
    std::int64_t every = 0;
    std::int64_t times = 1;
    Notification notification;
    bool hostile = false;  // all hostile notifications, instead of the one
};

struct Scenario {
    std::string title;
    std::string about;
    std::string log;    // of the control file alone: where the service's lines go as well
    std::string below;  // of the control file alone: the scenario that it leaves the rest to
    std::vector<LifePart> life;
    std::vector<Step> steps;
    std::vector<Schedule> schedules;

    /// Some part is about the first runs of a service alone.
    bool CountsRuns() const {
        const auto some = [](const auto& parts) {
            return std::any_of(parts.begin(), parts.end(),
                               [](const auto& part) { return part.scope.runs != kUnlimited; });
        };
        return some(life) || some(steps) || some(schedules);
    }
};

/// What the service's log says when the table that begins in this line has its turn.
inline std::string TurnOfLine(unsigned line) {
    return "plays line " + std::to_string(line) + " of the scenario";
}

}  // namespace PlenxService

#endif  // PLENXSERVICE_SCENARIO_H
