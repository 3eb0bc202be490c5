// Reads the time from the system's performance counter, which is the same in all processes.

#ifndef PLENXBENCH_WINDOWS_SUPPORT_CLOCK_H
#define PLENXBENCH_WINDOWS_SUPPORT_CLOCK_H

#include <windows.h>

#include <cstdint>

namespace PlenxBench {

inline std::int64_t Now() {
    LARGE_INTEGER ticks;
    QueryPerformanceCounter(&ticks);
    return ticks.QuadPart;
}

inline double Nanoseconds(std::int64_t ticks) {
    LARGE_INTEGER perSecond;
    QueryPerformanceFrequency(&perSecond);
    return static_cast<double>(ticks) * 1e9 / static_cast<double>(perSecond.QuadPart);
}

}  // namespace PlenxBench

#endif  // PLENXBENCH_WINDOWS_SUPPORT_CLOCK_H
