// The server half of RpcManager. It serves the endpoint "Manager" and gives each call of a service
// to the handler of its message id.

#include <windows.h>

#include <rpc.h>

#include <cstddef>
#include <cstring>
#include <new>

#include "common/log.h"
#include "common/result_code.h"
#include "common/utf8.h"
#include "rpc/interface/manager_interface.h"
#include "rpc/interface/rpc_memory.h"
#include "rpc/rpc_manager.h"

namespace DistributedFs {
namespace {

constexpr unsigned kMinimumThreads = 1;
constexpr unsigned kMaximumCalls = 10;

enum NotificationId : std::int32_t {
    kSendLocalMessage = 9,
    kConnectNotify = 10,
    kDisconnectNotify = 11,
    kReconnectNotify = 12,
    kLinkTypeQuery = 13,
    kStatusNotify = 14,
    kErrorNotify = 15,
    kDiskNameNotify = 16,
    kUpdateWindowsExplore = 17,
    kExploreFlushNotify = 18,
};

// Hands the reply to the runtime, which releases it through the interface's own routine.
std::int32_t HandOver(const RpcMessage& message, std::int32_t* respSize, std::uint8_t** resp) {
    const auto size = static_cast<std::size_t>(message.respSize);
    auto* const block = static_cast<std::uint8_t*>(MIDL_user_allocate(size));
    if (block == nullptr) {
        return kReplyNotAllocated;
    }
    std::memcpy(block, message.respBuffer.get(), size);
    *respSize = message.respSize;
    *resp = block;
    return kSuccess;
}

}  // namespace

void RpcManager::Start() {
    constexpr std::string_view kFunction = "DistributedFs::RpcManager::Start";
    std::wstring endpoint = Utf8ToWide("Manager");
    wchar_t protocol[] = L"ncalrpc";
    RPC_STATUS status =
        RpcServerUseProtseqEpW(reinterpret_cast<RPC_WSTR>(protocol), kMaximumCalls,
                               reinterpret_cast<RPC_WSTR>(endpoint.data()), nullptr);
    if (status != RPC_S_OK) {
        LogError(kFunction, "[PLENXSDK] rpc use protseq error ", status);
        return;
    }
    status = RpcServerRegisterIf(plenxManagerInterface, nullptr, nullptr);
    if (status != RPC_S_OK) {
        LogError(kFunction, "[PLENXSDK] rpc server register error ", status);
        return;
    }
    status = RpcServerListen(kMinimumThreads, kMaximumCalls, 0);
    if (status != RPC_S_OK) {
        LogError(kFunction, "[PLENXSDK] rpc start server listen error ", status);
    }
}

std::int32_t RpcManager::HandleServiceMessage(std::int32_t msgType, std::int32_t msgSize,
                                              const std::uint8_t* msg, std::int32_t* respSize,
                                              std::uint8_t** resp) noexcept {
    *respSize = 0;
    *resp = nullptr;
    // The caller is the RPC runtime, which must not get an exception.
    try {
        RpcMessage message;
        message.msgType = msgType;
        message.msgSize = msgSize;
        message.msgBuffer = msg;
        const std::int32_t result = Dispatch(message);
        return result == kSuccess ? HandOver(message, respSize, resp) : result;
    } catch (const std::bad_alloc&) {
        return kReplyNotAllocated;
    } catch (...) {
        return RPC_S_CALL_FAILED;
    }
}

std::int32_t RpcManager::Dispatch(RpcMessage& message) {
    switch (message.msgType) {
    case kSendLocalMessage:
        return SendLocalMessage(message);
    case kConnectNotify:
        return ConnectNotify(message);
    case kDisconnectNotify:
        return DisconnectNotify(message);
    case kReconnectNotify:
        return ReconnectNotify(message);
    case kLinkTypeQuery:
        return LinkTypeQuery(message);
    case kStatusNotify:
        return StatusNotify(message);
    case kErrorNotify:
        return ErrorNotify(message);
    case kDiskNameNotify:
        return DiskNameNotify(message);
    case kUpdateWindowsExplore:
        return UpdateWindowsExplore(message);
    case kExploreFlushNotify:
        // A service never sees this one fail, so the reply is always the default one.
        try {
            ExploreFlushNotify(message);
        } catch (...) {
        }
        message.respBuffer.reset();
        return RpcDefaultResponse(message);
    default:
        return RpcDefaultResponse(message);
    }
}

RpcManager& RpcManager::GetInstance() {
    static RpcManager instance;
    return instance;
}

}  // namespace DistributedFs

// The runtime calls this on one of its own threads.
long PlenxHandleManagerMessage(long msgType, long msgSize, unsigned char* msg, long* respSize,
                               unsigned char** resp) noexcept {
    std::int32_t size = 0;
    const std::int32_t result = DistributedFs::RpcManager::GetInstance().HandleServiceMessage(
        static_cast<std::int32_t>(msgType), static_cast<std::int32_t>(msgSize), msg, &size, resp);
    *respSize = size;
    return result;
}
