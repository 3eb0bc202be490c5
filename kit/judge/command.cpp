#include "judge/command.h"

#include <CLI/CLI.hpp>

namespace PlenxJudge {
namespace {

constexpr const char* kFooter =
    "Exit codes: 0 as expected, 1 something failed, 2 wrong usage, 3 refused to begin,\n"
    "4 something was left behind, 5 interrupted, and everything was removed.\n"
    "Do not run it while a host runs, and never run two at the same time. --service needs\n"
    "an elevated prompt.\n"
    "Examples:\n"
    "  plenxkit judge --service C:\\mine\\plenxservice.exe --junit results.xml\n"
    "  plenxkit judge --console \"C:\\mine\\service.exe --console pc\" --only reply,message\n"
    "  plenxkit judge --endpoint PLENXPCService --strict\n"
    "  plenxkit judge --with old.json --with new.json --html compared.html";

constexpr double kLeastPatience = 0.5;
constexpr double kMostPatience = 600;
constexpr unsigned kLongestSoak = 86400;

}  // namespace

CLI::App& Declare(CLI::App& program, Options& options) {
    CLI::App& command =
        *program.add_subcommand("judge", "Check a service program against the wire protocol");
    auto* const endpoint =
        command.add_option("--endpoint", options.endpoint, "Judge a program that serves this")
            ->type_name("NAME");
    auto* const service =
        command
            .add_option("--service", options.service,
                        "Judge this program as a Windows service, from its start to its end")
            ->type_name("PROGRAM")
            ->excludes(endpoint);
    command
        .add_option("--console", options.console,
                    "Judge a program that this command starts without the service manager")
        ->type_name("COMMAND")
        ->excludes(endpoint)
        ->excludes(service);
    command.add_option("--role", options.role, "The service that the program plays (pc)")
        ->type_name("office|pc|phone")
        ->check(CLI::IsMember({"office", "pc", "phone"}).description(""));
    command
        .add_option("--only", options.only, "Run only these checks: numbers or areas, with commas")
        ->type_name("CHECKS");
    command.add_flag("--list", options.list, "List the checks");
    command.add_flag("--dry-run", options.dryRun, "Say what would be done, and do nothing");
    command.add_flag("--strict", options.strict, "Also fail when a check of level should fails");
    command
        .add_option("--known", options.known, "A list of known failures, one check number per line")
        ->type_name("FILE");
    command.add_option("--patience", options.patience, "Wait this long for an answer (5)")
        ->type_name("SECONDS")
        ->check(CLI::Range(kLeastPatience, kMostPatience).description(""));
    command
        .add_option("--soak", options.soak,
                    "Repeat the requests for this long, and watch memory and handles")
        ->type_name("SECONDS")
        ->check(CLI::Range(1U, kLongestSoak).description(""));
    command.add_option("--json", options.json, "Write the results to this file, as JSON")
        ->type_name("FILE");
    command
        .add_option("--junit", options.junit, "Write the results to this file, for build servers")
        ->type_name("FILE");
    command.add_option("--html", options.html, "Write the results to this file, for the browser")
        ->type_name("FILE");
    command
        .add_option("--with", options.with,
                    "Show the results of an earlier run, as --json wrote them, in --html, too")
        ->type_name("FILE");
    command.add_option("--work", options.work, "Make the folders of the run here (C:\\plenxkit)")
        ->type_name("DIR");
    command.footer(kFooter);
    return command;
}

CLI::App& DeclareCaller(CLI::App& program, CallerOptions& options) {
    CLI::App& command = *program.add_subcommand("judge-caller")->group("");
    command.add_option("ENDPOINT", options.endpoint)->required();
    return command;
}

}  // namespace PlenxJudge
