#include "rpc/rpc_message_reader.h"

#include <cstring>
#include <new>

#include "common/log.h"
#include "common/result_code.h"

namespace DistributedFs {
namespace {

std::uint32_t Load32(const std::uint8_t* at) {
    std::uint32_t word = 0;
    std::memcpy(&word, at, sizeof(word));
    return word;
}

}  // namespace

RpcMessageReader::RpcMessageReader(const std::uint8_t* buffer, std::int32_t size)
    : rpcMsgArgs_(0), rpcMsgSize_(0), argCursor_(0), msgCursor_(0) {
    const bool hasHeader = buffer != nullptr && size >= kRpcHeaderSize;
    const std::uint32_t count = hasHeader ? Load32(buffer + 4) : 0;
    if (!hasHeader || RpcDataOffset(count) >= size) {
        LogError("DistributedFs::RpcMessageReader::RpcMessageReader",
                 "[PLENXSDK] Short Message Size rpcMsgSize:", size);
        return;
    }
    if (!rpcMsgBuf_.Make(static_cast<std::size_t>(size))) {
        return;
    }
    std::memcpy(rpcMsgBuf_.Get(), buffer, static_cast<std::size_t>(size));
    rpcMsgArgs_ = static_cast<std::int32_t>(count);
    rpcMsgSize_ = size;
    msgCursor_ = static_cast<std::int32_t>(RpcDataOffset(count));
}

bool RpcMessageReader::FindDescriptor(std::string_view function, std::uint32_t index, bool hasOut,
                                      RpcArgType type, Descriptor& found) const {
    if (!hasOut || index != static_cast<std::uint32_t>(argCursor_) ||
        index >= static_cast<std::uint32_t>(rpcMsgArgs_)) {
        LogError(function, "[PLENXSDK] Invalid Args Error index:", index,
                 " argCursor_:", argCursor_, " msgCursor_:", msgCursor_,
                 " rpcMsgSize_:", rpcMsgSize_);
        return false;
    }
    const std::uint8_t* const descriptor = rpcMsgBuf_.Get() + RpcDataOffset(index);
    found = {Load32(descriptor), Load32(descriptor + 4), Load32(descriptor + 8)};
    if (found.type != static_cast<std::uint32_t>(type)) {
        LogError(function, "[PLENXSDK] Invalid Args rpcReqArgType:", found.type);
        return false;
    }
    return true;
}

bool RpcMessageReader::IsInside(const Descriptor& argument) const noexcept {
    return std::uint64_t{argument.offset} + argument.size <=
           static_cast<std::uint64_t>(rpcMsgSize_);
}

void RpcMessageReader::LogWrongRange(std::string_view function,
                                     const Descriptor& argument) const noexcept {
    LogError(function, "[PLENXSDK] Invalid Args offset:", argument.offset,
             " rpcReqArgSize:", argument.size, " rpcMsgSize_:", rpcMsgSize_);
}

void RpcMessageReader::Advance(const Descriptor& argument) noexcept {
    // Arguments may overlap, so the sum may exceed 31 bits. It is only logged.
    msgCursor_ = static_cast<std::int32_t>(static_cast<std::uint32_t>(msgCursor_) + argument.size);
    ++argCursor_;
}

std::int32_t RpcMessageReader::ReadInt32(std::uint32_t index, std::int32_t* out) {
    constexpr std::string_view kFunction = "DistributedFs::RpcMessageReader::ReadInt32";
    Descriptor argument;
    if (!FindDescriptor(kFunction, index, out != nullptr, RpcArgType::kInt32, argument)) {
        return kMessageCheckFailed;
    }
    if (!IsInside(argument) || argument.size != sizeof(*out)) {
        LogWrongRange(kFunction, argument);
        return kMessageCheckFailed;
    }
    std::memcpy(out, rpcMsgBuf_.Get() + argument.offset, sizeof(*out));
    Advance(argument);
    return kSuccess;
}

std::int32_t RpcMessageReader::ReadString(std::uint32_t index, std::string* out) {
    constexpr std::string_view kFunction = "DistributedFs::RpcMessageReader::ReadString";
    Descriptor argument;
    if (!FindDescriptor(kFunction, index, out != nullptr, RpcArgType::kString, argument)) {
        return kMessageCheckFailed;
    }
    if (!IsInside(argument) || argument.size == 0) {
        LogWrongRange(kFunction, argument);
        return kMessageCheckFailed;
    }
    // The last byte is the sender's NUL, which this does not check.
    const auto* const text = reinterpret_cast<const char*>(rpcMsgBuf_.Get() + argument.offset);
    out->assign(text, argument.size - 1);
    Advance(argument);
    return kSuccess;
}

std::int32_t RpcMessageReader::ReadInt8Array(std::uint32_t index, std::uint8_t** out,
                                             std::int32_t length) {
    constexpr std::string_view kFunction = "DistributedFs::RpcMessageReader::ReadInt8Array";
    if (out != nullptr) {
        *out = nullptr;
    }
    Descriptor argument;
    if (!FindDescriptor(kFunction, index, out != nullptr, RpcArgType::kInt8Array, argument)) {
        return kMessageCheckFailed;
    }
    // Allocates only now that the claimed length is known to lie inside the buffer.
    std::uint8_t* block = nullptr;
    if (IsInside(argument) && std::int64_t{argument.size} == length) {
        block = new (std::nothrow) std::uint8_t[argument.size];
    }
    if (block == nullptr) {
        LogError(kFunction, "[PLENXSDK] Invalid Args offset:", argument.offset,
                 " rpcReqArgSize:", argument.size, " rpcMsgSize_:", rpcMsgSize_,
                 " argLen:", length);
        return kMessageCheckFailed;
    }
    if (argument.size > 0) {
        std::memcpy(block, rpcMsgBuf_.Get() + argument.offset, argument.size);
    }
    *out = block;
    Advance(argument);
    return kSuccess;
}

}  // namespace DistributedFs
