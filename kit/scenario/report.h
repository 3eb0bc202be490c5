// Reports the results of the runs to people, to programs and to build servers.

#ifndef PLENXKIT_SCENARIO_REPORT_H
#define PLENXKIT_SCENARIO_REPORT_H

#include <string>
#include <vector>

#include "scenario/played.h"

namespace PlenxScenario {

struct Result {
    std::string name;
    std::string title;
    std::string reason;  // of the failure; empty when it passed
    double seconds = 0;
    std::string logFolder;
    std::vector<std::string> observed;
    std::size_t tables = 0;  // the number of tables in the scenario
    std::vector<Table> notPlayed;

    bool Passed() const { return reason.empty(); }
};

/// "ok    slow-answers                1.4 s", or "FAIL" with the reason. A pass
/// names the tables that were not played.
std::string LineOf(const Result& result);
/// "20 passed, 1 failed", and how many passed without having been played in full.
std::string SummaryOf(const std::vector<Result>& results);

std::string JsonOf(const std::vector<Result>& results);
std::string JunitOf(const std::vector<Result>& results);

}  // namespace PlenxScenario

#endif  // PLENXKIT_SCENARIO_REPORT_H
