// Builds messages from descriptions: field=value words, or JSON.

#ifndef PLENXKIT_MESSAGE_DESCRIPTION_H
#define PLENXKIT_MESSAGE_DESCRIPTION_H

#include <string>
#include <vector>

#include "message/subject.h"

namespace PlenxMessage {

/// Words as "groupName=g_1". Text is taken as it is; an array is hex, "utf16:" with a text, or
/// empty. What can only have one value (the kind of CreateGroup, an array's length) may be
/// left out.
/// @throws UsageError that names the field and what is wrong with it.
Message MessageFromWords(const std::string& name, const std::vector<std::string>& words);

/// {"message": "CreateGroup", "arguments": {"groupName": "g_1", ...}}, or what decode --json
/// printed. Text that is not UTF-8, and arrays: {"hex": "00 ff"}.
/// @throws UsageError likewise.
Message MessageFromJson(const std::string& text);

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_DESCRIPTION_H
