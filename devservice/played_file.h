// Says what the control file or the scenario prescribes for one service, and how much of it is used
// up. Only one thread may use it at a time.

#ifndef PLENXSERVICE_PLAYED_FILE_H
#define PLENXSERVICE_PLAYED_FILE_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "scenario.h"

namespace PlenxService {

/// The service that plays, "office", "pc" or "phone", and the number of its run, from 1.
struct Part {
    std::string nickname;
    std::int64_t run = 0;

    bool Has(const Scope& scope) const { return scope.Covers(nickname, run); }
};

class PlayedFile {
public:
    PlayedFile() = default;
    explicit PlayedFile(Scenario scenario)
        : said_(std::move(scenario)), seen_(said_.steps.size(), 0) {}

    const Scenario& Said() const { return said_; }

    /// Returns what [start] or [stop] says.
    Values Life(Moment moment, const Part& part) const;

    /// Counts the request. @return the step for it, or null when there is none.
    const Step* StepFor(std::int32_t request, const Part& part);

private:
    Scenario said_;
    std::vector<std::int64_t> seen_;  // the number of requests that each step has covered
};

}  // namespace PlenxService

#endif  // PLENXSERVICE_PLAYED_FILE_H
