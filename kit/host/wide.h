// UTF-16 of the system to UTF-8. Half a surrogate pair becomes U+FFFD.

#ifndef PLENXHOST_WIDE_H
#define PLENXHOST_WIDE_H

#include <string>

namespace PlenxHost {

std::string WideToUtf8(const std::wstring& wide);
std::wstring Utf8ToWide(const std::string& text);

}  // namespace PlenxHost

#endif  // PLENXHOST_WIDE_H
