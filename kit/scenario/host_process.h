// Runs a host with its output in a file. When its time is over, it ends the host with all processes
// that the host has started.

#ifndef PLENXKIT_SCENARIO_HOST_PROCESS_H
#define PLENXKIT_SCENARIO_HOST_PROCESS_H

#include <filesystem>
#include <optional>
#include <string>

namespace PlenxScenario {

/// Replaces the %NAMES% of environment variables in the command.
/// @return the exit code; empty when the host had to be ended.
/// @throws UsageError when it cannot be started.
std::optional<unsigned long> RunHost(const std::wstring& command,
                                     const std::filesystem::path& output, double seconds);

}  // namespace PlenxScenario

#endif  // PLENXKIT_SCENARIO_HOST_PROCESS_H
