// The paths of UpdateWindowsExplore are UTF-16, little-endian, with a NUL at the end.

#ifndef PLENXMSG_UTF16_H
#define PLENXMSG_UTF16_H

#include <optional>
#include <string>

#include "wire/message.h"

namespace PlenxMsg {

/// With the NUL.
/// @throws UsageError when the text is not UTF-8.
PlenxWire::Bytes ToUtf16(const std::string& text);

/// Empty when the bytes are no such text with its one NUL.
std::optional<std::string> FromUtf16(const PlenxWire::Bytes& bytes);

}  // namespace PlenxMsg

#endif  // PLENXMSG_UTF16_H
