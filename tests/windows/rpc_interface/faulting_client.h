// A client that causes a fault in the middle of a call. It runs in a process of its own, because
// the fault must end that process.

#ifndef PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_FAULTING_CLIENT_H
#define PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_FAULTING_CLIENT_H

#include <string>

namespace PlenxTest {

/// Exit codes of the faulting client.
enum FaultingClientExit : int {
    kCallReturned = 10,  // the guard took the fault
    kFaultGotOut = 11,   // the fault went up to the process's last filter, as it must
    kOtherExceptionGotOut = 12,
};

/// @param fault  "message": the message cannot be read. "allocation": the allocation of the reply
///               writes to an invalid address.
int RunFaultingClient(const std::string& fault, const std::string& endpoint);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_FAULTING_CLIENT_H
