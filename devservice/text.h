// UTF-8 and UTF-16. What is malformed becomes U+FFFD; nothing fails.

#ifndef PLENXSERVICE_TEXT_H
#define PLENXSERVICE_TEXT_H

#include <string>
#include <string_view>

namespace PlenxService {

std::string ToUtf8(std::wstring_view text);
std::wstring ToWide(std::string_view text);

}  // namespace PlenxService

#endif  // PLENXSERVICE_TEXT_H
