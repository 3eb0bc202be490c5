// What came of the runs, for people, for programs and for build servers.

#ifndef PLENXSCENARIO_REPORT_H
#define PLENXSCENARIO_REPORT_H

#include <string>
#include <vector>

namespace PlenxScenario {

struct Result {
    std::string name;
    std::string title;
    std::string reason;  // of the failure; empty: passed
    double seconds = 0;
    std::string logFolder;
    std::vector<std::string> observed;

    bool Passed() const { return reason.empty(); }
};

/// "ok    slow-answers                1.4 s", or "FAIL" with the reason.
std::string LineOf(const Result& result);
/// "20 passed, 1 failed"
std::string SummaryOf(const std::vector<Result>& results);

std::string JsonOf(const std::vector<Result>& results);
std::string JunitOf(const std::vector<Result>& results);

}  // namespace PlenxScenario

#endif  // PLENXSCENARIO_REPORT_H
