// Counts the open handles of the service manager. Under Wine these are no handles of the system, so
// the process's count does not include them. Instead, this redirects the imports of the library and
// of this program through counters.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_SERVICE_HANDLES_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_SERVICE_HANDLES_H

#include <cstdint>

namespace PlenxSoak {

/// Counts from now on. Call it once, before anybody uses the service manager.
void CountServiceHandles();

/// Returns how many handles were opened that nobody has tried to close. The result of the attempt
/// does not count, because Wine sometimes fails to close a handle.
std::uint64_t ServiceHandles();

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_SERVICE_HANDLES_H
