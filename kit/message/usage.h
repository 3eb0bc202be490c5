// The exit codes of the program, and the error that ends it early.

#ifndef PLENXKIT_MESSAGE_USAGE_H
#define PLENXKIT_MESSAGE_USAGE_H

#include <stdexcept>

namespace PlenxMessage {

constexpr int kFine = 0;
constexpr int kBrokenMessage = 1;

/// The user's request cannot be carried out: an unknown name, a bad value, an unreadable file.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_USAGE_H
