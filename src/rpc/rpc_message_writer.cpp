#include "rpc/rpc_message_writer.h"

#include <cstring>
#include <new>

#include "common/log.h"
#include "common/result_code.h"

namespace DistributedFs {
namespace {

void Store32(std::uint8_t* at, std::int64_t value) {
    const auto word = static_cast<std::uint32_t>(value);
    std::memcpy(at, &word, sizeof(word));
}

}  // namespace

RpcMessageWriter::RpcMessageWriter(std::int32_t size, std::int32_t args)
    : rpcMsgArgs_(0), rpcMsgSize_(0), argCursor_(0), msgCursor_(0) {
    if (args < 0 || RpcDataOffset(args) >= size) {
        LogError("DistributedFs::RpcMessageWriter::RpcMessageWriter",
                 "[PLENXSDK] Short Message Size rpcMsgSize:", size, " rpcMsgArgs:", args);
        return;
    }
    rpcMsgBuf_.reset(new (std::nothrow) std::uint8_t[static_cast<std::size_t>(size)]());
    if (!rpcMsgBuf_) {
        return;
    }
    rpcMsgArgs_ = args;
    rpcMsgSize_ = size;
    msgCursor_ = static_cast<std::int32_t>(RpcDataOffset(args));
    Store32(&rpcMsgBuf_[0], size);
    Store32(&rpcMsgBuf_[4], args);
}

std::int32_t RpcMessageWriter::WriteInt32(std::uint32_t index, std::int32_t value) {
    return Write("DistributedFs::RpcMessageWriter::WriteInt32", index, RpcArgType::kInt32, &value,
                 sizeof(value));
}

std::int32_t RpcMessageWriter::WriteInt64(std::uint32_t index, std::int64_t value) {
    return Write("DistributedFs::RpcMessageWriter::WriteInt64", index, RpcArgType::kInt64, &value,
                 sizeof(value));
}

std::int32_t RpcMessageWriter::WriteString(std::uint32_t index, std::string value) {
    return Write("DistributedFs::RpcMessageWriter::WriteString", index, RpcArgType::kString,
                 value.c_str(), static_cast<std::int64_t>(value.length()) + 1);
}

std::int32_t RpcMessageWriter::WriteInt8Array(std::uint32_t index, const std::uint8_t* bytes,
                                              std::int32_t length) {
    return Write("DistributedFs::RpcMessageWriter::WriteInt8Array", index, RpcArgType::kInt8Array,
                 bytes, length);
}

// The index is not held against the argument count: what must fit is the descriptor and
// the data.
std::int32_t RpcMessageWriter::Write(const char* function, std::uint32_t index, RpcArgType type,
                                     const void* data, std::int64_t size) {
    const bool inOrder = index == static_cast<std::uint32_t>(argCursor_);
    const bool hasBytes = size == 0 || (size > 0 && data != nullptr);
    const bool fits =
        msgCursor_ + size <= rpcMsgSize_ && RpcDataOffset(std::int64_t{index} + 1) <= rpcMsgSize_;
    if (!rpcMsgBuf_ || !inOrder || !hasBytes || !fits) {
        LogError(function, "[PLENXSDK] index:", index, " argCursor_:", argCursor_,
                 " msgCursor_:", msgCursor_, " rpcMsgSize_:", rpcMsgSize_);
        return kMessageCheckFailed;
    }
    std::uint8_t* const descriptor = &rpcMsgBuf_[RpcDataOffset(index)];
    Store32(descriptor, static_cast<std::int64_t>(type));
    Store32(descriptor + 4, msgCursor_);
    Store32(descriptor + 8, size);
    if (size > 0) {
        std::memcpy(&rpcMsgBuf_[msgCursor_], data, static_cast<std::size_t>(size));
    }
    msgCursor_ += static_cast<std::int32_t>(size);
    ++argCursor_;
    return kSuccess;
}

}  // namespace DistributedFs
