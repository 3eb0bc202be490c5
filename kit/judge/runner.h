// Runs checks one after the other and keeps the result of each.

#ifndef PLENXKIT_JUDGE_RUNNER_H
#define PLENXKIT_JUDGE_RUNNER_H

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "judge/run_record.h"
#include "judge/trial.h"

namespace PlenxJudge {

/// Hears of each check before it runs, and of its result.
struct Listener {
    std::function<void(const Check& check, std::size_t index)> begins;
    std::function<void(const Record& record)> ends;
};

/// Why the check is not run at all; empty when it is run.
std::string WhyNotRun(const Check& check, bool asService, bool soaks);

/// Stops at an interruption. The check that was under way is then not among the records.
std::vector<Record> RunChecks(const std::vector<const Check*>& checks, Trial& trial,
                              const std::set<std::string>& known, const Listener& listener);

}  // namespace PlenxJudge

#endif  // PLENXKIT_JUDGE_RUNNER_H
