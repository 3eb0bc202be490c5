#include "scenario/command.h"

#include <CLI/CLI.hpp>

namespace PlenxScenario {
namespace {

constexpr const char* kFooter =
    "Exit codes: 0 all scenarios passed, 1 some failed, 2 wrong usage.\n"
    "The services are real. Run the command elevated, and never run two at the same time.";
constexpr const char* kRunFooter =
    "Your own host learns from the environment where it works: PLENX_INSTALL and PLENX_DATA are\n"
    "the folders for Init, and PLENX_SCENARIO is the scenario's name. Its exit code decides; 0 is\n"
    "a pass. Its output, the library's log and the services' log stay in the work folder.\n"
    "Example:\n"
    "  plenxkit scenario run --all --host \"myhost.exe --selftest %PLENX_SCENARIO%\" --junit "
    "out.xml";

}  // namespace

CLI::App& Declare(CLI::App& program, Options& options) {
    CLI::App& command =
        *program.add_subcommand("scenario", "Play scenarios of the development service to a host");
    command.require_subcommand(1);
    command.fallthrough();
    command.add_option("--scenarios", options.scenarios, "Folder of the ready scenarios")
        ->type_name("DIR");
    command.footer(kFooter);
    command.add_subcommand("list", "List the ready scenarios");
    CLI::App& show = *command.add_subcommand("show", "Show a scenario and its script");
    show.add_option("NAME", options.show, "A ready scenario, or a .toml file")
        ->type_name("")
        ->required();
    CLI::App& run = *command.add_subcommand("run", "Play scenarios to a host");
    run.add_option("NAME", options.names, "Ready scenarios, or .toml files")->type_name("");
    run.add_flag("--all", options.all, "Play all ready scenarios");
    run.add_option("--host", options.host,
                   "Command of a host; without it, plenxkit host runs the scenario's script")
        ->type_name("COMMAND");
    run.add_option("--install", options.install,
                   "Your own install folder, with the development service in it")
        ->type_name("DIR");
    run.add_option("--data", options.data, "Your own data folder; Init deletes plenx* in it")
        ->type_name("DIR");
    run.add_option("--work", options.work, "Make the folders of the runs here (C:\\plenxkit)")
        ->type_name("DIR");
    run.add_option("--timeout", options.seconds, "End a host after this time (60)")
        ->type_name("SECONDS")
        ->check(CLI::Range(1.0, 86400.0).description(""));
    run.add_flag("--strict", options.strict, "Fail a scenario that was not played in full");
    run.add_flag("--observed", options.observed,
                 "Show the notifications that the observer of plenxkit host got");
    run.add_option("--json", options.json, "Write the results to this file, as JSON")
        ->type_name("FILE");
    run.add_option("--junit", options.junit, "Write the results to this file, for build servers")
        ->type_name("FILE");
    run.footer(kRunFooter);
    command.callback([&] { options.command = command.get_subcommands().front()->get_name(); });
    return command;
}

}  // namespace PlenxScenario
