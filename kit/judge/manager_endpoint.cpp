#include "judge/manager_endpoint.h"

#include <windows.h>

#include <rpc.h>

#include <algorithm>

#include "judge/bring_up.h"
#include "judge/inbox.h"
#include "rpc/interface/manager_interface.h"
#include "rpc/interface/rpc_memory.h"
#include "wire/local_binding.h"

namespace PlenxJudge {
namespace {

constexpr unsigned kMostCalls = 10;
const char* const kManager = "Manager";

Inbox* servedInbox = nullptr;  // set before the first call can come in

RPC_STATUS Listen() {
    std::wstring protocol = L"ncalrpc";
    std::wstring endpoint = L"Manager";
    RPC_STATUS status =
        RpcServerUseProtseqEpW(reinterpret_cast<RPC_WSTR>(protocol.data()), kMostCalls,
                               reinterpret_cast<RPC_WSTR>(endpoint.data()), nullptr);
    if (status == RPC_S_OK) {
        status = RpcServerRegisterIf(plenxManagerInterface, nullptr, nullptr);
    }
    return status == RPC_S_OK ? RpcServerListen(1, kMostCalls, TRUE) : status;
}

}  // namespace

bool IsServed(const std::string& endpoint) {
    const PlenxWire::LocalBinding binding({endpoint.begin(), endpoint.end()});
    return binding.Status() == RPC_S_OK && RpcMgmtIsServerListening(binding.Get()) == RPC_S_OK;
}

void ServeManager(Inbox& inbox) {
    if (IsServed(kManager)) {
        throw Refusal("somebody serves \"Manager\": a host runs, or another judge");
    }
    servedInbox = &inbox;
    if (const RPC_STATUS status = Listen(); status != RPC_S_OK) {
        throw Refusal("cannot serve \"Manager\", error " + std::to_string(status));
    }
}

void HideManager(bool hidden) {
    if (hidden) {
        RpcServerUnregisterIf(plenxManagerInterface, nullptr, FALSE);
    } else {
        RpcServerRegisterIf(plenxManagerInterface, nullptr, nullptr);
    }
}

}  // namespace PlenxJudge

unsigned long PlenxJudgeTakeNotification(long msgType, long msgSize, const unsigned char* msg,
                                         long* respSize, unsigned char** resp,
                                         long* result) noexcept try {
    *respSize = 0;
    *resp = nullptr;
    *result = 0;
    const PlenxJudge::ManagerAnswer answer = PlenxJudge::servedInbox->Take(
        static_cast<std::int32_t>(msgType), {msg, msg + std::max(msgSize, 0L)});
    if (!answer.reply.empty()) {
        *resp = static_cast<unsigned char*>(MIDL_user_allocate(answer.reply.size()));
        if (*resp == nullptr) {
            *result = RPC_S_OUT_OF_MEMORY;
            return 0;
        }
        std::copy(answer.reply.begin(), answer.reply.end(), *resp);
    }
    *respSize = answer.size;
    *result = answer.result;
    return answer.fault;
} catch (...) {
    *result = RPC_S_CALL_FAILED;
    return 0;
}
