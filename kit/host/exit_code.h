// How a host ends. A command line that cannot be used has the code of all commands.

#ifndef PLENXKIT_HOST_EXIT_CODE_H
#define PLENXKIT_HOST_EXIT_CODE_H

#include "ending.h"

namespace PlenxHost {

constexpr int kAllHeld = PlenxKit::kAsExpected;
constexpr int kNotAllHeld = PlenxKit::kFailed;
constexpr int kTimedOut = 3;

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_EXIT_CODE_H
