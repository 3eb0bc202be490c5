// Tries any size, any number of arguments and any sequence of writes, and compares the writer with
// a model. The peers' strict decoder then reads every finished message.

#include "rpc/rpc_message_writer.h"

#include <cstdint>
#include <string>
#include <vector>

#include "common/result_code.h"
#include "companion/recorded_log.h"
#include "fuzz/input.h"
#include "fuzz/require.h"
#include "wire/message.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::int32_t kLargest = 1 << 20;

class Model {
public:
    Model(std::int64_t size, std::int64_t count)
        : size_(count >= 0 && 8 + 12 * count < size ? size : 0),
          count_(count),
          end_(8 + 12 * count) {}

    bool Takes(std::uint32_t index, std::int64_t bytes, bool hasBytes) {
        const bool fits = size_ > 0 && index == written.size() && bytes >= 0 &&
                          (bytes == 0 || hasBytes) && end_ + bytes <= size_ &&
                          8 + 12 * (std::int64_t{index} + 1) <= size_;
        end_ += fits ? bytes : 0;
        return fits;
    }

    std::int64_t Size() const { return size_; }

    /// Returns whether all arguments are written and no byte is left over.
    bool IsFinished() const {
        return size_ > 0 && end_ == size_ && static_cast<std::int64_t>(written.size()) == count_;
    }

    PlenxWire::Arguments written;

private:
    std::int64_t size_;
    std::int64_t count_;
    std::int64_t end_;
};

void RequireOutcome(std::int32_t code, bool expected) {
    REQUIRE(code == (expected ? DistributedFs::kSuccess : DistributedFs::kMessageCheckFailed));
    REQUIRE(RecordedLog::Get().Lines().size() == (expected ? 0U : 1U));
    RecordedLog::Get().Clear();
}

void Write(DistributedFs::RpcMessageWriter& writer, Model& model, std::uint32_t index,
           PlenxWire::Argument argument, std::int64_t size, std::int32_t code,
           bool hasBytes = true) {
    const bool expected = model.Takes(index, size, hasBytes);
    RequireOutcome(code, expected);
    if (expected) {
        model.written.push_back(std::move(argument));
    }
    REQUIRE(writer.Size() == model.Size());
}

void WriteArray(FuzzInput& input, DistributedFs::RpcMessageWriter& writer, Model& model,
                std::uint32_t index, bool lying) {
    const auto length = input.Number<std::int16_t>();
    Bytes bytes = input.Block(length > 0 ? static_cast<std::size_t>(length) : 0);
    if (lying) {
        // The writer must refuse a null or a negative length before it touches a byte.
        Write(writer, model, index, bytes, length, writer.WriteInt8Array(index, nullptr, length),
              false);
        return;
    }
    const std::int32_t given = length < 0 ? length : static_cast<std::int32_t>(bytes.size());
    const std::int32_t code = writer.WriteInt8Array(index, bytes.data(), given);
    Write(writer, model, index, bytes, given, code, !bytes.empty());
}

void WriteOne(FuzzInput& input, DistributedFs::RpcMessageWriter& writer, Model& model,
              std::uint32_t& next) {
    const std::uint8_t choice = input.Byte();
    const std::uint32_t index = (choice & 0x1c) != 0x1c ? next : input.Number<std::uint32_t>();
    next = (choice & 0x20) != 0 ? next : next + 1;
    switch (choice & 3) {
    case 0: {
        const auto value = input.Number<std::int32_t>();
        return Write(writer, model, index, value, 4, writer.WriteInt32(index, value));
    }
    case 1: {
        const auto value = input.Number<std::int64_t>();
        return Write(writer, model, index, value, 8, writer.WriteInt64(index, value));
    }
    case 2: {
        const std::string text = input.Text(input.Byte());
        return Write(writer, model, index, text, static_cast<std::int64_t>(text.size()) + 1,
                     writer.WriteString(index, text));
    }
    default:
        return WriteArray(input, writer, model, index, (choice & 0x40) != 0);
    }
}

void RequireReadable(DistributedFs::RpcMessageWriter& writer, const Model& model) {
    const PlenxWire::Decoded decoded =
        PlenxWire::Decode(writer.Buffer(), static_cast<std::size_t>(writer.Size()));
    REQUIRE(decoded.Ok());
    REQUIRE(decoded.arguments == model.written);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const std::int32_t messageSize = input.Number<std::int32_t>() % kLargest;
    // Usually there are few arguments, and now and then any number.
    const std::uint8_t kind = input.Byte();
    const std::int32_t count =
        kind == 0xff ? input.Number<std::int32_t>() : static_cast<std::int8_t>(kind);
    RecordedLog::Get().Clear();
    DistributedFs::RpcMessageWriter writer(messageSize, count);
    Model model(messageSize, count);
    REQUIRE((writer.Buffer() != nullptr) == (model.Size() > 0));
    RecordedLog::Get().Clear();
    std::uint32_t next = 0;
    while (!input.IsEmpty()) {
        WriteOne(input, writer, model, next);
    }
    if (model.IsFinished()) {
        RequireReadable(writer, model);
    }
    return 0;
}
