#include "service_link.h"

#include <windows.h>

#include <stdint.h>

#include "message.h"
#include "sender.h"
#include "service.h"

enum { MOST_CALLS = 10 };

/* The message belongs to the runtime, so this copies the text that is needed later. */
static int32_t GroupCreated(const unsigned char* message) {
    const char* group;
    uint32_t length;
    uint32_t size;
    unsigned char* notification;
    FirstText(message, &group, &length);
    notification = NewTextMessage(group, length, &size);
    return notification && SendLater(CONNECT_NOTIFY, notification, size) ? TAKEN : NO_MEMORY;
}

/* Returns the code for the reply. */
static int32_t AnswerTo(int32_t id, const unsigned char* message, uint32_t size) {
    const int32_t verdict = Judge(id, message, size);
    return verdict == TAKEN && id == CREATE_GROUP ? GroupCreated(message) : verdict;
}

/* The runtime calls this for each request. The interface prescribes the name. */
error_status_t ServiceMessage(long msgType, long msgSize, byte msg[], long* respSize, byte** resp) {
    const int32_t result = AnswerTo(msgType, msg, msgSize > 0 ? (uint32_t)msgSize : 0);
    *respSize = 0;
    *resp = midl_user_allocate(REPLY_SIZE);
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
