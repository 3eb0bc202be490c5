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

}  // namespace PlenxKit

#endif  // PLENXKIT_STREAMS_H
