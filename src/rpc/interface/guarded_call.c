/* This file is C, because the guard is a structured exception handler. g++ does not have these, so
 * clang builds the file. */

#include "rpc/interface/guarded_call.h"

enum { MESSAGE_PROCEDURE = 0 };

/* Catches every exception that software has raised without parameters, whatever its code. The
 * runtime raises a peer's fault like that, and the fault may have any 32-bit value, even that of an
 * access violation. An access violation of our own has parameters. Hiding it would be worse than
 * failing, so the search for a handler continues, as it does for every C++ exception.
 *
 * The filter reads the code, because the handler block cannot read it on every system. */
static int TakeRaised(const EXCEPTION_POINTERS* exception, unsigned long* code) {
    if (exception->ExceptionRecord->NumberParameters != 0) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    *code = exception->ExceptionRecord->ExceptionCode;
    return EXCEPTION_EXECUTE_HANDLER;
}

void PlenxGuardedCall(const MIDL_STUBLESS_PROXY_INFO* proxyInfo, long msgType, long msgSize,
                      const unsigned char* msg, PlenxMessageReply* reply) {
    const PlenxMessageReply nothing = {0};
    unsigned long code = 0;
    long size = 0;
    unsigned char* block = NULL;

    *reply = nothing;
    __try {
        /* The handle is implicit, so it is not among the arguments. */
        const CLIENT_CALL_RETURN result =
            NdrClientCall3((MIDL_STUBLESS_PROXY_INFO*)proxyInfo, MESSAGE_PROCEDURE, NULL, msgType,
                           msgSize, msg, &size, &block);
        reply->result = (long)result.Simple;
        reply->size = size;
        reply->block = block;
    } __except (TakeRaised(GetExceptionInformation(), &code)) {
        /* The call may have changed size and block, but they mean nothing now. */
        reply->raised = 1;
        reply->exceptionCode = code;
    }
}
