// Checks UTF-8 and converts it to UTF-16 and back. Surrogates, overlong forms and code points above
// U+10FFFF are malformed.

#ifndef PLENXSUPPORT_UTF8_H
#define PLENXSUPPORT_UTF8_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace PlenxSupport {

bool IsUtf8(std::string_view text);

/// Returns the length in bytes of the well-formed beginning of text, which may be all of it.
std::size_t WellFormedLength(std::string_view text);

/// Returns the length in bytes of the character at the beginning of text, or 0 when the text is
/// empty or its beginning is malformed.
std::size_t CharacterLength(std::string_view text);

/// Returns the text with U+FFFD for each malformed sequence.
std::string WellFormed(std::string_view text);

/// Returns nullopt when the text is malformed.
std::optional<std::u16string> Utf8ToUtf16(std::string_view text);
std::optional<std::string> Utf16ToUtf8(std::u16string_view text);

}  // namespace PlenxSupport

#endif  // PLENXSUPPORT_UTF8_H
