// The paths of UpdateWindowsExplore are UTF-16, little-endian, with a NUL at the end.

#ifndef PLENXKIT_MESSAGE_UTF16_H
#define PLENXKIT_MESSAGE_UTF16_H

#include <optional>
#include <string>

#include "wire/message.h"

namespace PlenxMessage {

/// The bytes of the text with the NUL.
/// @throws UsageError when the text is not UTF-8.
PlenxWire::Bytes ToUtf16(const std::string& text);

/// Empty when the bytes are not such a text with one NUL at its end.
std::optional<std::string> FromUtf16(const PlenxWire::Bytes& bytes);

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_UTF16_H
