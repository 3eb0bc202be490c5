/* The server of the service interface, which is the side of the services. A program that serves it
 * registers plenxServiceInterface and defines the server routine. */

#ifndef PLENXSDK_RPC_INTERFACE_SERVICE_INTERFACE_H
#define PLENXSDK_RPC_INTERFACE_SERVICE_INTERFACE_H

#include <windows.h>

#include <rpc.h>

#ifdef __cplusplus
extern "C" {
#define PLENX_NOEXCEPT noexcept
#else
#define PLENX_NOEXCEPT
#endif

/* Goes to RpcServerRegisterIf. */
extern RPC_IF_HANDLE plenxServiceInterface;

/* Answers one call of a client. It runs on threads of the RPC runtime, several at once. msg is the
 * received buffer, which is not aligned and is invalid after the return. *resp must become a block
 * of MIDL_user_allocate, which the runtime releases, or null. The result goes to the client. The
 * caller is C, so no C++ exception may get out. */
long PlenxHandleServiceMessage(long msgType, long msgSize, unsigned char* msg, long* respSize,
                               unsigned char** resp) PLENX_NOEXCEPT;

#undef PLENX_NOEXCEPT

#ifdef __cplusplus
}
#endif

#endif
