// The texts of Windows, for programs that keep theirs in UTF-8. Malformed parts become U+FFFD;
// nothing fails.

#ifndef PLENXSUPPORT_WIDE_TEXT_H
#define PLENXSUPPORT_WIDE_TEXT_H

#include <string>
#include <string_view>

namespace PlenxSupport {

std::string ToUtf8(std::wstring_view text);
std::wstring ToWide(std::string_view text);

}  // namespace PlenxSupport

#endif  // PLENXSUPPORT_WIDE_TEXT_H
