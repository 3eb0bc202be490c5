// How the program ends.

#ifndef PLENXKIT_HOST_EXIT_CODE_H
#define PLENXKIT_HOST_EXIT_CODE_H

namespace PlenxHost {

constexpr int kAllHeld = 0;
constexpr int kNotAllHeld = 1;
constexpr int kWrongUsage = 2;
constexpr int kTimedOut = 3;

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_EXIT_CODE_H
