// Finds in the services' log which tables of a scenario had their turn in a run. A host that never
// calls DeviceNameChanged passes a scenario that depends on it, and its developer must learn of it.
// All functions are pure.

#ifndef PLENXKIT_SCENARIO_PLAYED_H
#define PLENXKIT_SCENARIO_PLAYED_H

#include <string>
#include <vector>

#include "scenario.h"

namespace PlenxScenario {

struct Table {
    unsigned line = 0;
    std::string what;  // "[[notify]] on NameChanged (pc)"
};

/// All tables of the scenario.
std::vector<Table> TablesOf(const PlenxService::Scenario& scenario);

/// Returns the tables that never had their turn.
std::vector<Table> NotPlayed(const std::vector<Table>& tables, const std::string& serviceLog);

/// "2 of 3 tables not played: [[on]] DeviceOnline (pc), lines 7 and 12". Empty when all were
/// played.
std::string TextOfNotPlayed(const std::vector<Table>& notPlayed, std::size_t all);

}  // namespace PlenxScenario

#endif  // PLENXKIT_SCENARIO_PLAYED_H
