// RPC messages as plain bytes, built by hand and without the product's own writer.

#ifndef FAKES_RPC_MESSAGE_BYTES_H
#define FAKES_RPC_MESSAGE_BYTES_H

#include <cstdint>
#include <string>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

/// The bytes of hexadecimal digits; blanks do not count.
Bytes FromHex(const std::string& digits);

/// 32-bit words, little-endian.
Bytes FromWords(const std::vector<std::uint32_t>& words);

/// One argument of a message.
struct MessageArg {
    std::uint32_t tag;
    Bytes data;
};

MessageArg Int32Arg(std::int32_t value);
MessageArg Int64Arg(std::int64_t value);
MessageArg StringArg(const std::string& text);
MessageArg ArrayArg(const Bytes& bytes);

/// The message of the arguments, well-formed.
Bytes MessageOf(const std::vector<MessageArg>& arguments);

/// A message that carries one int32.
Bytes Int32Message(std::int32_t value);

#endif  // FAKES_RPC_MESSAGE_BYTES_H
