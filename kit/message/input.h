// Reads messages from files and streams.

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

/// Takes hex text or the message itself, and recognises which of them it is.
PlenxWire::Bytes MessageBytes(const std::string& content);

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_INPUT_H
