// What the host asks of the system, for tests on Linux. The tests bring their own input.

#include "platform.h"

#include <cstdlib>

namespace PlenxHost {

std::uint32_t CurrentThreadNumber() {
    return 77;
}

StandardStreams::StandardStreams() = default;
StandardStreams::~StandardStreams() = default;

bool StandardStreams::ReadLine(std::string&) const {
    return false;
}

// Here the only service that runs is that of the PC.
std::uint32_t EndServiceProcess(const std::string& service) {
    return service == "PlenxPcSvc" ? 0 : 1062;
}

void EndProcess(int exitCode) {
    std::_Exit(exitCode);
}

}  // namespace PlenxHost
