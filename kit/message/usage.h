// How the program ends, and what ends it early.

#ifndef PLENXMSG_USAGE_H
#define PLENXMSG_USAGE_H

#include <stdexcept>

namespace PlenxMsg {

constexpr int kFine = 0;
constexpr int kBrokenMessage = 1;
constexpr int kWrongUsage = 2;

/// What was asked for cannot be done: an unknown name, a bad value, an unreadable file.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace PlenxMsg

#endif  // PLENXMSG_USAGE_H
