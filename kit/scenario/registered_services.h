// The services and the driver that the library registers, seen by where their program lies: those
// of a run are removed after it, those of anybody else are not touched.

#ifndef PLENXKIT_SCENARIO_REGISTERED_SERVICES_H
#define PLENXKIT_SCENARIO_REGISTERED_SERVICES_H

#include <filesystem>
#include <string>

namespace PlenxScenario {

/// Ends and deletes those whose program lies in the folder.
void RemoveServicesOf(const std::filesystem::path& folder);

/// A service that the library would take over from a host that is installed here: its name and
/// program. Empty: there is none.
std::string ServiceOfOthers(const std::filesystem::path& folder);

}  // namespace PlenxScenario

#endif  // PLENXKIT_SCENARIO_REGISTERED_SERVICES_H
