// These functions call the library's own endpoint as the RPC runtime does.

#ifndef UNIT_RPC_MANAGER_CALLS_H
#define UNIT_RPC_MANAGER_CALLS_H

#include <cstdint>

#include "rpc/fake_rpc.h"
#include "rpc/rpc_manager.h"

struct ManagerReply {
    std::int32_t result;
    std::int32_t size;
    bool hasBlock;
    Bytes bytes;
};

/// Calls the endpoint, keeps the reply and releases its block as the runtime does.
inline ManagerReply CallManager(std::int32_t msgType, const std::uint8_t* msg,
                                std::int32_t msgSize) {
    std::uint8_t stale = 0;
    std::int32_t size = 99;  // the call must set both
    std::uint8_t* block = &stale;
    const std::int32_t result = DistributedFs::RpcManager::GetInstance().HandleServiceMessage(
        msgType, msgSize, msg, &size, &block);
    ManagerReply reply{result, size, block != nullptr, {}};
    if (block != nullptr) {
        reply.bytes.assign(block, block + size);
        FakeRpc::Get().Free(block);  // stops the test if the block is not one of the interface
    }
    return reply;
}

inline ManagerReply CallManager(std::int32_t msgType, const Bytes& msg) {
    return CallManager(msgType, msg.data(), static_cast<std::int32_t>(msg.size()));
}

#endif  // UNIT_RPC_MANAGER_CALLS_H
