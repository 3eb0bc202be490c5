#include "command_line.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <iostream>

#include "ready_scenarios.h"
#include "report.h"
#include "run.h"

namespace PlenxScenario {
namespace {

namespace fs = std::filesystem;

enum ExitCode { kAllHeld = 0, kNotAllHeld = 1, kWrongUsage = 2 };

struct Options {
    std::vector<std::string> names;
    std::string show;
    bool all = false;
    bool observed = false;
    bool strict = false;
    std::string scenarios;
    std::string host;
    std::string work;
    std::string install;
    std::string data;
    std::string json;
    std::string junit;
    double seconds = 60;
};

constexpr const char* kFooter =
    "Exit codes: 0 all scenarios passed, 1 not all did, 2 wrong usage.\n"
    "The services are real ones: run it elevated, and never two at a time.";
constexpr const char* kRunFooter =
    "A host of one's own learns from the environment where it is to work: PLENX_INSTALL and\n"
    "PLENX_DATA are the folders for Init, PLENX_SCENARIO is the scenario's name. Its exit\n"
    "code decides; 0 is a pass. Its output, the library's log and the services' log stay in\n"
    "the work folder. Example:\n"
    "  plenxscenario run --all --host \"myhost.exe --selftest %PLENX_SCENARIO%\" --junit out.xml";

// Beside an installed program, or one that was just built.
fs::path UsualFolder(const fs::path& programFolder) {
    const fs::path shared = programFolder.parent_path() / "share" / "plenxsdk" / "scenarios";
    return fs::exists(shared) ? shared : programFolder / "scenarios";
}

fs::path UsualWork() {
    const char* const drive = std::getenv("SystemDrive");
    return fs::path(drive ? drive : "C:") / "\\plenxscenario";
}

void Declare(CLI::App& app, Options& options) {
    app.set_version_flag("--version", "plenxscenario " PLENXSCENARIO_VERSION);
    app.require_subcommand(1);
    app.fallthrough();
    app.add_option("--scenarios", options.scenarios, "Folder of the ready scenarios")
        ->type_name("DIR");
    app.footer(kFooter);
    app.add_subcommand("list", "List the ready scenarios");
    CLI::App& show = *app.add_subcommand("show", "Show a scenario and its script");
    show.add_option("NAME", options.show, "A ready scenario, or a .toml file")
        ->type_name("")
        ->required();
    CLI::App& run = *app.add_subcommand("run", "Play scenarios to a host");
    run.add_option("NAME", options.names, "Ready scenarios, or .toml files")->type_name("");
    run.add_flag("--all", options.all, "All ready scenarios");
    run.add_option("--host", options.host,
                   "Command of a host; without it, plenxhost runs the scenario's script")
        ->type_name("COMMAND");
    run.add_option("--install", options.install,
                   "Install folder of one's own, with the development service in it")
        ->type_name("DIR");
    run.add_option("--data", options.data, "Data folder of one's own; Init deletes its plenx*")
        ->type_name("DIR");
    run.add_option("--work", options.work, "Where runs get their folders (C:\\plenxscenario)")
        ->type_name("DIR");
    run.add_option("--timeout", options.seconds, "Longest time of one host (60)")
        ->type_name("SECONDS")
        ->check(CLI::Range(1.0, 86400.0).description(""));
    run.add_flag("--strict", options.strict, "Fail what was not played in full");
    run.add_flag("--observed", options.observed, "Show what the observer of plenxhost got");
    run.add_option("--json", options.json, "Write the results to this file, as JSON")
        ->type_name("FILE");
    run.add_option("--junit", options.junit, "Write the results to this file, for build servers")
        ->type_name("FILE");
    run.footer(kRunFooter);
}

int List(const std::vector<ReadyScenario>& ready) {
    std::size_t longest = 0;
    for (const ReadyScenario& scenario : ready) {
        longest = std::max(longest, scenario.name.size());
    }
    for (const ReadyScenario& scenario : ready) {
        std::cout << std::left << std::setw(static_cast<int>(longest + 2)) << scenario.name
                  << scenario.title << "\n";
    }
    return kAllHeld;
}

int Show(const ReadyScenario& scenario) {
    std::cout << scenario.file.u8string() << "\n\n" << ReadWhole(scenario.file);
    if (fs::exists(scenario.script)) {
        std::cout << "\n" << scenario.script.u8string() << "\n\n" << ReadWhole(scenario.script);
    }
    return kAllHeld;
}

void WriteTo(const std::string& file, const std::string& text) {
    if (file.empty()) {
        return;
    }
    std::ofstream stream(fs::u8path(file), std::ios::binary);
    stream << text;
    stream.flush();
    if (!stream) {
        throw UsageError("cannot write " + file);
    }
}

void Print(const Result& result, bool observed) {
    std::cout << LineOf(result) << std::endl;
    for (const std::string& line : result.observed) {
        if (observed) {
            std::cout << "      " << line << "\n";
        }
    }
    if (!result.Passed()) {
        std::cout << "      logs in " << result.logFolder << std::endl;
    }
}

int RunAll(const std::vector<ReadyScenario>& scenarios, const Options& options,
           const fs::path& programFolder) {
    RunOptions run;
    run.host = options.host;
    run.seconds = options.seconds;
    run.strict = options.strict;
    run.stage.programs = programFolder;
    run.stage.work = options.work.empty() ? UsualWork() : fs::u8path(options.work);
    run.stage.install = fs::u8path(options.install);
    run.stage.data = fs::u8path(options.data);
    std::vector<Result> results;
    bool held = true;
    for (const ReadyScenario& scenario : scenarios) {
        results.push_back(RunScenario(scenario, run));
        Print(results.back(), options.observed);
        held = held && results.back().Passed();
    }
    std::cout << SummaryOf(results) << std::endl;
    WriteTo(options.json, JsonOf(results));
    WriteTo(options.junit, JunitOf(results));
    return held ? kAllHeld : kNotAllHeld;
}

int RunCommand(const std::string& command, const Options& options, const fs::path& programFolder) {
    const std::vector<ReadyScenario> ready = ReadyScenariosIn(
        options.scenarios.empty() ? UsualFolder(programFolder) : fs::u8path(options.scenarios));
    if (command == "list") {
        return List(ready);
    }
    if (command == "show") {
        return Show(FindScenario(ready, options.show));
    }
    if (options.all != options.names.empty()) {
        throw UsageError("run needs either names or --all");
    }
    std::vector<ReadyScenario> chosen;
    for (const std::string& name : options.names) {
        chosen.push_back(FindScenario(ready, name));
    }
    return RunAll(options.all ? ready : chosen, options, programFolder);
}

}  // namespace

int Run(const std::vector<std::string>& arguments, const fs::path& programFolder) {
    CLI::App app("Plays scenarios of the development service to a host", "plenxscenario");
    Options options;
    Declare(app, options);
    try {
        // The parser takes the arguments from the back.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
        return RunCommand(app.get_subcommands().front()->get_name(), options, programFolder);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kAllHeld : kWrongUsage;
    } catch (const std::exception& error) {
        std::cerr << "plenxscenario: " << error.what() << "\n";
        return kWrongUsage;
    }
}

}  // namespace PlenxScenario
