#include "host/text.h"

#include <charconv>
#include <limits>

#include "support/escape.h"

namespace PlenxHost {

std::string Quote(std::string_view text, std::size_t maxBytes) {
    std::string_view rest = text;
    std::string out = "\"";
    while (!rest.empty() && text.size() - rest.size() < maxBytes) {
        const std::string_view character = PlenxSupport::FirstCharacter(rest);
        PlenxSupport::AppendQuotedCharacter(out, character);
        rest.remove_prefix(character.size());
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
        const std::string_view character = PlenxSupport::FirstCharacter(text);
        if (character == "\n" || PlenxSupport::IsShowable(character)) {
            out += character;
        } else {
            PlenxSupport::AppendHexEscapes(out, character);
        }
        text.remove_prefix(character.size());
    }
    return out;
}

std::string ToHex(std::string_view bytes) {
    std::string digits;
    digits.reserve(bytes.size() * 2);
    for (const char byte : bytes) {
        PlenxSupport::AppendHexByte(digits, byte);
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
