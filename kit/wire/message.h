// The RPC message: a flat little-endian buffer of typed arguments.
//
//     0            uint32  size of the whole message
//     4            uint32  number of arguments n
//     8 + 12 * i   uint32  type tag, uint32 offset, uint32 size of argument i
//     8 + 12 * n           the arguments' bytes, one after the other, in order
//
// Decode is strict: it takes exactly the messages that Encode builds, and names the mistake of any
// other. All functions are pure; any thread may call them.

#ifndef PLENXKIT_WIRE_MESSAGE_H
#define PLENXKIT_WIRE_MESSAGE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace PlenxWire {

using Bytes = std::vector<std::uint8_t>;

enum class ArgumentType : std::uint32_t { kInt32 = 2, kInt64 = 3, kString = 4, kInt8Array = 5 };

/// The types in the order of their tags.
using Argument = std::variant<std::int32_t, std::int64_t, std::string, Bytes>;
using Arguments = std::vector<Argument>;

ArgumentType TypeOf(const Argument& argument) noexcept;

/// "int32", "int64", "string" or "int8 array".
const char* NameOf(ArgumentType type) noexcept;

/// Encode also builds a message without a single byte of data (no arguments, or one empty array),
/// but no reader takes it, and Decode does not either.
/// @throws std::length_error when the message would be larger than an int32 can say.
Bytes Encode(const Arguments& arguments);

struct Decoded {
    Arguments arguments;
    std::string error;  // the mistake and its place; empty for a good message

    bool Ok() const noexcept { return error.empty(); }
};

/// It trusts no byte. data may be null when size is 0.
Decoded Decode(const std::uint8_t* data, std::size_t size);

inline Decoded Decode(const Bytes& message) {
    return Decode(message.data(), message.size());
}

}  // namespace PlenxWire

#endif  // PLENXKIT_WIRE_MESSAGE_H
