// Finds the services and the driver that the library registers, and tells them apart by the folder
// of their program. Those of a run are removed after it. Those of anybody else are not touched.

#ifndef PLENXKIT_SCENARIO_REGISTERED_SERVICES_H
#define PLENXKIT_SCENARIO_REGISTERED_SERVICES_H

#include <filesystem>
#include <string>
#include <vector>

namespace PlenxScenario {

/// All names under which programs of ours register services and drivers, those of tests included.
std::vector<std::string> ServiceNames();

/// Ends and deletes the services whose program lies in the folder.
void RemoveServicesOf(const std::filesystem::path& folder);

/// A service that the library would take over from a host that is installed here: its name and
/// program. Empty when there is no such service.
std::string ServiceOfOthers(const std::filesystem::path& folder);

}  // namespace PlenxScenario

#endif  // PLENXKIT_SCENARIO_REGISTERED_SERVICES_H
