// The operator new of the program that this is linked into: it counts, and fails on demand.

#ifndef PLENXSDK_UNIT_COUNTED_ALLOCATIONS_H
#define PLENXSDK_UNIT_COUNTED_ALLOCATIONS_H

#include <cstdint>

/// Blocks of operator new that have not been released.
std::int64_t LiveAllocations();

/// From its making to its end, the n-th allocation of this thread fails, whatever its form; the
/// first is 1. What the fakes allocate for themselves does not count and does not fail.
class FailingAllocation {
public:
    explicit FailingAllocation(unsigned n);
    ~FailingAllocation() { End(); }
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    /// From now on nothing fails any more. Returns whether something did.
    bool End() const;
};

#endif  // PLENXSDK_UNIT_COUNTED_ALLOCATIONS_H
