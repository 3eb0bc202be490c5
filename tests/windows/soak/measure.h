// Measures what this process uses of the system.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_MEASURE_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_MEASURE_H

#include "soak/judgement.h"

namespace PlenxSoak {

Sample Measure();

/// Waits, for some seconds at most, until there are no more than that many threads, and then
/// measures. The system keeps the threads of past calls for 5 s, in case more calls come.
Sample MeasureAtRest(std::uint64_t threads);

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_MEASURE_H
