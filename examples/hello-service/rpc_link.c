#include "rpc_link.h"

#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "manager.h"
#include "message.h"
#include "service.h"

enum { MOST_CALLS = 10, TRIES = 50, BETWEEN_TRIES = 100, BROKEN_MESSAGE = 1001 };

/* Of the stubs. */
void* __RPC_USER MIDL_user_allocate(size_t size) {
    return malloc(size);
}

void __RPC_USER MIDL_user_free(void* block) {
    free(block);
}

static int TakeCode(DWORD exception, DWORD* code) {
    *code = exception;
    return EXCEPTION_EXECUTE_HANDLER;
}

/* The runtime raises an exception when a call does not get through. Its code is taken in the
 * filter: later it is not to be had everywhere. */
static DWORD CallThroughBinding(long id, unsigned char* message, uint32_t size) {
    DWORD code = 0;
    long respSize = 0;
    unsigned char* resp = NULL;
    RpcTryExcept {
        code = HandleServiceMessage(id, (long)size, message, &respSize, &resp);
        MIDL_user_free(resp);
    }
    RpcExcept(TakeCode(RpcExceptionCode(), &code)) {}
    RpcEndExcept;
    return code;
}

/* One notification. Returns 0, or why it did not get through. */
static DWORD CallManager(long id, unsigned char* message, uint32_t size) {
    static SRWLOCK oneAtATime = SRWLOCK_INIT; /* there is one binding handle */
    RPC_WSTR text = NULL;
    RPC_STATUS status = RpcStringBindingComposeW(NULL, (RPC_WSTR)L"ncalrpc", NULL,
                                                 (RPC_WSTR)L"Manager", NULL, &text);
    if (status != RPC_S_OK) {
        return (DWORD)status;
    }
    AcquireSRWLockExclusive(&oneAtATime);
    status = RpcBindingFromStringBindingW(text, &plenxManagerBinding);
    if (status == RPC_S_OK) {
        status = (RPC_STATUS)CallThroughBinding(id, message, size);
        RpcBindingFree(&plenxManagerBinding);
    }
    ReleaseSRWLockExclusive(&oneAtATime);
    RpcStringFreeW(&text);
    return (DWORD)status;
}

/* The host may not listen yet. */
static int IsNobodyThere(DWORD code) {
    return code == RPC_S_SERVER_UNAVAILABLE || code == RPC_S_UNKNOWN_IF ||
           code == RPC_S_NOT_LISTENING;
}

typedef struct Group {
    uint32_t length;
    char name[1];
} Group;

/* On a thread of its own, so that the request is answered meanwhile. */
static DWORD WINAPI TellConnected(void* argument) {
    Group* const group = argument;
    uint32_t size = 0;
    unsigned char* const message = NewTextMessage(group->name, group->length, &size);
    int tries = message ? TRIES : 0;
    while (tries-- > 0 && IsNobodyThere(CallManager(CONNECT_NOTIFY, message, size))) {
        Sleep(BETWEEN_TRIES);
    }
    free(message);
    free(group);
    return 0;
}

/* msg belongs to the runtime: what is needed later is copied. Returns the code of the reply. */
static int32_t GroupCreated(const unsigned char* msg, uint32_t size) {
    const char* name = NULL;
    uint32_t length = 0;
    Group* group;
    HANDLE thread;
    if (!FindFirstText(msg, size, &name, &length)) {
        return BROKEN_MESSAGE;
    }
    group = malloc(sizeof *group + length);
    if (!group) {
        return ERROR_OUTOFMEMORY;
    }
    group->length = length;
    memcpy(group->name, name, length);
    thread = CreateThread(NULL, 0, TellConnected, group, 0, NULL);
    if (!thread) {
        free(group);
        return ERROR_OUTOFMEMORY;
    }
    CloseHandle(thread);
    return 0;
}

/* Called by the runtime for each request; the name is the interface's. */
error_status_t ServiceMessage(long msgType, long msgSize, byte msg[], long* respSize, byte** resp) {
    const uint32_t size = msgSize > 0 ? (uint32_t)msgSize : 0;
    const int32_t result = msgType == CREATE_GROUP ? GroupCreated(msg, size) : 0;
    *respSize = 0;
    *resp = MIDL_user_allocate(REPLY_SIZE);
    if (!*resp) {
        return RPC_S_OUT_OF_MEMORY;
    }
    WriteReply(*resp, result);
    *respSize = REPLY_SIZE;
    return RPC_S_OK;
}

long Serve(const wchar_t* endpoint) {
    RPC_STATUS status =
        RpcServerUseProtseqEpW((RPC_WSTR)L"ncalrpc", MOST_CALLS, (RPC_WSTR)endpoint, NULL);
    if (status == RPC_S_OK) {
        status = RpcServerRegisterIf(PlenxService_v1_0_s_ifspec, NULL, NULL);
    }
    if (status == RPC_S_OK) {
        status = RpcServerListen(1, MOST_CALLS, TRUE);
    }
    return status;
}

void StopServing(void) {
    RpcMgmtStopServerListening(NULL);
}
