// The host of row 13 reports these times.

#ifndef PLENXBENCH_WINDOWS_LIFE_TIMES_H
#define PLENXBENCH_WINDOWS_LIFE_TIMES_H

#include <cstddef>

namespace PlenxBench {

enum LifeTime : std::size_t {
    kInitReturned,     // from the call of Init
    kEngineReady,      // the same
    kServicesStopped,  // how long that took, when the host did it itself
    kLeaving,          // when main returned
};

}  // namespace PlenxBench

#endif  // PLENXBENCH_WINDOWS_LIFE_TIMES_H
