/* C, because the guard is a structured exception handler, which g++ does not have; clang
 * builds this file. */

#include "rpc/interface/guarded_call.h"

enum { MESSAGE_PROCEDURE = 0 };

/* Takes what was raised by software, whatever its code: a peer's fault travels back as any
 * 32-bit value, that of an access violation included, and the runtime raises it without
 * parameters. An access violation of our own carries parameters; hiding it would be worse
 * than failing, so it searches on, and with it every C++ exception.
 *
 * The code is taken here: inside the handler block it is no longer to be had everywhere. */
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
        /* The handle is implicit: nothing stands for it among the arguments. */
        const CLIENT_CALL_RETURN result =
            NdrClientCall3((MIDL_STUBLESS_PROXY_INFO*)proxyInfo, MESSAGE_PROCEDURE, NULL, msgType,
                           msgSize, msg, &size, &block);
        reply->result = (long)result.Simple;
        reply->size = size;
        reply->block = block;
    } __except (TakeRaised(GetExceptionInformation(), &code)) {
        /* size and block may have been touched; neither means anything now. */
        reply->raised = 1;
        reply->exceptionCode = code;
    }
}
