// The operator new of the program that this is linked into: it counts, and fails on demand.

#ifndef PLENXSDK_UNIT_COUNTED_ALLOCATIONS_H
#define PLENXSDK_UNIT_COUNTED_ALLOCATIONS_H

#include <cstdint>

/// Blocks of operator new that have not been released.
std::int64_t LiveAllocations();

/// While it lives, the n-th allocation of this thread fails, whatever its form; the first is 1.
/// Fakes are no part of what is tested: what they allocate neither counts nor fails.
class FailingAllocation {
public:
    explicit FailingAllocation(unsigned n);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    /// Whether there was an n-th allocation.
    bool Hit() const;
};

#endif  // PLENXSDK_UNIT_COUNTED_ALLOCATIONS_H
