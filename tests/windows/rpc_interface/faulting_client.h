// A client that meets a fault of its own in the midst of a call, in a process of its own,
// because the fault has to end it.

#ifndef PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_FAULTING_CLIENT_H
#define PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_FAULTING_CLIENT_H

#include <string>

namespace PlenxTest {

/// Exit codes of the faulting client.
enum FaultingClientExit : int {
    kCallReturned = 10,  // the guard took the fault
    kFaultGotOut = 11,   // it went up to the process's last filter, as it has to
    kOtherExceptionGotOut = 12,
};

/// fault: "message" (the message cannot be read) or "allocation" (the allocation of the reply
/// writes to where nothing is).
int RunFaultingClient(const std::string& fault, const std::string& endpoint);

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_FAULTING_CLIENT_H
