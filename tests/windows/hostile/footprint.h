// Measures what this process holds: memory of its own and handles.

#ifndef PLENXSDK_TESTS_WINDOWS_HOSTILE_FOOTPRINT_H
#define PLENXSDK_TESTS_WINDOWS_HOSTILE_FOOTPRINT_H

#include <cstddef>

namespace PlenxTest {

struct Footprint {
    std::size_t privateBytes = 0;
    std::size_t handles = 0;
};

/// The numbers are 0 where the system does not report them.
Footprint MeasureFootprint();

/// Fails the test when the process holds more now than before, beyond the 4 MiB and 8 handles that
/// come and go, unless nobody knows what this system keeps. It waits, with a deadline, for things
/// that end by themselves, and prints what it found.
void ExpectNothingMore(const Footprint& before);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_HOSTILE_FOOTPRINT_H
