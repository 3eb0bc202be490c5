// Replaces the operator new of the program that links it. It counts, and fails on demand.

#ifndef PLENXSDK_UNIT_COUNTED_ALLOCATIONS_H
#define PLENXSDK_UNIT_COUNTED_ALLOCATIONS_H

#include <cstdint>

/// Returns the number of blocks of operator new that have not been released.
std::int64_t LiveAllocations();
/// Returns the number of bytes that these blocks take.
std::int64_t LiveBytes();

/// While it lives, the n-th allocation of this thread fails, whatever its form; the first is 1. The
/// fakes' own allocations do not count and do not fail.
class FailingAllocation {
public:
    explicit FailingAllocation(unsigned n);
    ~FailingAllocation() { End(); }
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    /// Lets no further allocation fail. Returns whether one has failed.
    bool End() const;
};

#endif  // PLENXSDK_UNIT_COUNTED_ALLOCATIONS_H
