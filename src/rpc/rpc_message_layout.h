// The numbers of the RPC message layout. All integers are little-endian and unaligned.

#ifndef PLENXSDK_RPC_RPC_MESSAGE_LAYOUT_H
#define PLENXSDK_RPC_RPC_MESSAGE_LAYOUT_H

#include <cstdint>

namespace DistributedFs {

enum class RpcArgType : std::uint32_t { kInt32 = 2, kInt64 = 3, kString = 4, kInt8Array = 5 };

constexpr std::int64_t kRpcHeaderSize = 8;
constexpr std::int64_t kRpcDescriptorSize = 12;

/// Returns the offset of the data in a message of args arguments, computed without overflow.
constexpr std::int64_t RpcDataOffset(std::int64_t args) noexcept {
    return kRpcHeaderSize + kRpcDescriptorSize * args;
}

}  // namespace DistributedFs

#endif  // PLENXSDK_RPC_RPC_MESSAGE_LAYOUT_H
