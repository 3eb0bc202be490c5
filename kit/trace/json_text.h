// Text of unknown origin for the page: valid UTF-8, and nothing in it that a browser could take
// for markup or script.

#ifndef PLENXKIT_TRACE_JSON_TEXT_H
#define PLENXKIT_TRACE_JSON_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace PlenxTrace {

constexpr std::size_t kWholeText = static_cast<std::size_t>(-1);

/// A JSON string for a script element. A byte that is no UTF-8 becomes U+FFFD. A text that would
/// take more than mostBytes here is cut between two characters, and ends with "…".
void AppendJsonString(std::string& out, std::string_view text, std::size_t mostBytes = kWholeText);

/// Text for an element or an attribute.
std::string HtmlText(std::string_view text);

}  // namespace PlenxTrace

#endif  // PLENXKIT_TRACE_JSON_TEXT_H
