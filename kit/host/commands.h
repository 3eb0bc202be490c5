// The commands: one table (command_table.cpp) describes each command and names its function.
//
// Such a function reads the arguments and returns the action to run. It throws a ScriptError when
// the arguments are wrong. A script is thus checked to its end before it starts.

#ifndef PLENXKIT_HOST_COMMANDS_H
#define PLENXKIT_HOST_COMMANDS_H

#include <string>
#include <string_view>
#include <vector>

#include "host/arguments.h"
#include "host/session.h"

namespace PlenxHost {

struct Command {
    const char* subject;  ///< Commands of one subject stand together.
    const char* name;
    const char* usage;    ///< The arguments.
    const char* purpose;  ///< One line.
    const char* remarks;  ///< More about the command and its arguments; may be empty.
    const char* result;   ///< The result that it gives at once.
    const char* outcome;  ///< The later outcome, and the notification that reports it.
    const char* example;  ///< A line that can be run.
    Action (*parse)(Arguments& arguments);
};

const std::vector<Command>& Commands();

/// One line for each command, by subject.
std::string CommandOverview();
/// The help of one command. @throws ScriptError when there is no such command.
std::string CommandHelp(const std::string& name);

/// The step of one line. The action is empty when the line is empty.
/// @throws ScriptError
Step ParseStep(std::string_view line, const std::string& place);

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_COMMANDS_H
