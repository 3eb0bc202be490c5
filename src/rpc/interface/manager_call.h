/* The client of the manager interface, which is the side of the services. It calls the library's
 * procedure and catches the exceptions of the RPC runtime.
 *
 * The process has one binding handle, so only one thread at a time may bind, call and release. */

#ifndef PLENXSDK_RPC_INTERFACE_MANAGER_CALL_H
#define PLENXSDK_RPC_INTERFACE_MANAGER_CALL_H

#include <windows.h>

#include <rpc.h>

#include "rpc/interface/message_reply.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The implicit binding handle of the interface. Fill it before a call. */
extern RPC_BINDING_HANDLE plenxManagerBinding;

/* The client's description of the interface. */
extern RPC_IF_HANDLE plenxManagerClientInterface;

typedef PlenxMessageReply PlenxManagerReply;

/* Calls HandleServiceMessage through plenxManagerBinding. msg must not be null. The guard lets a
 * memory fault of this process through. It cannot distinguish the few faults without parameters (a
 * division by zero) from the exceptions of the runtime. */
void PlenxCallManager(long msgType, long msgSize, const unsigned char* msg,
                      PlenxManagerReply* reply);

#ifdef __cplusplus
}
#endif

#endif
