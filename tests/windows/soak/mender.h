// Does for a service what Windows does and Wine does not: when its process has ended, the service
// counts as stopped.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_MENDER_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_MENDER_H

#include <cstddef>

#include "soak/tally.h"

namespace PlenxSoak {

class Mender {
public:
    explicit Mender(Tally& tally) : tally_(tally) {}

    /// Mends the services whose process has ended.
    void MendDead();
    /// Ends every process of a service, and mends the services.
    void EndAll();
    /// Ends the process of one service and leaves it at that.
    void Kill(std::size_t service);

private:
    Tally& tally_;
};

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_MENDER_H
