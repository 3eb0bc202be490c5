#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iomanip>

#include "scenario/command.h"
#include "scenario/ready_scenarios.h"
#include "scenario/report.h"
#include "scenario/run.h"
#include "text_file.h"

namespace PlenxScenario {
namespace {

namespace fs = std::filesystem;

fs::path ProgramFolder() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return fs::path(path).parent_path();
}

// The ready scenarios of an installed program lie in share. Those of a program that was just built
// lie beside it.
fs::path UsualFolder(const fs::path& programFolder) {
    const fs::path shared = programFolder.parent_path() / "share" / "plenxsdk" / "scenarios";
    return fs::exists(shared) ? shared : programFolder / "scenarios";
}

fs::path UsualWork() {
    const char* const drive = std::getenv("SystemDrive");
    return fs::path(drive ? drive : "C:") / "\\plenxkit";
}

int List(const std::vector<ReadyScenario>& ready, std::ostream& out) {
    std::size_t longest = 0;
    for (const ReadyScenario& scenario : ready) {
        longest = std::max(longest, scenario.name.size());
    }
    for (const ReadyScenario& scenario : ready) {
        out << std::left << std::setw(static_cast<int>(longest + 2)) << scenario.name
            << scenario.title << "\n";
    }
    return PlenxKit::kAsExpected;
}

int Show(const ReadyScenario& scenario, std::ostream& out) {
    out << scenario.file.u8string() << "\n\n" << PlenxKit::ReadText(scenario.file);
    if (fs::exists(scenario.script)) {
        out << "\n" << scenario.script.u8string() << "\n\n" << PlenxKit::ReadText(scenario.script);
    }
    return PlenxKit::kAsExpected;
}

void Print(const Result& result, bool observed, std::ostream& out) {
    out << LineOf(result) << '\n' << std::flush;
    for (const std::string& line : result.observed) {
        if (observed) {
            out << "      " << line << "\n";
        }
    }
    if (!result.Passed()) {
        out << "      logs in " << result.logFolder << '\n' << std::flush;
    }
}

int RunAll(const std::vector<ReadyScenario>& scenarios, const Options& options,
           const fs::path& programFolder, std::ostream& out) {
    RunOptions run;
    run.host = options.host;
    run.seconds = options.seconds;
    run.strict = options.strict;
    run.stage.programs = programFolder;
    run.stage.work = options.work.empty() ? UsualWork() : fs::u8path(options.work);
    run.stage.install = fs::u8path(options.install);
    run.stage.data = fs::u8path(options.data);
    std::vector<Result> results;
    results.reserve(scenarios.size());
    bool held = true;
    for (const ReadyScenario& scenario : scenarios) {
        results.push_back(RunScenario(scenario, run));
        Print(results.back(), options.observed, out);
        held = held && results.back().Passed();
    }
    out << SummaryOf(results) << '\n' << std::flush;
    PlenxKit::WriteWanted(options.json, JsonOf(results));
    PlenxKit::WriteWanted(options.junit, JunitOf(results));
    return held ? PlenxKit::kAsExpected : PlenxKit::kFailed;
}

int RunChosen(const Options& options, const fs::path& programFolder, std::ostream& out) {
    const std::vector<ReadyScenario> ready = ReadyScenariosIn(
        options.scenarios.empty() ? UsualFolder(programFolder) : fs::u8path(options.scenarios));
    if (options.command == "list") {
        return List(ready, out);
    }
    if (options.command == "show") {
        return Show(FindScenario(ready, options.show), out);
    }
    if (options.all != options.names.empty()) {
        throw UsageError("run needs either names or --all");
    }
    std::vector<ReadyScenario> chosen;
    chosen.reserve(options.names.size());
    for (const std::string& name : options.names) {
        chosen.push_back(FindScenario(ready, name));
    }
    return RunAll(options.all ? ready : chosen, options, programFolder, out);
}

}  // namespace

int Run(const Options& options, const PlenxKit::Streams& streams) {
    return PlenxKit::Concluded("scenario", streams.err,
                               [&] { return RunChosen(options, ProgramFolder(), streams.out); });
}

}  // namespace PlenxScenario
