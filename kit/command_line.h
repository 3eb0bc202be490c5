// The program without its process: arguments and streams in, exit code out.

#ifndef PLENXKIT_COMMAND_LINE_H
#define PLENXKIT_COMMAND_LINE_H

#include <string>
#include <vector>

#include "streams.h"

namespace PlenxKit {

/// The arguments, in UTF-8, without the program's name.
int Run(const std::vector<std::string>& arguments, const Streams& streams);

}  // namespace PlenxKit

#endif  // PLENXKIT_COMMAND_LINE_H
