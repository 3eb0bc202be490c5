// Runs a host with its output in a file, and ends it with all that it has started when its time is
// over.

#ifndef PLENXKIT_SCENARIO_HOST_PROCESS_H
#define PLENXKIT_SCENARIO_HOST_PROCESS_H

#include <filesystem>
#include <optional>
#include <string>

namespace PlenxScenario {

/// %NAMES% of environment variables in the command are replaced.
/// @return the exit code, or nothing when the host had to be ended.
/// @throws UsageError when it cannot be started.
std::optional<unsigned long> RunHost(const std::wstring& command,
                                     const std::filesystem::path& output, double seconds);

}  // namespace PlenxScenario

#endif  // PLENXKIT_SCENARIO_HOST_PROCESS_H
