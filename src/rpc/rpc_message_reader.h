// RpcMessageReader: takes one RPC message apart (the layout stands in
// rpc_message_writer.h). The bytes come from another process and are never trusted.
//
// Arguments are read in index order. Every failure logs one line and returns
// kMessageCheckFailed; nothing has changed then. One object, one thread.

#ifndef PLENXSDK_RPC_RPC_MESSAGE_READER_H
#define PLENXSDK_RPC_RPC_MESSAGE_READER_H

#include <cstdint>
#include <memory>
#include <string>

#include "rpc/rpc_message_layout.h"

namespace DistributedFs {

class RpcMessageReader {
public:
    /// Copies size bytes of the buffer. When they hold no message, every read fails.
    RpcMessageReader(const std::uint8_t* buffer, std::int32_t size);
    RpcMessageReader(const RpcMessageReader&) = delete;
    RpcMessageReader& operator=(const RpcMessageReader&) = delete;

    std::int32_t ReadInt32(std::uint32_t index, std::int32_t* out);
    /// The argument's bytes without the last one, which is not looked at.
    std::int32_t ReadString(std::uint32_t index, std::string* out);
    /// length: what the argument's size must be. The caller releases *out with
    /// delete[]; on failure *out is null.
    std::int32_t ReadInt8Array(std::uint32_t index, std::uint8_t** out, std::int32_t length);

private:
    struct Argument {
        const std::uint8_t* data;
        std::uint32_t size;
    };

    // The checks that all reads share. expectedSize: below 0 for any size from 1.
    bool FindArgument(const char* function, std::uint32_t index, RpcArgType type,
                      Argument& found);
    void Advance(std::uint32_t size) noexcept;

    std::unique_ptr<std::uint8_t[]> rpcMsgBuf_;
    std::int32_t rpcMsgArgs_;
    std::int32_t rpcMsgSize_;
    std::int32_t argCursor_;
    std::int32_t msgCursor_;
};

}  // namespace DistributedFs

#endif  // PLENXSDK_RPC_RPC_MESSAGE_READER_H
