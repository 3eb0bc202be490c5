#include "options.h"

#include <CLI/CLI.hpp>

#include <sstream>

#include "exit_code.h"

namespace PlenxHost {
namespace {

constexpr const char* kFooter =
    "Commands come from the script, or else from the input, line by line; on a console\n"
    "there is a prompt. The command help lists them, help COMMAND tells all about one.\n"
    "Exit codes: 0 all expectations held, 1 not all did, 2 wrong usage, 3 timeout.\n"
    "The data folder's sub-folders plenx, plenx0 ... plenx99 are DELETED by init.\n"
    "\n"
    "Examples:\n"
    "  plenxhost --install C:\\Plenx\\App --data C:\\Plenx\\Data\n"
    "  plenxhost --install C:\\Plenx\\App --data C:\\Plenx\\Data --script run.plenx --json\n"
    "  plenxhost doctor --install C:\\Plenx\\App --data C:\\Plenx\\Data";

constexpr const char* kDoctorFooter =
    "Looks at files, rights, services, endpoints and folders, and says what to do about\n"
    "what is wrong. It changes nothing. Exit codes: 0 no problem, 1 problems, 2 wrong usage.";

ColourWish WishOf(const std::string& text) {
    return text == "always"  ? ColourWish::kAlways
           : text == "never" ? ColourWish::kNever
                             : ColourWish::kAuto;
}

void DeclareLook(CLI::App& app, Options& options) {
    app.add_flag("--json", options.json, "Print one JSON object per line");
    app.add_option_function<std::string>(
           "--color", [&options](const std::string& wish) { options.colour = WishOf(wish); },
           "Colours: auto (on a terminal, and without NO_COLOR), always or never")
        ->type_name("auto|always|never")
        ->check(CLI::IsMember({"auto", "always", "never"}).description(""));
}

void Declare(CLI::App& app, Options& options) {
    app.add_option("--install", options.init.install, "Install folder, for init")->type_name("DIR");
    app.add_option("--data", options.init.data, "Data folder, for init; see below")
        ->type_name("DIR");
    app.add_option("--third", options.init.third, "Third argument of init")->type_name("TEXT");
    app.add_flag("--flag", options.init.flag, "Last argument of init");
    app.add_option("--script", options.script, "Run the commands of this file")->type_name("FILE");
    app.add_option("--timeout", options.timeout, "Longest time of the whole run")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.0, 86400.0).description(""));
    DeclareLook(app, options);
    app.set_version_flag("--version", "plenxhost " PLENXHOST_VERSION);
    app.footer(kFooter);
}

void DeclareDoctor(CLI::App& app, Options& options) {
    CLI::App& doctor = *app.add_subcommand(
        "doctor", "Check an install folder and this system, and change nothing");
    doctor.add_option("--install", options.init.install, "Install folder, as the host gives it")
        ->type_name("DIR")
        ->required();
    doctor.add_option("--data", options.init.data, "Data folder, as the host gives it")
        ->type_name("DIR")
        ->required();
    doctor
        .add_option("--program", options.program,
                    "Folder of the host's program and of our DLLs; by default that of plenxhost")
        ->type_name("DIR");
    DeclareLook(doctor, options);
    doctor.footer(kDoctorFooter);
    doctor.callback([&options] { options.doctor = true; });
}

}  // namespace

ParsedOptions ParseOptions(const std::vector<std::string>& arguments) {
    ParsedOptions parsed;
    CLI::App app("Drives plenxsdk.dll from the command line, and looks for what is wrong",
                 "plenxhost");
    Declare(app, parsed.options);
    DeclareDoctor(app, parsed.options);
    try {
        // The parser takes the arguments from the back.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& error) {
        std::ostringstream output;
        std::ostringstream errors;
        parsed.over = true;
        parsed.exitCode = app.exit(error, output, errors) == 0 ? kAllHeld : kWrongUsage;
        parsed.output = output.str();
        parsed.error = errors.str();
    }
    return parsed;
}

}  // namespace PlenxHost
