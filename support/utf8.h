// UTF-8: whether a text is well-formed, and the way to UTF-16 and back. Surrogates, overlong forms
// and code points above U+10FFFF are malformed.

#ifndef PLENXSUPPORT_UTF8_H
#define PLENXSUPPORT_UTF8_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace PlenxSupport {

bool IsUtf8(std::string_view text);

/// The length in bytes of the well-formed beginning of text: its size where all of it is.
std::size_t WellFormedLength(std::string_view text);

/// The text with U+FFFD for each malformed sequence.
std::string WellFormed(std::string_view text);

/// Nothing when the text is malformed.
std::optional<std::u16string> Utf8ToUtf16(std::string_view text);
std::optional<std::string> Utf16ToUtf8(std::u16string_view text);

}  // namespace PlenxSupport

#endif  // PLENXSUPPORT_UTF8_H
