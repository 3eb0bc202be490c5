// What the library makes of a message that is good: a group name that it refuses, a path that it
// has to complete. No problem of the message, so the exit code does not tell of it.
//
// Pure functions; any thread may call them.

#ifndef PLENXKIT_MESSAGE_NOTES_H
#define PLENXKIT_MESSAGE_NOTES_H

#include <string>
#include <vector>

#include "message/subject.h"

namespace PlenxMessage {

/// Empty for a message with problems.
std::vector<std::string> NotesOn(const Message& message, const PlenxWire::Layout& layout);

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_NOTES_H
