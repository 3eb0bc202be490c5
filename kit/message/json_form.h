// Messages and the catalog as JSON.

#ifndef PLENXKIT_MESSAGE_JSON_FORM_H
#define PLENXKIT_MESSAGE_JSON_FORM_H

#include <nlohmann/json.hpp>

#include "message/subject.h"

namespace PlenxMessage {

/// The members keep the order in which they were added.
using Json = nlohmann::ordered_json;

Json ToJson(const Message& message, const PlenxWire::Layout& layout);

/// The catalog's facts about its arguments.
Json ToJson(const Subject& subject);

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_JSON_FORM_H
