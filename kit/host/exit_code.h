// How the program ends.

#ifndef PLENXHOST_EXIT_CODE_H
#define PLENXHOST_EXIT_CODE_H

namespace PlenxHost {

constexpr int kAllHeld = 0;
constexpr int kNotAllHeld = 1;
constexpr int kWrongUsage = 2;
constexpr int kTimedOut = 3;

}  // namespace PlenxHost

#endif  // PLENXHOST_EXIT_CODE_H
