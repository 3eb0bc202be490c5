// Notes on how the library treats a good message: it refuses some group names and completes some
// paths. They are not problems of the message, so they do not change the exit code.
//
// All functions are pure; any thread may call them.

#ifndef PLENXKIT_MESSAGE_NOTES_H
#define PLENXKIT_MESSAGE_NOTES_H

#include <string>
#include <vector>

#include "message/subject.h"

namespace PlenxMessage {

/// The notes are empty for a message with problems.
std::vector<std::string> NotesOn(const Message& message, const PlenxWire::Layout& layout);

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_NOTES_H
