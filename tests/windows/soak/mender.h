// Where the system does not notice that the process of a service has ended, this marks the service
// as stopped.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_MENDER_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_MENDER_H

#include <cstddef>

#include "soak/tally.h"

namespace PlenxSoak {

class Mender {
public:
    explicit Mender(Tally& tally) : tally_(tally) {}

    /// Marks the services whose process has ended as stopped.
    void MendDead();
    /// Ends every process of a service, and then mends the services or waits for the system to
    /// notice.
    void EndAll();
    /// Ends the process of one service and mends nothing.
    void Kill(std::size_t service);

private:
    Tally& tally_;
};

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_MENDER_H
