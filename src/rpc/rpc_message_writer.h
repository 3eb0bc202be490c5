// An RpcMessageWriter builds one RPC message, a flat little-endian buffer.
//
//     0            uint32  size of the whole message
//     4            uint32  number of arguments
//     8 + 12 * i   uint32  type tag, uint32 offset, uint32 size of argument i
//     8 + 12 * n           the arguments' bytes, one after the other
//
// Write the arguments in index order. Every write that fails logs one line and returns
// kMessageCheckFailed; nothing has changed then. Only one thread may use an object.

#ifndef PLENXSDK_RPC_RPC_MESSAGE_WRITER_H
#define PLENXSDK_RPC_RPC_MESSAGE_WRITER_H

#include <cstdint>
#include <string>
#include <string_view>

#include "rpc/message_block.h"
#include "rpc/rpc_message_layout.h"

namespace DistributedFs {

class RpcMessageWriter {
public:
    /// size is that of the whole message in bytes, and args is the number of arguments. Every write
    /// fails if there is not room for at least one byte of data, which is logged here, or if there
    /// is no memory for the message, which is not.
    RpcMessageWriter(std::int32_t size, std::int32_t args);
    RpcMessageWriter(const RpcMessageWriter&) = delete;
    RpcMessageWriter& operator=(const RpcMessageWriter&) = delete;

    std::int32_t WriteInt32(std::uint32_t index, std::int32_t value);
    std::int32_t WriteInt64(std::uint32_t index, std::int64_t value);
    /// Writes the bytes and one NUL after them, and keeps embedded NULs.
    std::int32_t WriteString(std::uint32_t index, std::string value);
    /// bytes may be null when length is 0.
    std::int32_t WriteInt8Array(std::uint32_t index, const std::uint8_t* bytes,
                                std::int32_t length);

    /// Returns the finished message, which the writer owns, or null when construction failed. Bytes
    /// that were not written are zero.
    const std::uint8_t* Buffer() noexcept;
    std::int32_t Size() const noexcept { return rpcMsgSize_; }

private:
    std::int32_t Write(std::string_view function, std::uint32_t index, RpcArgType type,
                       const void* data, std::int64_t size);
    bool HasRoom(std::uint32_t index, std::int64_t size) const noexcept;

    MessageBlock rpcMsgBuf_;
    std::int32_t rpcMsgArgs_;
    std::int32_t rpcMsgSize_;
    std::int32_t argCursor_;
    std::int32_t msgCursor_;
};

}  // namespace DistributedFs

#endif  // PLENXSDK_RPC_RPC_MESSAGE_WRITER_H
