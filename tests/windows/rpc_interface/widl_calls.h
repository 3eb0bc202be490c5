/* Calls through the IDL compiler's stubs, guarded like the library's own. */

#ifndef PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_WIDL_CALLS_H
#define PLENXSDK_TESTS_WINDOWS_RPC_INTERFACE_WIDL_CALLS_H

#include <windows.h>

#include <rpc.h>

#include "rpc/interface/message_reply.h"

#ifdef __cplusplus
extern "C" {
#endif

extern RPC_BINDING_HANDLE widlServiceBinding;
extern RPC_BINDING_HANDLE widlManagerBinding;

extern RPC_IF_HANDLE WidlServe_PlenxService_v1_0_s_ifspec;
extern RPC_IF_HANDLE WidlServe_PlenxManager_v1_0_s_ifspec;

void WidlCallService(long msgType, long msgSize, const unsigned char* msg,
                     PlenxMessageReply* reply);
void WidlCallManager(long msgType, long msgSize, const unsigned char* msg,
                     PlenxMessageReply* reply);

#ifdef __cplusplus
}
#endif

#endif
