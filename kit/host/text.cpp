#include "host/text.h"

#include <charconv>
#include <limits>

#include "support/utf8.h"

namespace PlenxHost {
namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

void AppendHexByte(std::string& out, char byte) {
    const auto bits = static_cast<unsigned char>(byte);
    out.push_back(kHexDigits[bits >> 4]);
    out.push_back(kHexDigits[bits & 15]);
}

void AppendHexEscapes(std::string& out, std::string_view bytes) {
    for (const char byte : bytes) {
        out += "\\x";
        AppendHexByte(out, byte);
    }
}

void AppendEscaped(std::string& out, char byte) {
    switch (byte) {
    case '"':
        out += "\\\"";
        break;
    case '\\':
        out += "\\\\";
        break;
    case '\n':
        out += "\\n";
        break;
    case '\r':
        out += "\\r";
        break;
    case '\t':
        out += "\\t";
        break;
    default:
        if (static_cast<unsigned char>(byte) >= 0x20 && byte != 0x7F &&
            static_cast<unsigned char>(byte) < 0x80) {
            out.push_back(byte);
        } else {
            AppendHexEscapes(out, std::string_view(&byte, 1));
        }
    }
}

// Some terminals obey U+0080 to U+009F as control characters.
bool IsControl(std::string_view character) {
    return character.size() == 2 && character[0] == '\xC2' &&
           static_cast<unsigned char>(character[1]) < 0xA0;
}

}  // namespace

std::string Quote(std::string_view text, std::size_t maxBytes) {
    std::string_view rest = text;
    std::string out = "\"";
    while (!rest.empty() && text.size() - rest.size() < maxBytes) {
        const std::size_t length = PlenxSupport::CharacterLength(rest);
        if (length > 1 && !IsControl(rest.substr(0, length))) {
            out.append(rest.substr(0, length));
            rest.remove_prefix(length);
        } else {
            AppendEscaped(out, rest[0]);
            rest.remove_prefix(1);
        }
    }
    out.push_back('"');
    if (!rest.empty()) {
        out += "...(" + std::to_string(text.size()) + " bytes)";
    }
    return out;
}

std::string Printable(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const std::size_t length = PlenxSupport::CharacterLength(text);
        const std::string_view character = text.substr(0, length == 0 ? 1 : length);
        const bool plain = length == 1 && (text[0] == '\n' || (text[0] >= 0x20 && text[0] != 0x7F));
        if (plain || (length > 1 && !IsControl(character))) {
            out += character;
        } else {
            AppendHexEscapes(out, character);
        }
        text.remove_prefix(character.size());
    }
    return out;
}

std::string ToHex(std::string_view bytes) {
    std::string digits;
    digits.reserve(bytes.size() * 2);
    for (const char byte : bytes) {
        AppendHexByte(digits, byte);
    }
    return digits;
}

std::optional<std::string> FromHex(std::string_view digits) {
    if (digits.size() % 2 != 0) {
        return std::nullopt;
    }
    std::string bytes;
    bytes.reserve(digits.size() / 2);
    for (; !digits.empty(); digits.remove_prefix(2)) {
        unsigned char byte = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + 2, byte, 16);
        if (error != std::errc() || end != digits.data() + 2) {
            return std::nullopt;
        }
        bytes.push_back(static_cast<char>(byte));
    }
    return bytes;
}

std::optional<std::uint64_t> ToUint64(std::string_view digits) {
    int base = 10;
    if (digits.substr(0, 2) == "0x" || digits.substr(0, 2) == "0X") {
        base = 16;
        digits.remove_prefix(2);
    }
    std::uint64_t number = 0;
    const char* const last = digits.data() + digits.size();
    const auto [end, error] = std::from_chars(digits.data(), last, number, base);
    if (error != std::errc() || end != last) {
        return std::nullopt;
    }
    return number;
}

std::optional<std::int64_t> ToInt64(std::string_view digits) {
    const bool negative = !digits.empty() && digits[0] == '-';
    const auto size = ToUint64(digits.substr(negative ? 1 : 0));
    constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (!size || *size > kMost + (negative ? 1 : 0)) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(negative ? 0 - *size : *size);
}

std::optional<std::uint32_t> ToBits32(std::string_view digits) {
    const std::optional<std::int64_t> number = ToInt64(digits);
    if (!number || *number < std::numeric_limits<std::int32_t>::min() ||
        *number > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(*number);
}

}  // namespace PlenxHost
