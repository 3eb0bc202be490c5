// How a command ends: its exit code, and the errors that end it early.

#ifndef PLENXKIT_ENDING_H
#define PLENXKIT_ENDING_H

#include <functional>
#include <ostream>
#include <stdexcept>
#include <string>

namespace PlenxKit {

constexpr int kAsExpected = 0;
constexpr int kFailed = 1;
/// Every command has this code for a command line that it cannot use.
constexpr int kWrongUsage = 2;
constexpr int kRefused = 3;
constexpr int kLeftBehind = 4;
/// The command has removed everything before it ended.
constexpr int kInterrupted = 5;

/// The request of the user cannot be carried out: an unknown name, a bad value, an unreadable file.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The command does not begin, because it would disturb somebody or could not find out anything.
class Refusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Runs a command. @return its exit code, or that of what it throws, which becomes a line in err.
int Concluded(const std::string& command, std::ostream& err, const std::function<int()>& run);

}  // namespace PlenxKit

#endif  // PLENXKIT_ENDING_H
