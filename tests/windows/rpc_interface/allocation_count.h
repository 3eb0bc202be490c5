// Stands before MIDL_user_allocate and MIDL_user_free: counts the blocks that are out, and
// makes an allocation misbehave when told to. The runtime allocates replies on the client's
// own thread, so a misbehaving allocation is a failure in the midst of a call.

#ifndef PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_ALLOCATION_COUNT_H
#define PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_ALLOCATION_COUNT_H

#include <functional>

namespace PlenxTest {

/// Blocks that are allocated and not yet released.
long BlocksOut();

/// Blocks that were ever allocated.
long BlocksEver();

/// While it lives, each allocation of this process gives what the function gives.
class AllocationReplacement {
public:
    explicit AllocationReplacement(std::function<void*()> allocate);
    ~AllocationReplacement();
    AllocationReplacement(const AllocationReplacement&) = delete;
    AllocationReplacement& operator=(const AllocationReplacement&) = delete;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_ALLOCATION_COUNT_H
