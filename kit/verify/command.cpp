#include "verify/command.h"

#include <CLI/CLI.hpp>

namespace PlenxVerify {
namespace {

constexpr const char* kFooter =
    "Exit codes: 0 as expected, 1 something failed, 2 wrong usage, 3 refused to begin, 4 "
    "something\n"
    "was left behind, 5 interrupted. It needs an elevated prompt and plenxverify's ZIP.\n"
    "Examples:\n"
    "  plenxkit verify\n"
    "  plenxkit verify --yes --out C:\\results --junit results.xml\n"
    "  plenxkit verify --only load,wire";

}  // namespace

CLI::App& Declare(CLI::App& program, Options& options) {
    CLI::App& command = *program.add_subcommand("verify", "Check plenxsdk on this Windows");
    command.add_option("--only", options.only, "Run only these stages, with commas")
        ->type_name("STAGES");
    command.add_flag("--list", options.list, "List the stages");
    command.add_flag("--dry-run", options.dryRun, "Say what would be done, and do nothing");
    command.add_flag("--yes", options.yes, "Begin without asking");
    command.add_flag("--clean", options.clean, "Remove what an earlier run has left, and end");
    command
        .add_option("--out", options.out, "Write the report and the ZIP here (plenxverify-results)")
        ->type_name("DIR");
    command.add_option("--json", options.json, "Write the results to this file, too, as JSON")
        ->type_name("FILE");
    command
        .add_option("--junit", options.junit,
                    "Write the results to this file, too, for build servers")
        ->type_name("FILE");
    command
        .add_option("--html", options.html, "Write the report to this file, too, for the browser")
        ->type_name("FILE");
    command.footer(kFooter);
    return command;
}

CLI::App& DeclareWatcher(CLI::App& program, WatcherOptions& options) {
    CLI::App& command = *program.add_subcommand("verify-watcher")->group("");
    command.add_option("RUN", options.run)->required();
    command.add_option("DONE", options.done)->required();
    command.add_option("TURN", options.turn)->required();
    return command;
}

}  // namespace PlenxVerify
