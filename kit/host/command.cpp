#include "host/command.h"

#include <CLI/CLI.hpp>

namespace PlenxHost {
namespace {

constexpr const char* kFooter =
    "Commands come from the script, or else from the input, line by line; on a console\n"
    "there is a prompt. The command help lists them, and help COMMAND explains one.\n"
    "Exit codes: 0 all expectations held, 1 some did not, 2 wrong usage, 3 timeout.\n"
    "Init DELETES the data folder's sub-folders plenx, plenx0 ... plenx99.\n"
    "\n"
    "Examples:\n"
    "  plenxkit host --install C:\\Plenx\\App --data C:\\Plenx\\Data\n"
    "  plenxkit host --install C:\\Plenx\\App --data C:\\Plenx\\Data --script run.plenx --json";

ColourWish WishOf(const std::string& text) {
    return text == "always"  ? ColourWish::kAlways
           : text == "never" ? ColourWish::kNever
                             : ColourWish::kAuto;
}

}  // namespace

void DeclareLook(CLI::App& command, Look& look) {
    command.add_flag("--json", look.json, "Print one JSON object per line");
    command
        .add_option_function<std::string>(
            "--color", [&look](const std::string& wish) { look.colour = WishOf(wish); },
            "When to use colours; auto does on a terminal, unless NO_COLOR is set")
        ->type_name("auto|always|never")
        ->check(CLI::IsMember({"auto", "always", "never"}).description(""));
}

CLI::App& DeclareHost(CLI::App& program, HostOptions& options) {
    CLI::App& command = *program.add_subcommand("host", "Drive plenxsdk.dll as a host does");
    command.add_option("--install", options.init.install, "Install folder, for init")
        ->type_name("DIR");
    command.add_option("--data", options.init.data, "Data folder, for init; see below")
        ->type_name("DIR");
    command.add_option("--third", options.init.third, "Third argument of init")->type_name("TEXT");
    command.add_flag("--flag", options.init.flag, "Last argument of init");
    command.add_option("--script", options.script, "Run the commands of this file")
        ->type_name("FILE");
    command.add_option("--timeout", options.timeout, "End the run after this time")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.0, 86400.0).description(""));
    DeclareLook(command, options.look);
    command.footer(kFooter);
    return command;
}

}  // namespace PlenxHost
