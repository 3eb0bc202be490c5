// Takes the place of MIDL_user_allocate and MIDL_user_free: counts the blocks that are out, and
// makes an allocation misbehave when told to. The runtime allocates replies on the client's own
// thread, so a misbehaving allocation is a failure in the middle of a call.

#ifndef PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_ALLOCATION_COUNT_H
#define PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_ALLOCATION_COUNT_H

#include <functional>

namespace PlenxTest {

/// Returns the number of blocks that are allocated and not yet released.
long BlocksOut();

/// Returns the number of blocks that were ever allocated.
long BlocksEver();

/// While it lives, each allocation of this process returns the result of the function.
class AllocationReplacement {
public:
    explicit AllocationReplacement(std::function<void*()> allocate);
    ~AllocationReplacement();
    AllocationReplacement(const AllocationReplacement&) = delete;
    AllocationReplacement& operator=(const AllocationReplacement&) = delete;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_ALLOCATION_COUNT_H
