// What this process uses of the system.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_MEASURE_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_MEASURE_H

#include "soak/judgement.h"

namespace PlenxSoak {

Sample Measure();

/// Measures again and again until the threads are no longer becoming fewer, for 10 s at most:
/// those that the system keeps for calls end a while after the calls.
Sample MeasureAtRest();

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_MEASURE_H
