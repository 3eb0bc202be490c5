// Tries any sequence of reads on any bytes, and compares the reader with a model that was written
// from the message layout alone.

#include "rpc/rpc_message_reader.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "common/result_code.h"
#include "companion/recorded_log.h"
#include "fuzz/input.h"
#include "fuzz/require.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kInt32 = 2;
constexpr std::uint32_t kString = 4;
constexpr std::uint32_t kInt8Array = 5;

// Models the content of a message, in 64 bits throughout.
class Model {
public:
    Model(const Bytes& message, std::int64_t size) : message_(message) {
        if (size >= 8 && 8 + 12 * Word(4) < size) {
            count_ = Word(4);
        }
    }

    /// Returns whether a read of that type gets argument index now, and moves on if so.
    bool Read(std::uint32_t index, std::uint32_t type, bool (*sizeIsRight)(std::int64_t),
              Bytes& found) {
        if (index != cursor_ || index >= count_) {
            return false;
        }
        const std::int64_t at = 8 + 12 * std::int64_t{index};
        const std::int64_t offset = Word(at + 4);
        const std::int64_t size = Word(at + 8);
        if (Word(at) != type || offset + size > static_cast<std::int64_t>(message_.size()) ||
            !sizeIsRight(size)) {
            return false;
        }
        found.assign(message_.begin() + offset, message_.begin() + offset + size);
        ++cursor_;
        return true;
    }

private:
    std::int64_t Word(std::int64_t at) const {
        std::int64_t word = 0;
        for (int i = 3; i >= 0; --i) {
            word = word * 256 + message_[static_cast<std::size_t>(at + i)];
        }
        return word;
    }

    const Bytes& message_;
    std::int64_t count_ = 0;
    std::int64_t cursor_ = 0;
};

// A failed read writes one line; a successful one writes none.
void RequireOutcome(std::int32_t code, bool expected) {
    REQUIRE(code == (expected ? DistributedFs::kSuccess : DistributedFs::kMessageCheckFailed));
    REQUIRE(RecordedLog::Get().Lines().size() == (expected ? 0U : 1U));
    RecordedLog::Get().Clear();
}

void ReadInt32(DistributedFs::RpcMessageReader& reader, Model& model, std::uint32_t index) {
    std::int32_t value = 0x5a5a5a5a;
    Bytes bytes;
    const bool expected =
        model.Read(index, kInt32, [](std::int64_t size) { return size == 4; }, bytes);
    RequireOutcome(reader.ReadInt32(index, &value), expected);
    const std::int32_t untouched = 0x5a5a5a5a;
    REQUIRE(std::memcmp(&value, expected ? static_cast<const void*>(bytes.data()) : &untouched,
                        4) == 0);
}

void ReadString(DistributedFs::RpcMessageReader& reader, Model& model, std::uint32_t index) {
    std::string text = "untouched";
    Bytes bytes;
    const bool expected =
        model.Read(index, kString, [](std::int64_t size) { return size > 0; }, bytes);
    RequireOutcome(reader.ReadString(index, &text), expected);
    REQUIRE(text == (expected ? std::string(bytes.begin(), bytes.end() - 1) : "untouched"));
}

void ReadArray(DistributedFs::RpcMessageReader& reader, Model& model, std::uint32_t index,
               std::int32_t length) {
    static std::int64_t wanted;
    wanted = length;
    std::uint8_t stale = 0;
    std::uint8_t* block = &stale;
    Bytes bytes;
    const bool expected =
        model.Read(index, kInt8Array, [](std::int64_t size) { return size == wanted; }, bytes);
    RequireOutcome(reader.ReadInt8Array(index, &block, length), expected);
    const std::unique_ptr<std::uint8_t[]> owner(block);
    REQUIRE((block != nullptr) == expected);
    REQUIRE(!expected || Bytes(block, block + bytes.size()) == bytes);
}

// The low bits choose the read, the next ones how far the index is from the right one.
void ReadOne(FuzzInput& script, DistributedFs::RpcMessageReader& reader, Model& model,
             std::uint32_t& next) {
    const std::uint8_t choice = script.Byte();
    const std::uint32_t index = (choice & 0x0c) != 0x0c ? next : script.Number<std::uint32_t>();
    next = (choice & 0x10) != 0 ? next : next + 1;
    switch (choice & 3) {
    case 0:
        return ReadInt32(reader, model, index);
    case 1:
        return ReadString(reader, model, index);
    case 2:
        return ReadArray(reader, model, index, script.Number<std::int16_t>());
    default:
        RequireOutcome(reader.ReadString(index, nullptr), false);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const Bytes reads = input.Block(input.Byte());
    const bool negative = (input.Byte() & 0x0f) == 0x0f;
    const Bytes message = input.Rest();
    const auto claimed = negative ? -static_cast<std::int32_t>(message.size())
                                  : static_cast<std::int32_t>(message.size());
    RecordedLog::Get().Clear();
    DistributedFs::RpcMessageReader reader(message.data(), claimed);
    RecordedLog::Get().Clear();
    Model model(message, claimed);
    FuzzInput script(reads.data(), reads.size());
    std::uint32_t next = 0;
    while (!script.IsEmpty()) {
        ReadOne(script, reader, model, next);
    }
    return 0;
}
