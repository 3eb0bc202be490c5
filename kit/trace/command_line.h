// The program without its process: arguments and streams in, exit code out.

#ifndef PLENXTRACE_COMMAND_LINE_H
#define PLENXTRACE_COMMAND_LINE_H

#include <ostream>
#include <string>
#include <vector>

namespace PlenxTrace {

constexpr int kFine = 0;
constexpr int kFileFailed = 1;
constexpr int kWrongUsage = 2;

struct Streams {
    std::ostream& out;
    std::ostream& err;
};

/// The arguments, in UTF-8, without the program's name.
int Run(const std::vector<std::string>& arguments, const Streams& streams);

}  // namespace PlenxTrace

#endif  // PLENXTRACE_COMMAND_LINE_H
