// Stands in for the system that the host asks, for tests on Linux.

#include "host/platform.h"

#include <cstdlib>

namespace PlenxHost {

std::uint32_t CurrentThreadNumber() {
    return 77;
}

// Here the PC service is the only one that runs.
std::uint32_t EndServiceProcess(const std::string& service) {
    return service == "PlenxPcSvc" ? 0 : 1062;
}

void EndProcess(int exitCode) {
    std::_Exit(exitCode);
}

}  // namespace PlenxHost
