#include "doctor/command.h"

#include <CLI/CLI.hpp>

#include "host/command.h"

namespace PlenxHost {
namespace {

constexpr const char* kDoctorFooter =
    "The doctor looks at files, rights, services, endpoints and folders, and says how to cure\n"
    "each problem. It changes nothing. Exit codes: 0 no problem, 1 problems, 2 wrong usage.\n"
    "\n"
    "Example:\n"
    "  plenxkit doctor --install C:\\Plenx\\App --data C:\\Plenx\\Data";

}  // namespace

CLI::App& DeclareDoctor(CLI::App& program, DoctorOptions& options) {
    CLI::App& command = *program.add_subcommand(
        "doctor", "Check an install folder and this system, and change nothing");
    command.add_option("--install", options.install, "Install folder, as the host gives it")
        ->type_name("DIR")
        ->required();
    command.add_option("--data", options.data, "Data folder, as the host gives it")
        ->type_name("DIR")
        ->required();
    command
        .add_option("--program", options.program,
                    "Folder of the host's program and of our DLLs; plenxkit's own by default")
        ->type_name("DIR");
    DeclareLook(command, options.look);
    command.footer(kDoctorFooter);
    return command;
}

}  // namespace PlenxHost
