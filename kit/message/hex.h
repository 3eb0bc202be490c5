// Bytes as text of hexadecimal digits.

#ifndef PLENXKIT_MESSAGE_HEX_H
#define PLENXKIT_MESSAGE_HEX_H

#include <cstddef>
#include <string>
#include <string_view>

#include "wire/message.h"

namespace PlenxMessage {

/// "18 00 ff", with that many bytes in a line, or with all bytes in one line for 0. The text ends
/// without a blank and without a line end.
std::string ToHex(const PlenxWire::Bytes& bytes, std::size_t bytesPerLine = 0);

/// Pairs of digits, together or apart; blanks, line ends and , ; : between them and a 0x before
/// each group are skipped.
/// @throws UsageError that names the text that is not hex.
PlenxWire::Bytes FromHex(std::string_view text);

/// Whether the bytes are hex text. A binary message holds zeros, so it is never mistaken for hex.
bool LooksLikeHex(std::string_view content);

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_HEX_H
