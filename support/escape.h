// Makes texts of any bytes safe to show: what is not UTF-8, or what could disturb a terminal or a
// line, becomes an escape.

#ifndef PLENXSUPPORT_ESCAPE_H
#define PLENXSUPPORT_ESCAPE_H

#include <cstddef>
#include <string>
#include <string_view>

namespace PlenxSupport {

/// Appends two lowercase hexadecimal digits.
void AppendHexByte(std::string& out, char byte);

/// Appends \xNN for each byte.
void AppendHexEscapes(std::string& out, std::string_view bytes);

/// Returns whether the text, which is one character, may be shown as it is. Control characters,
/// U+0080 to U+009F, the line separators and bytes that are not UTF-8 may not.
bool IsShowable(std::string_view character);

/// Returns the first character of a text that is not empty, or its first byte when that is
/// malformed.
std::string_view FirstCharacter(std::string_view text);

/// Appends the character as it appears inside double quotes. It becomes \" \\ \n \r \t, or \xNN for
/// each byte of a character that is not showable; any other stays as it is.
void AppendQuotedCharacter(std::string& out, std::string_view character);

}  // namespace PlenxSupport

#endif  // PLENXSUPPORT_ESCAPE_H
