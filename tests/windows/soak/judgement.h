// Decides whether a long run stayed flat. Samples are taken while nothing is going on. The first
// quarter is the warm-up; the medians of the second and of the last quarter are compared.

#ifndef PLENXSDK_TESTS_WINDOWS_SOAK_JUDGEMENT_H
#define PLENXSDK_TESTS_WINDOWS_SOAK_JUDGEMENT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace PlenxSoak {

struct Sample {
    std::uint64_t privateBytes = 0;  ///< as measured, less what Wine's records take
    std::uint64_t heapBytes = 0;     ///< what is allocated and not freed on the run time's heap
    std::uint64_t handles = 0;
    std::uint64_t threads = 0;
    std::uint64_t serviceHandles = 0;  ///< opened, and nobody has tried to close them
    std::uint64_t wineRecords = 0;     ///< what Wine keeps of service handles it failed to close
    std::uint64_t measuredBytes = 0;   ///< all private bytes
};

/// Fewer samples than this allow no judgement.
constexpr std::size_t kFewestSamples = 8;

/// One of Wine's records takes this much of the heap, the headers of its blocks included: the
/// record 96, its binding 144, and three strings of 48 each. We measured 20 open handles, all
/// alike.
constexpr std::uint64_t kBytesOfAWineRecord = 384;

/// The figures may grow by this much between the two quarters.
constexpr std::uint64_t kPrivateBytesTolerance = std::uint64_t{1024} * 1024;
constexpr std::uint64_t kHeapBytesTolerance = std::uint64_t{32} * 1024;
constexpr std::uint64_t kHandlesTolerance = 8;
constexpr std::uint64_t kThreadsTolerance = 0;
constexpr std::uint64_t kServiceHandlesTolerance = 0;

/// Returns the medians of the second quarter and of the last one.
Sample AfterWarmUp(const std::vector<Sample>& samples);
Sample AtTheEnd(const std::vector<Sample>& samples);

/// Returns a line for each figure that has grown; empty when the run stayed flat.
std::vector<std::string> Judge(const std::vector<Sample>& samples);

}  // namespace PlenxSoak

#endif  // PLENXSDK_TESTS_WINDOWS_SOAK_JUDGEMENT_H
