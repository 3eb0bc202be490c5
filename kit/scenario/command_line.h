// The program's command line. CLI11 tells what is wrong with it and prints the help.

#ifndef PLENXSCENARIO_COMMAND_LINE_H
#define PLENXSCENARIO_COMMAND_LINE_H

#include <filesystem>
#include <string>
#include <vector>

namespace PlenxScenario {

/// arguments: without the program's name. programFolder: where the program lies.
/// @return the exit code: 0 all held, 1 not all did, 2 wrong usage.
int Run(const std::vector<std::string>& arguments, const std::filesystem::path& programFolder);

}  // namespace PlenxScenario

#endif  // PLENXSCENARIO_COMMAND_LINE_H
