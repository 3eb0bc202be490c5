// The commands: one table with the name, the usage, the help and the function of each.
//
// Such a function reads the arguments, which fails with a ScriptError when they are wrong,
// and returns the action to run. A script is thus checked to its end before it starts.

#ifndef PLENXHOST_COMMANDS_H
#define PLENXHOST_COMMANDS_H

#include <string>
#include <string_view>
#include <vector>

#include "arguments.h"
#include "session.h"

namespace PlenxHost {

struct Command {
    const char* name;
    const char* usage;
    const char* help;
    Action (*parse)(Arguments& arguments);
};

const std::vector<Command>& Commands();

/// One line for each command.
std::string CommandOverview();
/// All about one. @throws ScriptError when there is no such command.
std::string CommandHelp(const std::string& name);

/// The step of one line; its action is empty when the line is.
/// @throws ScriptError
Step ParseStep(std::string_view line, const std::string& place);

}  // namespace PlenxHost

#endif  // PLENXHOST_COMMANDS_H
