// One run: this process is the host for as long as it lasts, because the library can be initialised
// once per process.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_SOAK_RUN_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_SOAK_RUN_H

#include <cstdint>

namespace PlenxSoak {

struct Plan {
    unsigned seconds = 120;
    std::uint64_t seed = 1;
};

/// Reads PLENX_SOAK_SECONDS and PLENX_SOAK_SEED.
Plan PlanFromEnvironment();

/// Runs the soak and prints its progress and a closing table. @return 0 when nothing went wrong. It
/// ends the process with 2 when a call or an outcome does not come back.
int Run(const Plan& plan);

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_SOAK_RUN_H
