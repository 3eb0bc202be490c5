// An RpcMessageReader takes one RPC message apart (rpc_message_writer.h shows the layout). The
// bytes come from another process, so it never trusts them.
//
// Read the arguments in index order. Every read that fails logs one line and returns
// kMessageCheckFailed; nothing has changed then. Only one thread may use an object.

#ifndef PLENXSDK_RPC_RPC_MESSAGE_READER_H
#define PLENXSDK_RPC_RPC_MESSAGE_READER_H

#include <cstdint>
#include <string>
#include <string_view>

#include "rpc/message_block.h"
#include "rpc/rpc_message_layout.h"

namespace DistributedFs {

class RpcMessageReader {
public:
    /// Copies size bytes of the buffer. Every read fails if they do not contain a message, which is
    /// logged here, or if there is no memory for the copy, which is not.
    RpcMessageReader(const std::uint8_t* buffer, std::int32_t size);
    RpcMessageReader(const RpcMessageReader&) = delete;
    RpcMessageReader& operator=(const RpcMessageReader&) = delete;

    std::int32_t ReadInt32(std::uint32_t index, std::int32_t* out);
    /// Reads the argument's bytes without the last one, which is not checked.
    std::int32_t ReadString(std::uint32_t index, std::string* out);
    /// The argument's size must be length. The caller releases *out with delete[]; on failure *out
    /// is null.
    std::int32_t ReadInt8Array(std::uint32_t index, std::uint8_t** out, std::int32_t length);

private:
    struct Descriptor {
        std::uint32_t type;
        std::uint32_t offset;
        std::uint32_t size;
    };

    bool FindDescriptor(std::string_view function, std::uint32_t index, bool hasOut,
                        RpcArgType type, Descriptor& found) const;
    bool IsInside(const Descriptor& argument) const noexcept;
    void LogWrongRange(std::string_view function, const Descriptor& argument) const noexcept;
    void Advance(const Descriptor& argument) noexcept;

    MessageBlock rpcMsgBuf_;
    std::int32_t rpcMsgArgs_;
    std::int32_t rpcMsgSize_;
    std::int32_t argCursor_;
    std::int32_t msgCursor_;
};

}  // namespace DistributedFs

#endif  // PLENXSDK_RPC_RPC_MESSAGE_READER_H
