// Messages and the catalog as JSON.

#ifndef PLENXMSG_JSON_FORM_H
#define PLENXMSG_JSON_FORM_H

#include <nlohmann/json.hpp>

#include "subject.h"

namespace PlenxMsg {

/// The members stand in the order in which they were put in.
using Json = nlohmann::ordered_json;

Json ToJson(const Message& message, const PlenxWire::Layout& layout);

/// What is known of its arguments.
Json ToJson(const Subject& subject);

}  // namespace PlenxMsg

#endif  // PLENXMSG_JSON_FORM_H
