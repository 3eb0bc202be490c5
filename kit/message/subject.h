// The kind of message that some bytes form. The bytes do not show it, because the id travels beside
// them.

#ifndef PLENXKIT_MESSAGE_SUBJECT_H
#define PLENXKIT_MESSAGE_SUBJECT_H

#include <cstdint>
#include <optional>
#include <string>

#include "wire/catalog.h"
#include "wire/inspect.h"

namespace PlenxMessage {

struct Subject {
    const PlenxWire::MessageShape* shape = nullptr;  // null when its arguments are not known
    std::optional<std::int32_t> id;                  // empty for a reply, and when it was not given

    bool IsReply() const { return shape && !id; }
};

struct Message {
    Subject subject;
    PlenxWire::Bytes bytes;
};

Subject SubjectOf(std::int32_t id);

/// Takes a message's name or number, or "reply". The text is empty when it was not given.
/// @throws UsageError for a name that no message has.
Subject SubjectOf(const std::string& word);

/// "CreateGroup", "reply", "message 6", "message".
std::string NameOf(const Subject& subject);

/// "groupName", or "argument 0" where nothing is known.
std::string ArgumentName(const Subject& subject, std::size_t index);

/// "request", "notification", "reply" or "unknown".
const char* SortOf(const Subject& subject);

PlenxWire::Layout Inspected(const Message& message);

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_SUBJECT_H
