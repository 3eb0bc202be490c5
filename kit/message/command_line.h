// The program without its process: arguments and streams in, exit code out.

#ifndef PLENXMSG_COMMAND_LINE_H
#define PLENXMSG_COMMAND_LINE_H

#include <istream>
#include <ostream>
#include <string>
#include <vector>

namespace PlenxMsg {

struct Streams {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
};

/// The arguments, in UTF-8, without the program's name.
int Run(const std::vector<std::string>& arguments, const Streams& streams);

}  // namespace PlenxMsg

#endif  // PLENXMSG_COMMAND_LINE_H
