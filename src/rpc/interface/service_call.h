/* The one call of a service's procedure, guarded against what the RPC runtime raises.
 *
 * C, because the guard is a structured exception handler that g++ does not have; the file
 * is built by clang. */

#ifndef PLENXSDK_RPC_INTERFACE_SERVICE_CALL_H
#define PLENXSDK_RPC_INTERFACE_SERVICE_CALL_H

#include <windows.h>

#include <rpc.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The implicit binding handle of the service interface, one for the process. */
extern RPC_BINDING_HANDLE plenxServiceBinding;

typedef struct PlenxServiceReply {
    int raised;                  /* non-zero: an exception came instead of an answer */
    unsigned long exceptionCode; /* of that exception, any 32-bit value */
    long result;                 /* of the procedure */
    long size;            /* as the peer states it: may be negative, or lie when block is null */
    unsigned char* block; /* to be released with MIDL_user_free when not null */
} PlenxServiceReply;

/* Calls ServiceMessage through plenxServiceBinding. msg must not be null. After an exception
 * reply->size is 0 and reply->block null. A hardware fault of this process is not taken. */
void PlenxCallService(long msgType, long msgSize, const unsigned char* msg,
                      PlenxServiceReply* reply);

#ifdef __cplusplus
}
#endif

#endif
