// What this process holds: memory of its own and handles.

#ifndef PLENXSDK_TESTS_WINDOWS_HOSTILE_FOOTPRINT_H
#define PLENXSDK_TESTS_WINDOWS_HOSTILE_FOOTPRINT_H

#include <cstddef>

namespace PlenxTest {

struct Footprint {
    std::size_t privateBytes = 0;
    std::size_t handles = 0;
};

/// 0 where the system does not tell.
Footprint MeasureFootprint();

/// Fails the test when there is more now, by more than what comes and goes: 4 MiB and 8 handles.
/// Waits, with a deadline, for what ends by itself; prints what it found.
void ExpectNothingMore(const Footprint& before);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_HOSTILE_FOOTPRINT_H
