// How many handles of the service manager are open. They are no handles of the system under Wine,
// so that the process's count does not have them; the imports of the library and of this program
// are led through counters instead.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_SERVICE_HANDLES_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_SERVICE_HANDLES_H

#include <cstdint>

namespace PlenxSoak {

/// From now on. To be called once, before anybody uses the service manager.
void CountServiceHandles();

/// Those that were opened and that nobody has tried to close. What came of the try does not count:
/// Wine at times fails to close a handle.
std::uint64_t ServiceHandles();

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_SERVICE_HANDLES_H
