/* The client of the service interface: the one call of a service's procedure, guarded against
 * what the RPC runtime raises.
 *
 * There is one binding handle for the process, so one thread at a time may bind, call and
 * release. */

#ifndef PLENXSDK_RPC_INTERFACE_SERVICE_CALL_H
#define PLENXSDK_RPC_INTERFACE_SERVICE_CALL_H

#include <windows.h>

#include <rpc.h>

#include "rpc/interface/message_reply.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The implicit binding handle of the interface; to be filled before a call. */
extern RPC_BINDING_HANDLE plenxServiceBinding;

/* The client's description of the interface. */
extern RPC_IF_HANDLE plenxServiceClientInterface;

typedef PlenxMessageReply PlenxServiceReply;

/* Calls ServiceMessage through plenxServiceBinding. msg must not be null. A memory fault of
 * this process is not taken; the few faults that carry no parameters (a division by zero) cannot
 * be told from what the runtime raises. */
void PlenxCallService(long msgType, long msgSize, const unsigned char* msg,
                      PlenxServiceReply* reply);

#ifdef __cplusplus
}
#endif

#endif
