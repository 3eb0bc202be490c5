// Plays one scenario to one host.

#ifndef PLENXKIT_SCENARIO_RUN_H
#define PLENXKIT_SCENARIO_RUN_H

#include <string>

#include "scenario/ready_scenarios.h"
#include "scenario/report.h"
#include "scenario/stage.h"

namespace PlenxScenario {

struct RunOptions {
    StageOptions stage;
    std::string host;     // a command; empty for plenxkit host with the scenario's script
    double seconds = 60;  // for the host
    bool strict = false;  // fails when a table was not played
};

/// @throws UsageError when it cannot be run at all.
Result RunScenario(const ReadyScenario& scenario, const RunOptions& options);

}  // namespace PlenxScenario

#endif  // PLENXKIT_SCENARIO_RUN_H
