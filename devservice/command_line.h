// Parses the command line.

#ifndef PLENXSERVICE_COMMAND_LINE_H
#define PLENXSERVICE_COMMAND_LINE_H

#include <optional>
#include <string>
#include <vector>

#include "identity.h"

namespace PlenxService {

struct CommandLine {
    bool help = false;
    std::optional<Identity> console;  // without it, run as a service
    std::optional<unsigned> seconds;  // without it, until Ctrl-C
    std::wstring scenario;            // when empty, the one that the control file names
    std::wstring check;               // when not empty, a scenario file to check
    std::string error;                // when not empty, what is wrong with the usage
};

/// The arguments do not include the program's name. programFolder is the default install folder.
CommandLine ParseCommandLine(const std::vector<std::wstring>& arguments,
                             const std::wstring& programFolder);

extern const char kUsage[];

}  // namespace PlenxService

#endif  // PLENXSERVICE_COMMAND_LINE_H
