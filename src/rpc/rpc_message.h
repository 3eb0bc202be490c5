// An RpcMessage carries one call, in either direction.

#ifndef PLENXSDK_RPC_RPC_MESSAGE_H
#define PLENXSDK_RPC_RPC_MESSAGE_H

#include <cstdint>
#include <memory>

namespace DistributedFs {

struct RpcMessage {
    std::int32_t msgType = 0;
    std::int32_t msgSize = 0;
    /// Belongs to the writer that built it, or to the RPC runtime.
    const std::uint8_t* msgBuffer = nullptr;
    std::int32_t respSize = 0;
    std::unique_ptr<std::uint8_t[]> respBuffer;
};

}  // namespace DistributedFs

#endif  // PLENXSDK_RPC_RPC_MESSAGE_H
