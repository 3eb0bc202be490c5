// What this process holds: memory of its own and handles.

#ifndef PLENXSDK_TESTS_WINDOWS_HOSTILE_FOOTPRINT_H
#define PLENXSDK_TESTS_WINDOWS_HOSTILE_FOOTPRINT_H

#include <cstddef>
#include <ostream>

namespace PlenxTest {

struct Footprint {
    std::size_t privateBytes = 0;
    std::size_t handles = 0;
};

std::ostream& operator<<(std::ostream& out, const Footprint& footprint);

/// 0 where the system does not tell.
Footprint MeasureFootprint();

/// The same, once what ends by itself has ended: waits, with a deadline, until there are no more
/// handles than that.
Footprint MeasureFootprintAtRest(std::size_t handles);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_HOSTILE_FOOTPRINT_H
