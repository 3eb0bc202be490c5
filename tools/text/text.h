// UTF-8 and UTF-16. What is malformed becomes U+FFFD; nothing fails.

#ifndef PLENXTEXT_TEXT_H
#define PLENXTEXT_TEXT_H

#include <string>
#include <string_view>

namespace PlenxText {

std::string ToUtf8(std::wstring_view text);
std::wstring ToWide(std::string_view text);

}  // namespace PlenxText

#endif  // PLENXTEXT_TEXT_H
