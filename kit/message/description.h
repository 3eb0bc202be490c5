// Builds messages from descriptions: field=value words, or JSON.

#ifndef PLENXKIT_MESSAGE_DESCRIPTION_H
#define PLENXKIT_MESSAGE_DESCRIPTION_H

#include <string>
#include <vector>

#include "message/subject.h"

namespace PlenxMessage {

/// Takes words such as "groupName=g_1". Text is taken as it is. An array is hex, "utf16:" with a
/// text, or empty. The words may leave out an argument that can have only one value: the kind of
/// CreateGroup, and an array's length.
/// @throws UsageError that names the field and its mistake.
Message MessageFromWords(const std::string& name, const std::vector<std::string>& words);

/// Takes {"message": "CreateGroup", "arguments": {"groupName": "g_1", ...}}, or the output of
/// decode --json. Arrays, and text that is not UTF-8, have the form {"hex": "00 ff"}.
/// @throws UsageError as above.
Message MessageFromJson(const std::string& text);

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_DESCRIPTION_H
