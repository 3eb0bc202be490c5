// Runs commands: those of a whole script file, or line by line from the input.

#ifndef PLENXKIT_HOST_SCRIPT_RUNNER_H
#define PLENXKIT_HOST_SCRIPT_RUNNER_H

#include <functional>
#include <string>
#include <vector>

#include "host/session.h"

namespace PlenxHost {

/// The steps of a script. Every line is checked before any of them runs.
/// @throws ScriptError naming the line, or the file when it cannot be read.
std::vector<Step> LoadScript(const std::string& path);
std::vector<Step> ParseScript(const std::string& text, const std::string& name);

void RunSteps(const std::vector<Step>& steps, Session& session);

/// The next line; false at the end.
using LineReader = std::function<bool(std::string& line)>;

/// Runs each line as it comes. A mistake in a line goes to complain, if it is given, and the
/// run goes on.
/// @throws ScriptError naming the line, when complain is empty.
void RunLines(const LineReader& read, const std::function<void(const std::string&)>& complain,
              Session& session);

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_SCRIPT_RUNNER_H
