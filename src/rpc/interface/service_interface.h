/* The server of the service interface, which is the services' side of it.
 *
 * Whoever serves the interface registers plenxServiceInterface and defines the server routine. */

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

/* For RpcServerRegisterIf. */
extern RPC_IF_HANDLE plenxServiceInterface;

/* One call of a client; runs on a thread of the RPC runtime, several at once. msg is the
 * received buffer, gone after the return and not aligned. *resp is to be a block of
 * MIDL_user_allocate, which the runtime releases, or null. The result goes to the client.
 * The caller is C: no C++ exception may get out. */
long PlenxHandleServiceMessage(long msgType, long msgSize, unsigned char* msg, long* respSize,
                               unsigned char** resp) PLENX_NOEXCEPT;

#undef PLENX_NOEXCEPT

#ifdef __cplusplus
}
#endif

#endif
