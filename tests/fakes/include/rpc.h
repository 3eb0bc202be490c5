/* The part of <rpc.h> that the product uses, for builds on Linux. The functions are those of
 * the fake RPC runtime in tests/fakes/rpc. */

#ifndef PLENXSDK_FAKES_RPC_H
#define PLENXSDK_FAKES_RPC_H

#include <windows.h>

#ifdef __cplusplus
extern "C" {
#endif

#define RPC_ENTRY
#define __RPC_USER
#define __RPC_API

typedef int32_t RPC_STATUS;
typedef unsigned long error_status_t;
typedef void* I_RPC_HANDLE;
typedef I_RPC_HANDLE RPC_BINDING_HANDLE;
typedef RPC_BINDING_HANDLE handle_t;
typedef void* RPC_IF_HANDLE;
typedef void RPC_MGR_EPV;
/* On Windows this is not a wchar_t* either, so the product must cast in both worlds. */
typedef unsigned short* RPC_WSTR;

typedef struct _UUID {
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];
} UUID;

#define RPC_S_OK 0
#define RPC_S_OUT_OF_MEMORY 14
#define RPC_S_INVALID_STRING_BINDING 1700
#define RPC_S_ALREADY_LISTENING 1713
#define RPC_S_CANT_CREATE_ENDPOINT 1720
#define RPC_S_SERVER_UNAVAILABLE 1722
#define RPC_S_CALL_FAILED 1726
#define RPC_S_DUPLICATE_ENDPOINT 1740

RPC_STATUS RPC_ENTRY RpcStringBindingComposeW(RPC_WSTR objectUuid, RPC_WSTR protocol,
                                              RPC_WSTR networkAddress, RPC_WSTR endpoint,
                                              RPC_WSTR options, RPC_WSTR* stringBinding);
RPC_STATUS RPC_ENTRY RpcBindingFromStringBindingW(RPC_WSTR stringBinding,
                                                  RPC_BINDING_HANDLE* binding);
RPC_STATUS RPC_ENTRY RpcStringFreeW(RPC_WSTR* string);
RPC_STATUS RPC_ENTRY RpcBindingFree(RPC_BINDING_HANDLE* binding);

RPC_STATUS RPC_ENTRY RpcServerUseProtseqEpW(RPC_WSTR protocol, unsigned int maximumCalls,
                                            RPC_WSTR endpoint, void* securityDescriptor);
RPC_STATUS RPC_ENTRY RpcServerRegisterIf(RPC_IF_HANDLE interfaceHandle, UUID* managerType,
                                         RPC_MGR_EPV* entryPoints);
RPC_STATUS RPC_ENTRY RpcServerListen(unsigned int minimumThreads, unsigned int maximumCalls,
                                     unsigned int doNotWait);

void* __RPC_USER MIDL_user_allocate(size_t size);
void __RPC_USER MIDL_user_free(void* block);

#ifdef __cplusplus
}
#endif

#endif
