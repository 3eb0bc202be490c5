// What the command line asks for.

#ifndef PLENXSERVICE_COMMAND_LINE_H
#define PLENXSERVICE_COMMAND_LINE_H

#include <optional>
#include <string>
#include <vector>

#include "identity.h"

namespace PlenxService {

struct CommandLine {
    bool help = false;
    std::optional<Identity> console;  // none: run as a service
    std::optional<unsigned> seconds;  // none: until Ctrl-C
    std::wstring scenario;            // empty: none but what the control file names
    std::wstring check;               // not empty: a scenario file to look through
    std::string error;                // not empty: how the program is not used
};

/// arguments: without the program's name. programFolder: the default install folder.
CommandLine ParseCommandLine(const std::vector<std::wstring>& arguments,
                             const std::wstring& programFolder);

extern const char kUsage[];

}  // namespace PlenxService

#endif  // PLENXSERVICE_COMMAND_LINE_H
