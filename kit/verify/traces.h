// Finds and removes what a run puts on the machine. A run does everything in one folder of its own,
// so every service and process whose program lies in that folder belongs to it. Windows only.

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

/// Everything of ours that is on the machine, whoever put it there.
std::vector<Trace> AllTraces();

/// Ends the processes and removes the services of the run, and empties the folder.
/// @return the names of what was there.
std::vector<std::string> RemoveTracesIn(const std::filesystem::path& folder);
/// Does the same, and removes the whole folder of the run.
void RemoveAllTraces();

}  // namespace PlenxVerify

#endif  // PLENXKIT_VERIFY_TRACES_H
