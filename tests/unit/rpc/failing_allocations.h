// This replaces the operator new of the program that it is linked into, and fails on demand.

#ifndef UNIT_RPC_FAILING_ALLOCATIONS_H
#define UNIT_RPC_FAILING_ALLOCATIONS_H

#include <atomic>
#include <cstddef>

constexpr int kEvery = -1;

/// How many non-throwing array allocations still succeed before one fails.
extern std::atomic<int> goodArrays;
/// Throwing allocations of this size and above fail.
extern std::atomic<std::size_t> tooLarge;

#endif  // UNIT_RPC_FAILING_ALLOCATIONS_H
