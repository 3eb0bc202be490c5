// What a run leaves on the machine while it goes on, and how it is removed. A run does everything
// in one folder of its own, so whatever has a program of that folder is its own. Windows only.

#ifndef PLENXKIT_VERIFY_TRACES_H
#define PLENXKIT_VERIFY_TRACES_H

#include <filesystem>
#include <string>
#include <vector>

#include "verify/system.h"

namespace PlenxVerify {

/// C:\plenxverify-run
std::filesystem::path RunFolder();
/// Makes it, with a mark that tells it from a folder of somebody else. @return false on failure.
bool MakeRunFolder();

/// All of ours that is on the machine, whoever has brought it.
std::vector<Trace> AllTraces();

/// Ends the processes and removes the services of the run, and empties the folder.
/// @return the names of what was there.
std::vector<std::string> RemoveTracesIn(const std::filesystem::path& folder);
/// The same, and the whole folder of the run.
void RemoveAllTraces();

}  // namespace PlenxVerify

#endif  // PLENXKIT_VERIFY_TRACES_H
