// What a scenario file or the control file says, ready to be played: how a service answers, starts
// and stops, and which notifications it sends when. docs/kit-scenario.md describes the files. These
// are plain values.

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
    std::string service;             // empty: every service
    std::int64_t runs = kUnlimited;  // this many runs, from the first

    /// The first run is run 1.
    bool Covers(std::string_view nickname, std::int64_t run) const {
        return (service.empty() || service == nickname) && run <= runs;
    }
};

enum class Moment { kStart, kRequest, kStop };

/// [start] or [stop]. When several say the same, the first one counts.
struct LifePart {
    unsigned line = 0;  // of the table in the file, here and below
    Moment moment = Moment::kStart;
    Scope scope;
    Values values;
};

/// [[on]]. Of the steps that cover a request, the first one that is not used up counts.
struct Step {
    unsigned line = 0;
    Scope scope;
    std::optional<std::int32_t> request;  // none: every request
    std::int64_t skip = 0;
    std::int64_t times = kUnlimited;
    Values values;
};

/// [[notify]]
struct Schedule {
    unsigned line = 0;
    Scope scope;
    Moment moment = Moment::kStart;
    std::int32_t request = 0;  // if the moment is a request
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

    /// Returns whether some part covers only the first runs of a service.
    bool CountsRuns() const {
        const auto some = [](const auto& parts) {
            return std::any_of(parts.begin(), parts.end(),
                               [](const auto& part) { return part.scope.runs != kUnlimited; });
        };
        return some(life) || some(steps) || some(schedules);
    }
};

/// Returns what the service's log says when the table that begins on this line has its turn.
inline std::string TurnOfLine(unsigned line) {
    return "plays line " + std::to_string(line) + " of the scenario";
}

}  // namespace PlenxService

#endif  // PLENXSERVICE_SCENARIO_H
