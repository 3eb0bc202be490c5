#include "rpc/rpc_message_writer.h"

#include <algorithm>
#include <cstring>

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
    if (!rpcMsgBuf_.Make(static_cast<std::size_t>(size))) {
        return;
    }
    rpcMsgArgs_ = args;
    rpcMsgSize_ = size;
    msgCursor_ = static_cast<std::int32_t>(RpcDataOffset(args));
    std::memset(rpcMsgBuf_.Get(), 0, static_cast<std::size_t>(msgCursor_));
    Store32(rpcMsgBuf_.Get(), size);
    Store32(rpcMsgBuf_.Get() + 4, args);
}

// Descriptors and data have been written without a gap up to the greater of their two ends. Only
// the rest is cleared here, because clearing a whole message first would be a second pass over it.
const std::uint8_t* RpcMessageWriter::Buffer() noexcept {
    const std::int64_t end = std::max<std::int64_t>(RpcDataOffset(argCursor_), msgCursor_);
    if (end < rpcMsgSize_) {
        std::memset(rpcMsgBuf_.Get() + end, 0, static_cast<std::size_t>(rpcMsgSize_ - end));
    }
    return rpcMsgBuf_.Get();
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

std::int32_t RpcMessageWriter::Write(std::string_view function, std::uint32_t index,
                                     RpcArgType type, const void* data, std::int64_t size) {
    const bool hasBytes = size == 0 || (size > 0 && data != nullptr);
    if (!hasBytes || !HasRoom(index, size)) {
        LogError(function, "[PLENXSDK] index:", index, " argCursor_:", argCursor_,
                 " msgCursor_:", msgCursor_, " rpcMsgSize_:", rpcMsgSize_);
        return kMessageCheckFailed;
    }
    std::uint8_t* const descriptor = rpcMsgBuf_.Get() + RpcDataOffset(index);
    Store32(descriptor, static_cast<std::int64_t>(type));
    Store32(descriptor + 4, msgCursor_);
    Store32(descriptor + 8, size);
    if (size > 0) {
        std::memcpy(rpcMsgBuf_.Get() + msgCursor_, data, static_cast<std::size_t>(size));
    }
    msgCursor_ += static_cast<std::int32_t>(size);
    ++argCursor_;
    return kSuccess;
}

// This does not compare the index with the number of arguments: only the descriptor and the data
// must fit.
bool RpcMessageWriter::HasRoom(std::uint32_t index, std::int64_t size) const noexcept {
    return rpcMsgBuf_.Get() != nullptr && index == static_cast<std::uint32_t>(argCursor_) &&
           msgCursor_ + size <= rpcMsgSize_ &&
           RpcDataOffset(std::int64_t{index} + 1) <= rpcMsgSize_;
}

}  // namespace DistributedFs
