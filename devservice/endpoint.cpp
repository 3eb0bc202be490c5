#include "endpoint.h"

#include <windows.h>

#include <rpc.h>

#include <algorithm>

#include "peer.h"
#include "rpc/interface/rpc_memory.h"
#include "rpc/interface/service_interface.h"

namespace PlenxService {
namespace {

constexpr unsigned kMostCalls = 10;

Peer* servingPeer = nullptr;  // set before the first call can come in

}  // namespace

long Serve(const std::wstring& endpoint, Peer& peer) {
    servingPeer = &peer;
    std::wstring protocol = L"ncalrpc";
    std::wstring name = endpoint;
    RPC_STATUS status =
        RpcServerUseProtseqEpW(reinterpret_cast<RPC_WSTR>(protocol.data()), kMostCalls,
                               reinterpret_cast<RPC_WSTR>(name.data()), nullptr);
    if (status == RPC_S_OK) {
        status = RpcServerRegisterIf(plenxServiceInterface, nullptr, nullptr);
    }
    if (status == RPC_S_OK) {
        status = RpcServerListen(1, kMostCalls, TRUE);
    }
    return status;
}

void StopServing() {
    RpcMgmtStopServerListening(nullptr);
}

}  // namespace PlenxService

unsigned long PlenxAnswerRequest(long msgType, long msgSize, const unsigned char* msg,
                                 long* respSize, unsigned char** resp, long* result) noexcept try {
    *respSize = 0;
    *resp = nullptr;
    *result = 0;
    const PlenxService::Answer answer = PlenxService::servingPeer->AnswerTo(msgType, msg, msgSize);
    if (answer.reply) {
        *resp = static_cast<unsigned char*>(MIDL_user_allocate(answer.reply->size()));
        if (!*resp) {
            *result = RPC_S_OUT_OF_MEMORY;
            return 0;
        }
        std::copy(answer.reply->begin(), answer.reply->end(), *resp);
    }
    *respSize = answer.statedSize;
    *result = answer.result;
    return answer.fault;
} catch (...) {
    *result = RPC_S_CALL_FAILED;
    return 0;
}
