// Converts between the texts of Windows and the UTF-8 of our programs. Malformed parts become
// U+FFFD, and nothing fails.

#ifndef PLENXSUPPORT_WIDE_TEXT_H
#define PLENXSUPPORT_WIDE_TEXT_H

#include <string>
#include <string_view>

namespace PlenxSupport {

std::string ToUtf8(std::wstring_view text);
std::wstring ToWide(std::string_view text);

}  // namespace PlenxSupport

#endif  // PLENXSUPPORT_WIDE_TEXT_H
