#include "wire/message.h"

#include <limits>
#include <stdexcept>
#include <utility>

#include "wire/inspect.h"

namespace PlenxWire {
namespace {

constexpr std::uint64_t kHeaderSize = 8;
constexpr std::uint64_t kDescriptorSize = 12;
constexpr std::uint64_t kLargestMessage = std::numeric_limits<std::int32_t>::max();

std::uint64_t TableEnd(std::uint64_t count) {
    return kHeaderSize + kDescriptorSize * count;
}

template <class Number>
void AppendNumber(Bytes& out, Number number) {
    const auto bits = static_cast<std::uint64_t>(number);
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        out.push_back(static_cast<std::uint8_t>(bits >> (8 * i)));
    }
}

struct DataAppender {
    Bytes& out;

    void operator()(std::int32_t value) const { AppendNumber(out, value); }
    void operator()(std::int64_t value) const { AppendNumber(out, value); }
    void operator()(const std::string& value) const {
        out.insert(out.end(), value.begin(), value.end());
        out.push_back(0);
    }
    void operator()(const Bytes& value) const { out.insert(out.end(), value.begin(), value.end()); }
};

struct DataSize {
    std::uint64_t operator()(std::int32_t) const { return 4; }
    std::uint64_t operator()(std::int64_t) const { return 8; }
    std::uint64_t operator()(const std::string& value) const { return value.size() + 1; }
    std::uint64_t operator()(const Bytes& value) const { return value.size(); }
};

}  // namespace

ArgumentType TypeOf(const Argument& argument) noexcept {
    return static_cast<ArgumentType>(argument.index() +
                                     static_cast<std::size_t>(ArgumentType::kInt32));
}

const char* NameOf(ArgumentType type) noexcept {
    switch (type) {
    case ArgumentType::kInt32:
        return "int32";
    case ArgumentType::kInt64:
        return "int64";
    case ArgumentType::kString:
        return "string";
    case ArgumentType::kInt8Array:
        return "int8 array";
    }
    return "unknown";
}

Bytes Encode(const Arguments& arguments) {
    std::uint64_t total = TableEnd(arguments.size());
    for (const Argument& argument : arguments) {
        total += std::visit(DataSize{}, argument);
    }
    if (total > kLargestMessage) {
        throw std::length_error("a message is larger than an int32 can say");
    }

    Bytes message;
    message.reserve(total);
    AppendNumber(message, static_cast<std::uint32_t>(total));
    AppendNumber(message, static_cast<std::uint32_t>(arguments.size()));
    std::uint64_t offset = TableEnd(arguments.size());
    for (const Argument& argument : arguments) {
        const std::uint64_t size = std::visit(DataSize{}, argument);
        AppendNumber(message, static_cast<std::uint32_t>(TypeOf(argument)));
        AppendNumber(message, static_cast<std::uint32_t>(offset));
        AppendNumber(message, static_cast<std::uint32_t>(size));
        offset += size;
    }
    for (const Argument& argument : arguments) {
        std::visit(DataAppender{message}, argument);
    }
    return message;
}

Decoded Decode(const std::uint8_t* data, std::size_t size) {
    Layout layout = Inspect(data, size);
    Decoded decoded;
    if (!layout.problems.empty()) {
        decoded.error = std::move(layout.problems.front().text);
        return decoded;
    }
    decoded.arguments.reserve(layout.fields.size());
    for (Field& field : layout.fields) {
        if (field.value) {  // it is there, as there are no problems
            decoded.arguments.push_back(std::move(*field.value));
        }
    }
    return decoded;
}

}  // namespace PlenxWire
