#include "rpc_interface/faulting_client.h"

#include <windows.h>

#include "rpc/interface/service_call.h"
#include "rpc_interface/allocation_count.h"
#include "rpc_interface/calls.h"
#include "rpc_interface/server_routines.h"
#include "support/wide_text.h"

namespace PlenxTest {
namespace {

// Ends the process here, because otherwise the debugger would start, which takes long.
LONG WINAPI EndAtLastFilter(EXCEPTION_POINTERS* exception) {
    const bool fault = exception->ExceptionRecord->ExceptionCode == EXCEPTION_ACCESS_VIOLATION &&
                       exception->ExceptionRecord->NumberParameters == 2;
    TerminateProcess(GetCurrentProcess(), fault ? kFaultGotOut : kOtherExceptionGotOut);
    return EXCEPTION_EXECUTE_HANDLER;
}

void* FaultyAllocation() {
    Fault();
    return nullptr;
}

// Like a C++ exception and many others, this one carries more than its code.
void* RaiseWithParameters() {
    const ULONG_PTR parameter = 1;
    RaiseException(0xE0001234, 0, 1, &parameter);
    return nullptr;
}

}  // namespace

int RunFaultingClient(const std::string& fault, const std::string& endpoint) {
    SetUnhandledExceptionFilter(EndAtLastFilter);
    const Binding binding(Stubs::kOurs, Interface::kService, PlenxSupport::ToWide(endpoint));
    if (fault == "allocation") {
        const AllocationReplacement replacement(FaultyAllocation);
        binding.Call(kEcho, Pattern(24));
    } else if (fault == "raised-with-parameters") {
        const AllocationReplacement replacement(RaiseWithParameters);
        binding.Call(kEcho, Pattern(24));
    } else {
        PlenxServiceReply reply;
        PlenxCallService(kEcho, 24, reinterpret_cast<const unsigned char*>(16), &reply);
    }
    return kCallReturned;
}

}  // namespace PlenxTest
