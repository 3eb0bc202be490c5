#include "support/escape.h"

#include "support/utf8.h"

namespace PlenxSupport {
namespace {

constexpr char kDigits[] = "0123456789abcdef";

bool IsLineSeparator(std::string_view character) {
    return character == "\xe2\x80\xa8" || character == "\xe2\x80\xa9";
}

// Returns the letter after the backslash, or 0 when the byte has none.
char ShortEscape(char byte) {
    switch (byte) {
    case '"':
    case '\\':
        return byte;
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return 0;
    }
}

}  // namespace

void AppendHexByte(std::string& out, char byte) {
    const auto bits = static_cast<unsigned char>(byte);
    out += kDigits[bits >> 4];
    out += kDigits[bits & 15];
}

void AppendHexEscapes(std::string& out, std::string_view bytes) {
    for (const char byte : bytes) {
        out += "\\x";
        AppendHexByte(out, byte);
    }
}

bool IsShowable(std::string_view character) {
    if (!IsUtf8(character)) {
        return false;
    }
    const auto first = static_cast<unsigned char>(character[0]);
    if (character.size() == 1) {
        return first >= 0x20 && first != 0x7F;
    }
    // Some terminals obey U+0080 to U+009F as control characters, and some of them are line ends.
    const bool isControl = first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0;
    return !isControl && !IsLineSeparator(character);
}

std::string_view FirstCharacter(std::string_view text) {
    const std::size_t length = CharacterLength(text);
    return text.substr(0, length == 0 ? 1 : length);
}

void AppendQuotedCharacter(std::string& out, std::string_view character) {
    const char letter = ShortEscape(character[0]);
    if (letter != 0) {
        out += '\\';
        out += letter;
    } else if (IsShowable(character)) {
        out += character;
    } else {
        AppendHexEscapes(out, character);
    }
}

}  // namespace PlenxSupport
