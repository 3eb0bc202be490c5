// The streams that the program passes to every command.

#ifndef PLENXKIT_STREAMS_H
#define PLENXKIT_STREAMS_H

#include <istream>
#include <ostream>

#include "standard_streams.h"

namespace CLI {
class App;
}

namespace PlenxKit {

struct Streams {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    const StandardStreams& process;
};

/// The exit code of every command for a command line that it cannot use.
constexpr int kWrongUsage = 2;
/// The exit code of a command that was interrupted, and has removed everything.
constexpr int kInterrupted = 5;

}  // namespace PlenxKit

#endif  // PLENXKIT_STREAMS_H
