// A MessageBlock holds the bytes of one RPC message. A message with up to 4 KiB of data needs no
// allocation. Owners of a block live on the stack, and one thread never has more than a few.

#ifndef PLENXSDK_RPC_MESSAGE_BLOCK_H
#define PLENXSDK_RPC_MESSAGE_BLOCK_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace DistributedFs {

class MessageBlock {
public:
    static constexpr std::size_t kSmall = 4096 + 512;

    MessageBlock() noexcept = default;
    MessageBlock(const MessageBlock&) = delete;
    MessageBlock& operator=(const MessageBlock&) = delete;

    /// Makes the block; call it once. The bytes are not initialised.
    /// @return false when there is no memory; there is no block then.
    bool Make(std::size_t size) noexcept {
        if (size > kSmall) {
            large_.reset(new (std::nothrow) std::uint8_t[size]);
        }
        bytes_ = size > kSmall ? large_.get() : small_;
        return bytes_ != nullptr;
    }

    /// Returns null before Make.
    std::uint8_t* Get() const noexcept { return bytes_; }

private:
    std::uint8_t* bytes_ = nullptr;
    std::unique_ptr<std::uint8_t[]> large_;
    std::uint8_t small_[kSmall];
};

}  // namespace DistributedFs

#endif  // PLENXSDK_RPC_MESSAGE_BLOCK_H
