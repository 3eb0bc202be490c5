#include "scenario/ready_scenarios.h"

#include <algorithm>
#include <system_error>

#include "scenario_reader.h"
#include "text_file.h"

namespace PlenxScenario {
namespace {

namespace fs = std::filesystem;

constexpr const char* kEnding = ".toml";

}  // namespace

ReadyScenario ScenarioOfFile(const fs::path& file) {
    const PlenxService::ReadScenario read =
        PlenxService::ReadScenarioText(PlenxKit::ReadText(file));
    std::string mistakes;
    for (const PlenxService::Mistake& mistake : read.mistakes) {
        mistakes += "\n" + PlenxService::Located(file.u8string(), mistake);
    }
    if (!mistakes.empty()) {
        throw UsageError("the scenario has mistakes:" + mistakes);
    }
    fs::path script = file;
    script.replace_extension(".plenx");
    return {file.stem().u8string(), read.scenario.title,  read.scenario.about,
            fs::absolute(file),     fs::absolute(script), TablesOf(read.scenario)};
}

std::vector<ReadyScenario> ReadyScenariosIn(const fs::path& folder) {
    std::vector<ReadyScenario> all;
    std::error_code absent;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, absent)) {
        if (entry.path().extension() == kEnding) {
            all.push_back(ScenarioOfFile(entry.path()));
        }
    }
    if (all.empty()) {
        throw UsageError("there are no scenarios in " + folder.u8string() +
                         "; --scenarios names another folder");
    }
    std::sort(all.begin(), all.end(),
              [](const ReadyScenario& a, const ReadyScenario& b) { return a.name < b.name; });
    return all;
}

ReadyScenario FindScenario(const std::vector<ReadyScenario>& ready, const std::string& nameOrFile) {
    const fs::path path = fs::u8path(nameOrFile);
    if (path.extension() == kEnding) {
        return ScenarioOfFile(path);
    }
    std::string names;
    for (const ReadyScenario& scenario : ready) {
        if (scenario.name == nameOrFile) {
            return scenario;
        }
        names += " " + scenario.name;
    }
    throw UsageError("there is no scenario " + nameOrFile + "; there are" + names);
}

}  // namespace PlenxScenario
