// Reads a scenario file or the control file, which are TOML in UTF-8. The functions are pure, so
// any thread may call them.

#ifndef PLENXSERVICE_SCENARIO_READER_H
#define PLENXSERVICE_SCENARIO_READER_H

#include <string>
#include <string_view>
#include <vector>

#include "scenario.h"

namespace PlenxService {

struct Mistake {
    unsigned line = 0;
    std::string text;  // says what is wrong, and what is allowed
};

struct ReadScenario {
    Scenario scenario;              // usable only when there are no mistakes
    std::vector<Mistake> mistakes;  // in the order of their lines
};

/// The control file may also say "log" and "scenario".
enum class FileKind { kScenario, kControl };

ReadScenario ReadScenarioText(std::string_view text, FileKind kind = FileKind::kScenario);

/// "FILE:LINE: TEXT"
std::string Located(const std::string& file, const Mistake& mistake);

}  // namespace PlenxService

#endif  // PLENXSERVICE_SCENARIO_READER_H
