// What the host asks of the system, for tests on Linux.

#include "host/platform.h"

#include <cstdlib>

namespace PlenxHost {

std::uint32_t CurrentThreadNumber() {
    return 77;
}

// Here the only service that runs is that of the PC.
std::uint32_t EndServiceProcess(const std::string& service) {
    return service == "PlenxPcSvc" ? 0 : 1062;
}

void EndProcess(int exitCode) {
    std::_Exit(exitCode);
}

}  // namespace PlenxHost
