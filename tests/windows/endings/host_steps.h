// Steps that hosts take before they end.

#ifndef PLENXSDK_TESTS_WINDOWS_ENDINGS_HOST_STEPS_H
#define PLENXSDK_TESTS_WINDOWS_ENDINGS_HOST_STEPS_H

#include "endings/loaded_library.h"
#include "support/wait.h"

namespace PlenxTest {

/// The exit code of a host that did not reach the place where it should end.
constexpr int kNotReached = 99;

/// GetInt64Config waits for the first Init. Before the worker has begun with it, the answer is 0.
inline bool WaitForEngine(const Library& library) {
    return WaitFor([&] { return library.NotRunning(DistributedFs::kPcService) == 1; });
}

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_ENDINGS_HOST_STEPS_H
