// The ready scenarios: NAME.toml, which the service plays, and NAME.plenx, the script for
// plenxkit host, side by side in one folder. Any thread may call these functions.

#ifndef PLENXKIT_SCENARIO_READY_SCENARIOS_H
#define PLENXKIT_SCENARIO_READY_SCENARIOS_H

#include <filesystem>
#include <string>
#include <vector>

#include "ending.h"
#include "scenario/played.h"

namespace PlenxScenario {

using PlenxKit::UsageError;

struct ReadyScenario {
    std::string name;
    std::string title;
    std::string about;
    std::filesystem::path file;
    std::filesystem::path script;  // may be absent
    std::vector<Table> tables;
};

/// All scenarios in the order of their names. @throws UsageError when the folder has no scenario,
/// or when one has mistakes.
std::vector<ReadyScenario> ReadyScenariosIn(const std::filesystem::path& folder);

/// Reads a file of the user's own. @throws UsageError that names its mistakes.
ReadyScenario ScenarioOfFile(const std::filesystem::path& file);

/// nameOrFile is the name of a ready scenario, or a path that ends in .toml.
/// @throws UsageError that lists the known names.
ReadyScenario FindScenario(const std::vector<ReadyScenario>& ready, const std::string& nameOrFile);

}  // namespace PlenxScenario

#endif  // PLENXKIT_SCENARIO_READY_SCENARIOS_H
