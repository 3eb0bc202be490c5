// One scenario, played to one host.

#ifndef PLENXSCENARIO_RUN_H
#define PLENXSCENARIO_RUN_H

#include <string>

#include "ready_scenarios.h"
#include "report.h"
#include "stage.h"

namespace PlenxScenario {

struct RunOptions {
    StageOptions stage;
    std::string host;     // a command; empty: plenxhost with the scenario's script
    double seconds = 60;  // for the host
    bool strict = false;  // what is not played fails
};

/// @throws UsageError when it cannot be run at all.
Result RunScenario(const ReadyScenario& scenario, const RunOptions& options);

}  // namespace PlenxScenario

#endif  // PLENXSCENARIO_RUN_H
