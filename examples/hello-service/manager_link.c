#include "manager_link.h"

#include <windows.h>

#include <stdlib.h>

#include "manager.h"

/* The stubs of both directions call these two. */
void* __RPC_USER midl_user_allocate(size_t size) {
    return malloc(size);
}

void __RPC_USER midl_user_free(void* block) {
    free(block);
}

static int TakeCode(DWORD exception, DWORD* code) {
    *code = exception;
    return EXCEPTION_EXECUTE_HANDLER;
}

/* The runtime raises an exception when a call does not get through. The filter reads its code,
 * because the handler cannot read it on every system. */
static DWORD CallThroughBinding(int32_t id, unsigned char* message, uint32_t size) {
    DWORD code = 0;
    long respSize = 0;
    unsigned char* resp = NULL;
    RpcTryExcept {
        code = HandleServiceMessage(id, (long)size, message, &respSize, &resp);
        midl_user_free(resp);
    }
    RpcExcept(TakeCode(RpcExceptionCode(), &code)) {}
    RpcEndExcept;
    return code;
}

unsigned long CallManager(int32_t id, unsigned char* message, uint32_t size) {
    RPC_WSTR text = NULL;
    RPC_STATUS status = RpcStringBindingComposeW(NULL, (RPC_WSTR)L"ncalrpc", NULL,
                                                 (RPC_WSTR)L"Manager", NULL, &text);
    if (status != RPC_S_OK) {
        return (DWORD)status;
    }
    status = RpcBindingFromStringBindingW(text, &plenxManagerBinding);
    if (status == RPC_S_OK) {
        status = (RPC_STATUS)CallThroughBinding(id, message, size);
        RpcBindingFree(&plenxManagerBinding);
    }
    RpcStringFreeW(&text);
    return (DWORD)status;
}

int IsNobodyThere(unsigned long code) {
    return code == RPC_S_SERVER_UNAVAILABLE || code == RPC_S_UNKNOWN_IF ||
           code == RPC_S_NOT_LISTENING;
}
