// Reads from the logs of a run which notifications the host got, and why the run failed. All
// functions are pure.

#ifndef PLENXKIT_SCENARIO_HOST_LOG_H
#define PLENXKIT_SCENARIO_HOST_LOG_H

#include <optional>
#include <string>
#include <vector>

namespace PlenxScenario {

struct Ending {
    std::optional<unsigned long> exitCode;  // empty when the runner had to end it
    bool ownHost = false;                   // the host is not plenxkit host
    double deadline = 0;                    // seconds
};

/// The notifications in the output of plenxkit host, each as one line.
std::vector<std::string> ObservedIn(const std::string& hostOutput);

/// Returns an empty text when nothing went wrong.
std::string ReasonOfFailure(const Ending& ending, const std::string& hostOutput,
                            const std::string& serviceLog);

}  // namespace PlenxScenario

#endif  // PLENXKIT_SCENARIO_HOST_LOG_H
