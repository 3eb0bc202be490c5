// Text of unknown origin for the page: valid UTF-8, and nothing in it that a browser could take
// for markup or script.

#ifndef PLENXKIT_TRACE_JSON_TEXT_H
#define PLENXKIT_TRACE_JSON_TEXT_H

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace PlenxTrace {

/// The members keep the order in which they were added.
using Json = nlohmann::ordered_json;

/// JSON for a script element. A byte that is not UTF-8 becomes U+FFFD.
std::string ScriptJson(const Json& value);

/// A text that takes more than mostBytes in the JSON of a script is cut between two characters, and
/// ends with "…".
std::string Shortened(std::string_view text, std::size_t mostBytes);

/// Text for an element or an attribute.
std::string HtmlText(std::string_view text);

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_JSON_TEXT_H
