// Reads the page on scenarios, and what the observer gets in a run.

#ifndef PLENXSDK_TESTS_WINDOWS_KIT_SCENARIO_PAGE_H
#define PLENXSDK_TESTS_WINDOWS_KIT_SCENARIO_PAGE_H

#include <string>
#include <vector>

namespace PlenxTest {

struct Shown {
    std::vector<std::string> lines;  // of the observer
    bool shortened = false;          // "..." stands for more of the same
};

/// Returns what the observer gets, according to the section of the scenario.
Shown ShownOnPage(const std::string& scenario);

/// Returns the observer's lines in what the runner printed.
std::vector<std::string> ObservedLines(const std::string& output);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_KIT_SCENARIO_PAGE_H
