/* The server of the manager interface. A program that serves it registers plenxManagerInterface and
 * defines the server routine. */

#ifndef PLENXSDK_RPC_INTERFACE_MANAGER_INTERFACE_H
#define PLENXSDK_RPC_INTERFACE_MANAGER_INTERFACE_H

#include <windows.h>

#include <rpc.h>

#ifdef __cplusplus
extern "C" {
#define PLENX_NOEXCEPT noexcept
#else
#define PLENX_NOEXCEPT
#endif

/* Goes to RpcServerRegisterIf. */
extern RPC_IF_HANDLE plenxManagerInterface;

/* Answers one call of a client. It runs on threads of the RPC runtime, several at once. msg is the
 * received buffer, which is not aligned and is invalid after the return. *resp must become a block
 * of MIDL_user_allocate, which the runtime releases, or null. The result goes to the client. The
 * caller is C, so no C++ exception may get out. */
long PlenxHandleManagerMessage(long msgType, long msgSize, unsigned char* msg, long* respSize,
                               unsigned char** resp) PLENX_NOEXCEPT;

#undef PLENX_NOEXCEPT

#ifdef __cplusplus
}
#endif

#endif
