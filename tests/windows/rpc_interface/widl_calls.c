#include "rpc_interface/widl_calls.h"

#include <rpcndr.h>

/* These prototypes stand in the compiler's own headers, which would bring in much more. */
error_status_t WidlCall_ServiceMessage(long msgType, long msgSize, unsigned char msg[],
                                       long* respSize, unsigned char** resp);
error_status_t WidlCall_HandleServiceMessage(long msgType, long msgSize, unsigned char msg[],
                                             long* respSize, unsigned char** resp);

typedef error_status_t (*Procedure)(long, long, unsigned char[], long*, unsigned char**);

static int TakeAll(const EXCEPTION_POINTERS* exception, unsigned long* code) {
    *code = exception->ExceptionRecord->ExceptionCode;
    return EXCEPTION_EXECUTE_HANDLER;
}

static void Call(Procedure procedure, long msgType, long msgSize, const unsigned char* msg,
                 PlenxMessageReply* reply) {
    const PlenxMessageReply nothing = {0};
    unsigned long code = 0;
    *reply = nothing;
    __try {
        reply->result =
            (long)procedure(msgType, msgSize, (unsigned char*)msg, &reply->size, &reply->block);
    } __except (TakeAll(GetExceptionInformation(), &code)) {
        *reply = nothing;
        reply->raised = 1;
        reply->exceptionCode = code;
    }
}

void WidlCallService(long msgType, long msgSize, const unsigned char* msg,
                     PlenxMessageReply* reply) {
    Call(WidlCall_ServiceMessage, msgType, msgSize, msg, reply);
}

void WidlCallManager(long msgType, long msgSize, const unsigned char* msg,
                     PlenxMessageReply* reply) {
    Call(WidlCall_HandleServiceMessage, msgType, msgSize, msg, reply);
}
