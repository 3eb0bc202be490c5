// Which message some bytes are meant to be. The bytes do not tell: the id travels beside them.

#ifndef PLENXKIT_MESSAGE_SUBJECT_H
#define PLENXKIT_MESSAGE_SUBJECT_H

#include <cstdint>
#include <optional>
#include <string>

#include "wire/catalog.h"
#include "wire/inspect.h"

namespace PlenxMessage {

struct Subject {
    const PlenxWire::MessageShape* shape = nullptr;  // null: nothing is known of its arguments
    std::optional<std::int32_t> id;                  // empty: a reply, or not told

    bool IsReply() const { return shape && !id; }
};

struct Message {
    Subject subject;
    PlenxWire::Bytes bytes;
};

Subject SubjectOf(std::int32_t id);

/// A message's name or number, or "reply"; empty: not told.
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
