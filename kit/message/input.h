// Where the bytes come from.

#ifndef PLENXKIT_MESSAGE_INPUT_H
#define PLENXKIT_MESSAGE_INPUT_H

#include <istream>
#include <string>
#include <vector>

#include "wire/message.h"

namespace PlenxMessage {

/// The whole of a file; "-" is the given stream.
/// @throws UsageError when it cannot be read.
std::string ContentOf(const std::string& file, std::istream& standardInput);

/// Hex text or the message itself; which of them it is shows.
PlenxWire::Bytes MessageBytes(const std::string& content);

/// @throws UsageError when it cannot be written.
void WriteFile(const std::string& file, const std::string& content);

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_INPUT_H
