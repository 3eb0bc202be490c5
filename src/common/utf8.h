// Converts UTF-8 to UTF-16, strictly for data and leniently for log lines. The result holds UTF-16
// units even where wchar_t is wider than 16 bits.

#ifndef PLENXSDK_COMMON_UTF8_H
#define PLENXSDK_COMMON_UTF8_H

#include <string>
#include <string_view>

namespace DistributedFs {

/// Converts the whole string, including embedded NULs.
/// @throws std::range_error when the string is not valid UTF-8.
std::wstring Utf8ToWide(const std::string& text);

/// Writes the text; each malformed byte shows as U+FFFD.
/// @param out  Must have room for as many units as the text has bytes.
/// @return The end of the written units.
wchar_t* WriteLenientUtf8(wchar_t* out, std::string_view text) noexcept;

}  // namespace DistributedFs

#endif  // PLENXSDK_COMMON_UTF8_H
