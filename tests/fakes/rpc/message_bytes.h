// Builds RPC messages as plain bytes, without the product's own writer.

#ifndef FAKES_RPC_MESSAGE_BYTES_H
#define FAKES_RPC_MESSAGE_BYTES_H

#include <cstdint>
#include <string>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

/// Returns the bytes of hexadecimal digits, and ignores blanks.
Bytes FromHex(const std::string& digits);

/// Returns the 32-bit words in little-endian order.
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

/// Returns a well-formed message with these arguments.
Bytes MessageOf(const std::vector<MessageArg>& arguments);

/// Returns a message with one int32.
Bytes Int32Message(std::int32_t value);

#endif  // FAKES_RPC_MESSAGE_BYTES_H
